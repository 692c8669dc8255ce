#include "framework/ProcessorChannel.h"

#include "wave/Environment.h"

GenericPluginProcessor::Channel::ConnectedSideChainInput::ConnectedSideChainInput(GenericPluginProcessor& processor)
    : wave::Input(processor.environment()), owner(processor) {}

void GenericPluginProcessor::Channel::ConnectedSideChainInput::process(wave::BasicBlock<float>& block,
                                                                       std::int32_t count,
                                                                       std::uint32_t mode) noexcept REALTIME {
    if (owner.sideChainInUse() && owner.isSideChainConnected())
        wave::Input::process(block, count, mode);
    else
        output = &environment.zeroBlock;
}

GenericPluginProcessor::Channel::Channel(GenericPluginProcessor& processor, std::size_t channelIndex,
                                         chl::SpeakerCode speaker)
    : speakerCode(speaker)
    , connectedSideChain(processor)
    , index(channelIndex)
    , mainInput(processor.environment())
    , sideChainInput(processor.environment())
    , owner(processor) {}

void GenericPluginProcessor::Channel::parameterChanged(std::int32_t) noexcept REALTIME {}
