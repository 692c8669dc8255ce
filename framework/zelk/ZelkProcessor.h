// The audio side of the product.
// Threads: audio, except construction (main).
#pragma once

#include "framework/GenericPluginProcessor.h"
#include "framework/chl/Layouts.h"
#include "framework/zelk/ZelkParameters.h"
#include "wave/DelayFilter.h"

#include <memory>
#include <vector>

class ZelkProcessor final : public GenericPluginProcessor, public ZelkParameters {
public:
    explicit ZelkProcessor(chl::Layout layout);
    ~ZelkProcessor() override;

    std::int32_t silenceTail() const noexcept REALTIME override { return 8192; }

protected:
    std::unique_ptr<MidiMessageReceiver> createMidiReceiver() override;
    void beforeChange(std::int32_t id) noexcept override;
    void runGraph(std::span<const float*> outputs, std::int32_t count) noexcept REALTIME override;
    void sampleRateChanged() override;

private:
    void updateDelays() noexcept REALTIME;
    void renewLatency() noexcept REALTIME;

    std::vector<std::unique_ptr<wave::DelayFilter>> delays; // one a channel, none without latency
    std::int32_t delayLength = 0;
};
