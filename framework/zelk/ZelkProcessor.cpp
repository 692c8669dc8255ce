#include "framework/zelk/ZelkProcessor.h"

#include "framework/ProcessorChannel.h"

ZelkProcessor::ZelkProcessor(chl::Layout layout)
    : GenericPluginProcessor(static_cast<int>(layout), chl::channelCount(layout))
    , ZelkParameters(*static_cast<GenericPluginBase*>(this)) {
    init();
    for (std::size_t index = 0; index < channelCount(); ++index) {
        channels.push_back(std::make_unique<Channel>(*this, index, chl::speakerCode(layout, index)));
        channels.back()->output = &channels.back()->mainInput;
    }
    initParameters();
    applyParameter(-1);
}

ZelkProcessor::~ZelkProcessor() = default;
