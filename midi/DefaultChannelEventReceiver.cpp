#include "midi/DefaultChannelEventReceiver.h"

#include "framework/AbstractPluginParameter.h"
#include "framework/ControllerMapping.h"
#include "framework/GenericPluginProcessor.h"

#include <cstddef>

void DefaultChannelEventReceiver::controlChange(std::int32_t controller, std::int32_t raw,
                                                float value) noexcept REALTIME {
    processor.setMidiActivity(controller);
    move(processor.controllerMapping().target(static_cast<std::size_t>(controller)), value);
    AbstractChannelEventReceiver::controlChange(controller, raw, value);
}

// Targets between the parameters and the float targets are controls of the interface, which moves them itself. A map
// may come from a file, so any number may stand here.
void DefaultChannelEventReceiver::move(std::int32_t target, float value) noexcept REALTIME {
    if (target >= ControllerMapping::firstFloatTarget) {
        const auto index = static_cast<std::size_t>(target - ControllerMapping::firstFloatTarget);
        if (index < processor.floatTargets.size())
            trustedRealtime([&] { processor.floatTargets[index]->assign(value); });
    } else if (target >= 0 && target < processor.parameterCount()) {
        // Not silent: the host and the editor side follow.
        AbstractPluginParameter& moved = processor.parameter(target);
        trustedRealtime([&] { moved.setValue(moved.denormalize(static_cast<double>(value)), 0); });
    }
}

void DefaultChannelEventReceiver::noteOff(std::int32_t note, float velocity) noexcept REALTIME {
    processor.noteOff(note, velocity);
    AbstractChannelEventReceiver::noteOff(note, velocity);
}

void DefaultChannelEventReceiver::noteOn(std::int32_t note, float velocity) noexcept REALTIME {
    processor.noteOn(note, velocity);
    AbstractChannelEventReceiver::noteOn(note, velocity);
}

void DefaultChannelEventReceiver::programChange(std::int32_t bank, std::int32_t program) noexcept REALTIME {
    processor.programChange(bank, program);
}
