#include "tests/framework/ProcessorTestObjects.h"

#include "framework/ProcessorChannel.h"

#include <algorithm>

class RecordingProcessor::Receiver final : public MidiMessageReceiver {
public:
    explicit Receiver(RecordingProcessor& recorder) : owner(recorder) {}
    void receive(const MidiMessage& message) noexcept REALTIME override {
        owner.record("midi ", message.status);
        // A controller moves the gain, as the product's own mapping does.
        if (message.status == 0xB0)
            trustedRealtime([&] { owner.gain.setValue(static_cast<float>(message.data2) / 127.0f, silent); });
    }

private:
    RecordingProcessor& owner;
};

RecordingProcessor::RecordingProcessor() : GenericPluginProcessor(1, 2) {
    info.capabilities = GenericPluginInfo::midiLearnQueue;
    bypassed.setRange(0.0f, 1.0f, 0.0f);
    receiveMidi.setRange(0.0f, 1.0f, 0.0f);
    gain.setRange(0.0f, 1.0f, 0.0f);
    ownParameters = {&receiveMidi, &bypassed};
    init();
    for (std::size_t index = 0; index < channelCount(); ++index) {
        channels.push_back(std::make_unique<Channel>(*this, index, 0));
        channels.back()->output = &channels.back()->mainInput;
    }
    wet.assign(2, std::vector<float>(256));
    delayed.assign(2, {});
}

RecordingProcessor::~RecordingProcessor() = default;

std::unique_ptr<MidiMessageReceiver> RecordingProcessor::createMidiReceiver() {
    return std::make_unique<Receiver>(*this);
}

void RecordingProcessor::record(const char* what, std::int32_t number) noexcept REALTIME {
    const RealtimePermit permit{"a test's log"};
    trustedRealtime([&] { log.push_back(what + std::to_string(number)); });
}

void RecordingProcessor::runGraph(std::span<const float*> graphOutputs, std::int32_t count) noexcept REALTIME {
    record("run ", count);
    GenericPluginProcessor::runGraph(graphOutputs, count);
    const RealtimePermit permit{"a test's latency is a vector that grows"};
    const auto wanted = static_cast<std::size_t>(latency());
    for (std::size_t channel = 0; channel < graphOutputs.size(); ++channel) {
        std::vector<float>& line = delayed[channel];
        trustedRealtime([&] {
            if (line.size() != wanted)
                line.assign(wanted, 0.0f);
            line.insert(line.end(), graphOutputs[channel], graphOutputs[channel] + count);
        });
        for (std::int32_t i = 0; i < count; ++i)
            wet[channel][static_cast<std::size_t>(i)] = line[static_cast<std::size_t>(i)] * graphGain;
        line.erase(line.begin(), line.begin() + count);
        graphOutputs[channel] = wet[channel].data();
    }
}

void RecordingProcessor::applyParameter(std::int32_t id) noexcept REALTIME {
    record("apply ", id);
    GenericPluginProcessor::applyParameter(id);
}

void RecordingProcessor::run(std::size_t frames, std::uint32_t spanFlags) {
    const std::vector<float> left(frames, inputLevel);
    const std::vector<float> right(frames, -inputLevel);
    outputs.assign(2, std::vector<float>(frames, -7.0f));
    const float* inputs[] = {left.data(), right.data()};
    float* const targets[] = {outputs[0].data(), outputs[1].data()};
    flags = spanFlags;
    process({inputs, targets}, frames, flags);
}
