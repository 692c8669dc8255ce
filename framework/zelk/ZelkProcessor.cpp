#include "framework/zelk/ZelkProcessor.h"

#include "framework/ProcessorChannel.h"
#include "midi/ProcessorMidiInput.h"

ZelkProcessor::ZelkProcessor(chl::Layout layout)
    : GenericPluginProcessor(static_cast<int>(layout), chl::channelCount(layout))
    , ZelkParameters(*static_cast<GenericPluginBase*>(this)) {
    init();
    for (std::size_t index = 0; index < channelCount(); ++index) {
        channels.push_back(std::make_unique<Channel>(*this, index, chl::speakerCode(layout, index)));
        channels.back()->output = &channels.back()->mainInput;
    }
    delays.reserve(channelCount());
    initParameters();
    renewLatency();
    applyParameter(-1);
}

ZelkProcessor::~ZelkProcessor() = default;

std::unique_ptr<MidiMessageReceiver> ZelkProcessor::createMidiReceiver() {
    return std::make_unique<ProcessorMidiInput>(*this);
}

void ZelkProcessor::beforeChange(std::int32_t id) noexcept {
    if (movesLatency(id))
        renewLatency();
}

void ZelkProcessor::sampleRateChanged() {
    GenericPluginProcessor::sampleRateChanged();
    renewLatency();
}

void ZelkProcessor::renewLatency() noexcept REALTIME {
    setLatency(latencyAt(static_cast<double>(environment().sampleRate)));
}

void ZelkProcessor::runGraph(std::span<const float*> outputs, std::int32_t count) noexcept REALTIME {
    updateDelays();
    GenericPluginProcessor::runGraph(outputs, count);
}

void ZelkProcessor::updateDelays() noexcept REALTIME {
    if (latency() == delayLength)
        return;
    const RealtimePermit permit{"wet delay replaced"};
    trustedRealtime([this] {
        delays.clear();
        delayLength = latency();
        for (const std::unique_ptr<Channel>& channel : channels) {
            channel->output = &channel->mainInput;
            if (delayLength <= 0)
                continue;
            delays.push_back(std::make_unique<wave::DelayFilter>(environment(), delayLength));
            delays.back()->input = &channel->mainInput;
            channel->output = delays.back().get();
        }
    });
}
