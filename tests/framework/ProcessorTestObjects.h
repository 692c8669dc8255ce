// A small product for tests of the framework: an audio side that records how it is driven.
// Threads: those of the test.
#pragma once

#include "framework/FloatPluginParameter.h"
#include "framework/GenericPluginProcessor.h"

#include <cstdint>
#include <string>
#include <vector>

class RecordingProcessor final : public GenericPluginProcessor {
public:
    RecordingProcessor();
    ~RecordingProcessor() override;

    // One span: inputLevel on the left, its negative on the right. The graph gives graphGain of it, after the latency.
    void run(std::size_t frames, std::uint32_t spanFlags = 0);
    void useLatency(std::int32_t samples) { setLatency(samples); }

    std::int32_t silenceTail() const noexcept REALTIME override { return tail; }

    FloatPluginParameter gain{this, "Gain"};
    FloatPluginParameter bypassed{this, "Bypass"};
    FloatPluginParameter receiveMidi{this, "Receive Midi"};
    std::int32_t tail = 8192;
    float graphGain = 0.5f;
    float inputLevel = 1.0f;

    std::vector<std::string> log; // what happened: "run 256", "apply 0", "midi 144"
    std::vector<std::vector<float>> outputs;
    std::uint32_t flags = 0; // as the last span gave them back

protected:
    std::unique_ptr<MidiMessageReceiver> createMidiReceiver() override;
    void runGraph(std::span<const float*> graphOutputs, std::int32_t count) noexcept REALTIME override;
    void applyParameter(std::int32_t id) noexcept REALTIME override;

private:
    class Receiver;

    void record(const char* what, std::int32_t number) noexcept REALTIME;

    std::vector<std::vector<float>> wet;
    std::vector<std::vector<float>> delayed; // what is still on its way through the graph's latency
};
