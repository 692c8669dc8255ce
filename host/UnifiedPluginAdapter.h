// One instance, whatever the host's format: owns its two halves and carries what passes between them.
// Threads: [main] but where marked.
#pragma once

#include "base/CriticalSection.h"
#include "framework/ExchangeStream.h"
#include "framework/GenericPlugin.h"
#include "framework/GenericPluginProcessor.h"

#include <cstdint>
#include <memory>

class UnifiedPluginAdapter : public GenericPlugin::Adapter, public GenericPluginProcessor::ProcessorAdapter {
public:
    UnifiedPluginAdapter(const UnifiedPluginAdapter&) = delete;
    UnifiedPluginAdapter& operator=(const UnifiedPluginAdapter&) = delete;

    // What the editor side calls.
    void syncControllerMapping() override;
    void sendMidiToProcessor(const MidiMessage& message) override;
    void sendParameterToHost(std::int32_t id) override;
    void exchangeSources() override;
    void setProcessorValue(std::int32_t id, float value) override;
    float processorValue(std::int32_t id) const noexcept override;

    // What the audio side calls.
    void programChange(std::int32_t bank, std::int32_t program) noexcept REALTIME override; // [audio]
    void midiActivity(std::int32_t code) noexcept REALTIME override;                        // [audio]
    void processorParameterChanged(std::int32_t id) noexcept override;                      // [any]

protected:
    UnifiedPluginAdapter();
    ~UnifiedPluginAdapter() override;

    void createHalves();                       // for the stereo layout
    void changeLayout(int layout);             // [main & !active] replaces the audio side, unless it has that layout
    void pushAllParameters(std::int32_t kind); // -1 smoothed, -2 at once, -3 with a reset of the graph

    // The value for both sides, from the audio thread, at its sample.
    void automate(std::int32_t id, float value) noexcept REALTIME; // [audio]

    // A change that the audio thread sends to the host and the editor side, queued for both.
    bool hasHalves() const noexcept { return processor != nullptr; }

    std::unique_ptr<CriticalSection> lock;             // the adapter lock: main-thread work of this instance
    std::unique_ptr<GenericPlugin> plugin;             // editor side
    std::unique_ptr<GenericPluginProcessor> processor; // audio side

private:
    std::unique_ptr<GenericPluginProcessor> createProcessor(int layout);

    ExchangeStream exchange; // guarded by the adapter lock
};
