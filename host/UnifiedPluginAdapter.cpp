#include "host/UnifiedPluginAdapter.h"

#include "framework/AbstractPluginParameter.h"
#include "framework/ReceivedSources.h"
#include "framework/zelk/ZelkPlugin.h"
#include "framework/zelk/ZelkProcessor.h"
#include "platform/CriticalSections.h"

#include <cmath>

namespace {

constexpr int stereoLayout = 1;

} // namespace

UnifiedPluginAdapter::UnifiedPluginAdapter() : lock(createCriticalSection(LockRank::adapter)) {}

UnifiedPluginAdapter::~UnifiedPluginAdapter() {
    if (processor != nullptr)
        processor->environment().destroying = true;
    plugin.reset();
    processor.reset();
}

void UnifiedPluginAdapter::createHalves() {
    plugin = std::make_unique<ZelkPlugin>();
    plugin->setAdapter(this);
    processor = createProcessor(stereoLayout);
    syncControllerMapping();
    pushAllParameters(GenericPlugin::allValuesSmoothed);
    plugin->adapterBound();
}

std::unique_ptr<GenericPluginProcessor> UnifiedPluginAdapter::createProcessor(int layout) {
    auto created = std::make_unique<ZelkProcessor>(static_cast<chl::Layout>(layout));
    created->setAdapter(this);
    created->setSampleRate(static_cast<double>(plugin->sampleRate()));
    return created;
}

void UnifiedPluginAdapter::changeLayout(int layout) {
    if (layout == plugin->layout())
        return;
    plugin->takeAutomation(); // what MIDI moved on the old audio side stays
    // Built before the lock is taken and deleted after it is released: neither needs it, and both are long.
    std::unique_ptr<GenericPluginProcessor> replaced = createProcessor(layout);
    {
        const ScopedLock guard(*lock);
        plugin->setLayout(layout);
        processor.swap(replaced);
        syncControllerMapping();
        pushAllParameters(GenericPlugin::allValuesSmoothed);
        plugin->adapterBound();
        replaced->environment().destroying = true;
    }
}

void UnifiedPluginAdapter::syncControllerMapping() {
    const ScopedLock guard(*lock);
    if (processor != nullptr)
        processor->controllerMapping().copyFrom(plugin->controllerMapping());
}

void UnifiedPluginAdapter::sendMidiToProcessor(const MidiMessage& message) {
    const ScopedLock guard(*lock);
    if (processor != nullptr)
        processor->receiveEditorMidi(message);
}

void UnifiedPluginAdapter::pushAllParameters(std::int32_t kind) {
    processor->beginChange();
    for (std::int32_t id = 0; id < plugin->parameterCount(); ++id)
        processor->parameter(id).setValue(plugin->parameter(id).value(), GenericParameterOwner::silent);
    if (kind == GenericPlugin::allValuesAtOnce)
        processor->postJump();
    else if (kind == GenericPlugin::allValuesWithReset)
        processor->postReset();
    processor->endChange();
}

void UnifiedPluginAdapter::sendParameterToHost(std::int32_t id) {
    const ScopedLock guard(*lock);
    if (processor == nullptr)
        return;
    if (id >= 0) {
        const float value = plugin->parameter(id).value();
        processor->parameter(id).setValue(value, GenericParameterOwner::silent);
        postParameterValue(id, value);
        return;
    }
    pushAllParameters(id);
    for (std::int32_t index = 0; index < plugin->parameterCount(); ++index)
        postParameterValue(index, plugin->parameter(index).value());
}

void UnifiedPluginAdapter::exchangeSources() {
    const ScopedLock guard(*lock);
    if (processor == nullptr)
        return;
    exchange.clear();
    plugin->sources().writeRequests(exchange);
    processor->readRequests(exchange);
    exchange.clear();
    processor->writeSources(exchange);
    plugin->readSources(exchange);
}

void UnifiedPluginAdapter::setProcessorValue(std::int32_t id, float value) {
    const ScopedLock guard(*lock);
    if (processor != nullptr)
        processor->setExtra(id, value);
}

float UnifiedPluginAdapter::processorValue(std::int32_t id) const noexcept {
    return processor->parameter(id).value();
}

void UnifiedPluginAdapter::automate(std::int32_t id, float value) noexcept REALTIME {
    if (id < 0 || id >= plugin->parameterCount() || !std::isfinite(value))
        return;
    // The audio side is the owner that hears of it. The editor side is marked last: it then copies the audio side's
    // value, which must be there by that time.
    trustedRealtime([&] { processor->parameter(id).setValue(value, GenericParameterOwner::silent); });
    plugin->automate(id, value);
}

void UnifiedPluginAdapter::programChange(std::int32_t bank, std::int32_t program) noexcept REALTIME {
    plugin->postProgramChange(bank, program);
}

void UnifiedPluginAdapter::midiActivity(std::int32_t code) noexcept REALTIME {
    plugin->postMidiActivity(code);
}

void UnifiedPluginAdapter::processorParameterChanged(std::int32_t id) noexcept {
    plugin->followProcessor(id);
    postParameterValue(id, processor->parameter(id).value());
}
