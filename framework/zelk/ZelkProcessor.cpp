#include "framework/zelk/ZelkProcessor.h"

#include "framework/ProcessorChannel.h"
#include "framework/zelk/ZelkInit.h"

ZelkProcessor::ZelkProcessor(int layoutIndex) : GenericPluginProcessor(layoutIndex, 2) {
    fillZelkInfo(info);
    init();
    for (std::size_t index = 0; index < channelCount(); ++index) {
        channels.push_back(std::make_unique<Channel>(*this, index, 0));
        channels.back()->output = &channels.back()->mainInput;
    }
}

ZelkProcessor::~ZelkProcessor() = default;
