#include "framework/GenericPluginProcessor.h"

#include "base/FloatTolerance.h"
#include "base/NotifyEvent.h"
#include "framework/AbstractPluginParameter.h"
#include "framework/BypassProcessor.h"
#include "framework/ProcessorChannel.h"
#include "platform/CriticalSections.h"
#include "platform/FloatingPointMode.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::uint32_t learnMessages = 32;
constexpr double positionPeriod = 256.0; // beats

int processorCount = 0; // of this process, guarded by processSection

} // namespace

GenericPluginProcessor::GenericPluginProcessor(int layoutIndex, std::size_t channelsOfLayout)
    : changed(updates, nullptr), layoutNumber(layoutIndex), layoutChannels(channelsOfLayout) {}

GenericPluginProcessor::~GenericPluginProcessor() {
    channels.clear(); // they are producers of the graph, which is declared behind them and would die first
    const ScopedLock lock(processSection());
    if (initialized)
        --processorCount;
}

void GenericPluginProcessor::init() {
    const ScopedLock lock(processSection());
    if (processorCount++ == 0)
        initProcess();
    initialized = true;
    // Before all components that listen.
    graph.sampleRateChanged.setPrimary(std::make_unique<NotifyEvent::HandlerImpl0<GenericPluginProcessor>>(
        this, &GenericPluginProcessor::sampleRateChanged));
    midiDecoder = createMidiReceiver();
    bypass = std::make_unique<BypassProcessor>(*this);
    spectrumSources.resize(static_cast<std::size_t>(sourceCounts.spectra));
    levelSources.resize(layoutChannels * static_cast<std::size_t>(sourceCounts.levelsPerChannel) +
                        static_cast<std::size_t>(sourceCounts.furtherLevels));
    audioSources.resize(static_cast<std::size_t>(sourceCounts.audio));
    if (info.has(GenericPluginInfo::midiLearnQueue))
        learn = std::make_unique<LockFreeQueue<MidiMessage>>(learnMessages, learnMessages);
}

// The span

void GenericPluginProcessor::process(const Buffers& buffers, std::size_t frames,
                                     std::uint32_t& flags) noexcept REALTIME {
    const RealtimeScope realtime;
    const AudioThreadMark::Scope onAudioThread(audioThreadMark);
    countFrames(frames);
    setAudioFloatingPointMode();
    midiActivityCode = -1;
    applyChanges();
    if (transportNew) {
        tempoChanged(lastTempo.load(std::memory_order_relaxed), positionInBeats);
        transportNew = false;
    }
    const Buffers bound{buffers.inputs, buffers.outputs.first(std::min(buffers.outputs.size(), layoutChannels))};
    bindInputs(bound, frames);
    std::uint32_t flagsOut = (flags & inputSilent) != 0 ? inputSilent | outputSilent : 0;
    walkSpan(bound, frames, flagsOut);
    flags = flagsOut;
}

void GenericPluginProcessor::walkSpan(const Buffers& buffers, std::size_t frames,
                                      std::uint32_t& flags) noexcept REALTIME {
    LockFreeQueue<MidiMessage>& queue = midiQueueFor(midiQueue, frames);
    MidiMessage message;
    bool held = queue.pop(message);
    const bool midiArrived = held;
    auto piece = static_cast<std::size_t>(maxBlockSize());
    std::size_t position = 0;
    while (position < frames) {
        const bool due = held && message.offset < static_cast<std::int64_t>(frames);
        const auto offset = static_cast<std::size_t>(std::max(message.offset, std::int32_t{0}));
        const std::size_t end = due ? std::max(offset, position) : frames;
        while (position < end) {
            const std::size_t count = std::min({end - position, piece, bypass->longestPiece()});
            bypass->process(buffers, position, count, flags);
            position += count;
        }
        if (due) {
            decodeMidi(message);
            held = queue.pop(message);
            applyChanges();
            piece = static_cast<std::size_t>(maxBlockSize());
        }
    }
    for (; held; held = queue.pop(message))
        decodeMidi(message);
    if (midiArrived && adapter != nullptr)
        adapter->midiActivity(midiActivityCode);
}

void GenericPluginProcessor::countFrames(std::size_t frames) noexcept REALTIME {
    const auto added = static_cast<std::int32_t>(std::min<std::size_t>(frames, idleFrames));
    std::int32_t counted = framesSinceExchange.load(std::memory_order_relaxed);
    std::int32_t sum = 0;
    do
        sum = std::min(counted + added, idleFrames);
    while (!framesSinceExchange.compare_exchange_weak(counted, sum, std::memory_order_relaxed));
    graph.uiActive = static_cast<float>(sum) < graph.sampleRate;
    framesSinceTransport += static_cast<std::int64_t>(frames);
}

void GenericPluginProcessor::bindInputs(const Buffers& buffers, std::size_t frames) noexcept REALTIME {
    if (isInstrument())
        return;
    const bool sideChain = sideChainInUse();
    for (const std::unique_ptr<Channel>& channel : channels) {
        const float* const main = buffers.inputs[channel->index];
        const float* const side = sideChain ? buffers.inputs[layoutChannels + channel->index] : main;
        channel->mainInput.setSamples({main, frames});
        channel->sideChainInput.setSamples({side, frames});
        channel->connectedSideChain.setSamples({side, frames});
    }
}

void GenericPluginProcessor::runGraph(std::span<const float*> outputs, std::int32_t count) noexcept REALTIME {
    for (std::size_t index = 0; index < outputs.size(); ++index)
        outputs[index] = index < channels.size() && channels[index]->output != nullptr
                             ? channels[index]->output->pull(count).data()
                             : graph.zeroBlock.data();
}

void GenericPluginProcessor::reset() noexcept REALTIME {
    const RealtimeScope realtime;
    const AudioThreadMark::Scope onAudioThread(audioThreadMark);
    graph.resetAll();
    bypass->jump();
    bypass->clear();
    positionInBeats = 0.0;
    framesSinceTransport = 0;
    applyChanges();
    bypass->updateDelays();
}

void GenericPluginProcessor::setSampleRate(double rate) {
    graph.setSampleRate(static_cast<float>(rate));
}

void GenericPluginProcessor::sampleRateChanged() {
    for (const std::unique_ptr<Channel>& channel : channels)
        channel->sampleRateChanged();
}

void GenericPluginProcessor::setTransport(double tempo, double beats, bool playing) noexcept REALTIME {
    const auto hostTempo = static_cast<float>(tempo);
    const float known = nearlyZero(hostTempo) ? 120.0f : hostTempo;
    lastTempo.store(known, std::memory_order_relaxed);
    const auto hostBeats = static_cast<float>(beats);
    if (!nearlyEqual(hostBeats, lastBeats) || playing) {
        positionInBeats = beats;
        if (playing && !transportPlaying)
            transportStarted();
    } else {
        positionInBeats += static_cast<double>(framesSinceTransport) * static_cast<double>(known) /
                           (60.0 * static_cast<double>(graph.sampleRate));
    }
    positionInBeats = std::fmod(positionInBeats, positionPeriod);
    lastBeats = hostBeats;
    transportPlaying = playing;
    transportNew = true;
    framesSinceTransport = 0;
}

// Changes

void GenericPluginProcessor::postJump() noexcept {
    queueChange(jumpId, 0.0f);
}

void GenericPluginProcessor::postReset() noexcept {
    queueChange(resetId, 0.0f);
}

void GenericPluginProcessor::parameterChanged(std::int32_t id, float value, std::uint32_t flags) noexcept {
    beforeChange(id);
    queueChange(id, value);
    if ((flags & silent) == 0 && adapter != nullptr)
        adapter->processorParameterChanged(id);
}

void GenericPluginProcessor::queueChange(std::int32_t id, float value) noexcept {
    const Change change{id, value};
    if (audioThreadMark.isCurrent() ? changeQueue.pushRealtime(change) : changeQueue.push(change))
        pushedChanges.fetch_add(1);
    else
        resyncWanted.store(true);
}

void GenericPluginProcessor::applyChanges() noexcept REALTIME {
    const std::uint32_t before = bracketState();
    const bool resync = resyncWanted.load();
    const std::uint32_t pushed = pushedChanges.load();
    if (changeDepth() != 0 || bracketState() != before)
        return; // a batch is under way: the next span takes it whole
    if (resync || pushed != takenChanges) {
        // What listens to the audio side keeps its rules.
        trustedRealtime([this] { updates.beginHold(); });
        Change change{};
        std::int32_t strongest = 0; // of the jumps and resets that a resynchronisation finds in the queue
        while (takenChanges != pushed && changeQueue.pop(change)) {
            ++takenChanges;
            if (resync)
                strongest = std::min(strongest, change.id);
            else
                applyChange(change);
        }
        if (resync) {
            resyncWanted.exchange(false); // a change that fails from here on raises it again
            resynchronize(strongest);
        }
        trustedRealtime([this] {
            changed.trigger();
            updates.endHold();
        });
    }
    latencySamples = wantedLatency.load(std::memory_order_relaxed);
}

void GenericPluginProcessor::applyChange(const Change& change) noexcept REALTIME {
    if (change.id == jumpId) {
        graph.jump();
    } else if (change.id == resetId) {
        graph.resetAll();
    } else {
        trustedRealtime([&] { parameter(change.id).notifyListeners(valueToApply(change)); });
        applyParameter(change.id);
    }
}

float GenericPluginProcessor::valueToApply(const Change& change) noexcept REALTIME {
    // Two threads that set one parameter at once may queue in another order than they stored. So the parameter's own
    // value counts, unless it may be of a batch that began meanwhile and is not to be heard before its end.
    const std::uint32_t before = bracketState();
    const float present = parameter(change.id).value();
    return changeDepth() == 0 && bracketState() == before ? present : change.value;
}

void GenericPluginProcessor::resynchronize(std::int32_t strongest) noexcept REALTIME {
    // Which changes were dropped is not known, so everything is taken from the parameters, which always hold the truth.
    if (strongest < 0)
        applyChange({strongest, 0.0f});
    for (std::int32_t id = 0; id < parameterCount(); ++id) {
        trustedRealtime([&] { parameter(id).notifyListeners(parameter(id).value()); });
        applyParameter(id);
    }
}

void GenericPluginProcessor::applyParameter(std::int32_t id) noexcept REALTIME {
    for (const std::unique_ptr<Channel>& channel : channels)
        channel->parameterChanged(id);
    const auto concerns = [id](const AbstractPluginParameter* handled) {
        return handled != nullptr && (id == -1 || id == handled->id());
    };
    if (concerns(ownParameters.receiveMidi))
        midiState.store(static_cast<std::int32_t>(std::lround(ownParameters.receiveMidi->value())),
                        std::memory_order_relaxed);
    if (concerns(ownParameters.bypass))
        applyBypass();
}

void GenericPluginProcessor::applyBypass() noexcept REALTIME {
    const bool wanted = ownParameters.bypass != nullptr && ownParameters.bypass->value() != 0.0f;
    bypass->setBypassed(externalBypass || wanted);
}

void GenericPluginProcessor::setExternalBypass(bool wanted) noexcept REALTIME {
    externalBypass = wanted;
    applyBypass();
}

// MIDI

void GenericPluginProcessor::receiveHostMidi(const MidiMessage& message) noexcept REALTIME {
    // A full queue drops the message.
    if (midiState.load(std::memory_order_relaxed) == 0)
        static_cast<void>(midiQueue.pushRealtime(message));
    if (learn != nullptr)
        static_cast<void>(learn->pushRealtime(message));
}

void GenericPluginProcessor::receiveEditorMidi(const MidiMessage& message) {
    if (midiState.load(std::memory_order_relaxed) == 0)
        static_cast<void>(midiQueue.push(message));
    if (learn != nullptr)
        static_cast<void>(learn->push(message));
}

void GenericPluginProcessor::programChange(std::int32_t bank, std::int32_t program) noexcept REALTIME {
    if (adapter != nullptr)
        adapter->programChange(bank, program);
}

void GenericPluginProcessor::reserveQueues() noexcept {
    midiQueue.reserve();
    changeQueue.reserve();
}

LockFreeQueue<MidiMessage>& GenericPluginProcessor::midiQueueFor(LockFreeQueue<MidiMessage>& queue,
                                                                 std::size_t) noexcept REALTIME {
    return queue;
}

void GenericPluginProcessor::decodeMidi(const MidiMessage& message) noexcept REALTIME {
    if (midiDecoder != nullptr)
        midiDecoder->receive(message);
}

// Questions

std::int32_t GenericPluginProcessor::tailLength() const noexcept REALTIME {
    return silenceTail();
}

std::int32_t GenericPluginProcessor::silenceTail() const noexcept REALTIME {
    return -1;
}

std::int32_t GenericPluginProcessor::maxBlockSize() const noexcept REALTIME {
    return graph.getMaxBlockSize();
}

bool GenericPluginProcessor::sideChainInUse() const noexcept REALTIME {
    return info.has(GenericPluginInfo::sideChain) && sideChainSwitch();
}

bool GenericPluginProcessor::isInstrument() const noexcept REALTIME {
    return info.type == GenericPluginInfo::Type::instrument;
}
