#include "framework/GenericPlugin.h"

#include "base/FloatTolerance.h"
#include "framework/AbstractPluginParameter.h"
#include "framework/PluginInstances.h"
#include "framework/PluginSettings.h"
#include "framework/ReceivedSources.h"
#include "framework/chl/Layouts.h"
#include "platform/AsyncEventQueues.h"
#include "platform/Clock.h"
#include "platform/CriticalSections.h"

#include <algorithm>
#include <utility>

namespace {

// Messages of the asynchronous queue.
constexpr std::int32_t messageLatency = 0;
constexpr std::int32_t messageProgram = 1;
constexpr std::int32_t messageParameter = 2;
constexpr std::int32_t messageAutomation = 3;
constexpr std::int32_t messageMidi = 4;

} // namespace

GenericPlugin::GenericPlugin() : queue(createAsyncEventQueue()), exchangeClock(millisecondTicks) {
    queue->event.add(this, &GenericPlugin::handleAsync);
}

GenericPlugin::~GenericPlugin() {
    end();
}

void GenericPlugin::init() {
    automated = std::make_unique<ParameterIdSet>(static_cast<std::size_t>(parameterCount()));
    makeSources();
    const ScopedLock lock(processSection());
    PluginInstances& instances = PluginInstances::ofProcess();
    const bool first = instances.empty();
    if (first) {
        instances.begin();
        createGlobals();
    }
    ownSettings = createSettings();
    if (first && !loadControllerMap())
        loadFactoryControllerMap();
    readSettings();
    if (first && (sharedSettings().newVersion || !hasPresets()))
        static_cast<void>(installFactoryPresets(sharedSettings().olderVersion)); // without them all works on
    instances.controllerMapping().changed.event.add(this, &GenericPlugin::controllerMapChanged);
    instances.add(*this);
    joined = true;
    if (info.has(GenericPluginInfo::instanceNames))
        chooseName();
}

void GenericPlugin::end() {
    if (!joined)
        return;
    joined = false;
    const ScopedLock lock(processSection());
    PluginInstances& instances = PluginInstances::ofProcess();
    instances.controllerMapping().changed.event.remove(this, &GenericPlugin::controllerMapChanged);
    instances.remove(*this);
    if (instances.empty()) {
        destroyGlobals();
    }
}

void GenericPlugin::createGlobals() {
    PluginInstances::ofProcess().setSettings(createSharedSettings());
}

void GenericPlugin::destroyGlobals() {
    if (controllerMapping().modified)
        saveControllerMap();
    PluginInstances::ofProcess().end();
}

ControllerMapping& GenericPlugin::controllerMapping() noexcept {
    return PluginInstances::ofProcess().controllerMapping();
}

void GenericPlugin::controllerMapChanged() {
    if (adapter != nullptr)
        adapter->syncControllerMapping();
    tellListener(eventControllerMap, 0);
}

// The listener

void GenericPlugin::setListener(Listener* wanted) {
    listener.store(wanted);
    // A call that took the old one before the store has raised the count before, so waiting for 0 outlasts it. The same
    // holds for an exchange that found no interface.
    while (listenerUse.load() != 0)
        std::this_thread::yield();
}

void GenericPlugin::tellListener(std::int32_t code, std::int32_t argument) {
    listenerUse.fetch_add(1);
    if (Listener* const told = listener.load(); told != nullptr)
        told->pluginEvent(code, argument);
    listenerUse.fetch_sub(1);
}

// The asynchronous queue

void GenericPlugin::drain() {
    queue->drain();
}

void GenericPlugin::handleAsync() {
    const auto argument = static_cast<std::int32_t>(queue->value());
    switch (queue->id()) {
    case messageLatency:
        if (adapter != nullptr)
            adapter->latencyChanged();
        break;
    case messageProgram:
        if (sharedSettings().enableProgramChanges)
            loadProgram(argument >> 8, argument & 0xFF);
        break;
    case messageParameter:
        if (adapter != nullptr && argument < parameterCount())
            adapter->sendParameterToHost(argument);
        break;
    case messageAutomation:
        takeAutomation();
        break;
    case messageMidi:
        tellListener(eventMidi, argument);
        break;
    default:
        break;
    }
}

void GenericPlugin::postProgramChange(std::int32_t bank, std::int32_t program) noexcept REALTIME {
    queue->postRealtime(messageProgram, (bank << 8) | program);
}

void GenericPlugin::postMidiActivity(std::int32_t code) noexcept REALTIME {
    if (listener.load(std::memory_order_relaxed) != nullptr)
        queue->postRealtime(messageMidi, code);
}

// Changes

void GenericPlugin::markJump() {
    if (pendingId == allValuesSmoothed)
        pendingId = allValuesAtOnce;
}

void GenericPlugin::markReset() {
    pendingId = allValuesWithReset;
}

void GenericPlugin::beginChange() noexcept {
    if (onMainThread() && changeDepth() == 0)
        takeAutomation();
    GenericPluginBase::beginChange();
}

void GenericPlugin::endChange() noexcept {
    if (leaveChange() != 0)
        return;
    // Taken before anything is told, always: a batch that changed nothing must not leave its way of arriving behind.
    const Pending kind = pendingKind.exchange(Pending::nothing);
    const std::int32_t way = std::exchange(pendingId, allValuesSmoothed);
    if (kind == Pending::nothing)
        return;
    afterParameterChange(-1); // once for the whole batch, and before the host hears of values
    if (kind == Pending::withEcho)
        sendToAdapter(way);
    tellListener(eventParameter, -1);
}

void GenericPlugin::parameterChanged(std::int32_t id, float value, std::uint32_t flags) noexcept {
    noteChange(id, value);
    const bool isSilent = (flags & silent) != 0;
    if (changeDepth() != 0) {
        // A change with echo outweighs silent ones.
        Pending expected = Pending::nothing;
        if (isSilent)
            pendingKind.compare_exchange_strong(expected, Pending::silentOnly);
        else
            pendingKind.store(Pending::withEcho);
        if (changeDepth() != 0)
            return;
    }
    if (!isSilent)
        sendToAdapter(id);
    tellListener(eventParameter, id);
}

void GenericPlugin::noteChange(std::int32_t id, float value) {
    parameter(id).notifyListeners(value);
    if (changeDepth() == 0)
        afterParameterChange(id);
    preset.setModified(true);
}

void GenericPlugin::sendToAdapter(std::int32_t id) {
    if (adapter == nullptr)
        return;
    if (onMainThread())
        adapter->sendParameterToHost(id);
    else
        queue->post(messageParameter, id);
}

// What the audio thread moved

void GenericPlugin::automate(std::int32_t id, float value) noexcept REALTIME {
    // Unheard, so that it stores and does nothing else.
    trustedRealtime([&] { parameter(id).setValue(value, silent | unheard); });
    followProcessor(id);
}

void GenericPlugin::followProcessor(std::int32_t id) noexcept REALTIME {
    if (automated->mark(id))
        queue->postRealtime(messageAutomation, 0);
}

void GenericPlugin::takeAutomation() {
    if (adapter == nullptr)
        return;
    automated->take([this](std::int32_t id) {
        // The audio side has the last word: it moved this parameter, by the host's hand or by MIDI.
        AbstractPluginParameter& moved = parameter(id);
        moved.setValue(adapter->processorValue(id), silent | unheard);
        noteChange(id, moved.value());
        tellListener(eventParameter, id);
    });
}

void GenericPlugin::receive(const MidiMessage& message) noexcept REALTIME {
    // A receiver may stand on the audio thread, but this one is called on the main thread.
    const RealtimePermit permit{"the editor side's receiver locks, on the main thread"};
    if (adapter != nullptr)
        trustedRealtime([&] { adapter->sendMidiToProcessor(message); });
}

// Latency

void GenericPlugin::storeLatency(std::int32_t samples) {
    if (latencySamples.exchange(samples, std::memory_order_relaxed) == samples || adapter == nullptr)
        return;
    if (onMainThread())
        adapter->latencyChanged();
    else
        queue->post(messageLatency, 0);
}

void GenericPlugin::setSampleRate(float wanted) {
    if (nearlyEqual(wanted, rate))
        return;
    rate = wanted;
    {
        const InterfaceHold held(*this);
        received->setSampleRate(rate);
    }
    updateLatency();
}

void GenericPlugin::setLayout(int wanted) {
    layoutIndex = wanted;
    {
        const InterfaceHold held(*this);
        received->setChannelCount(chl::channelCount(static_cast<chl::Layout>(wanted)));
    }
    tellListener(eventLayout, 0);
}

// The instance

std::int32_t GenericPlugin::instanceId() {
    const ScopedLock lock(processSection());
    if (ownInstanceId < 0)
        ownInstanceId = PluginInstances::ofProcess().nextId();
    return ownInstanceId;
}

void GenericPlugin::setInstanceName(std::string_view wanted, bool tellHost) {
    const bool automatic = wanted.empty();
    if (automatic == automaticName && (automatic || wanted == ownInstanceName))
        return;
    restoreInstanceName(automatic, wanted);
    if (tellHost)
        tellStateChanged(instanceNamed);
}

void GenericPlugin::restoreInstanceName(bool automatic, std::string_view name) {
    automaticName = automatic;
    if (automatic)
        chooseName();
    else
        takeName(std::string(name));
}

void GenericPlugin::restoreInstanceId(std::int32_t stored) {
    const ScopedLock lock(processSection());
    if (stored != ownInstanceId && PluginInstances::ofProcess().claimId(stored))
        ownInstanceId = stored;
}

void GenericPlugin::tellStateChanged(std::int32_t kind) {
    if (adapter != nullptr)
        adapter->stateChanged(kind);
}

void GenericPlugin::chooseName() {
    const ScopedLock lock(processSection());
    const PluginInstances& instances = PluginInstances::ofProcess();
    std::string candidate = info.productName;
    for (int number = 2; instances.hasName(candidate, *this); ++number)
        candidate = info.productName + " (" + std::to_string(number) + ")";
    takeName(std::move(candidate));
}

void GenericPlugin::takeName(std::string wanted) {
    {
        const ScopedLock lock(processSection());
        if (wanted == ownInstanceName)
            return;
        ownInstanceName = std::move(wanted);
        PluginInstances::ofProcess().sortByName();
    }
    tellListener(eventInstanceNames, 0);
}

// Names

std::int32_t GenericPlugin::registerGroup(std::string_view group) {
    const auto found = std::find(groups.begin(), groups.end(), group);
    if (found != groups.end())
        return static_cast<std::int32_t>(found - groups.begin());
    groups.emplace_back(group);
    return static_cast<std::int32_t>(groups.size()) - 1;
}

void GenericPlugin::registerAlias(AbstractPluginParameter& aliased, std::string_view alias) {
    aliasMap.emplace(alias, aliased.id());
}
