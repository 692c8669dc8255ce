// The audio side of an instance, whatever the product: takes the host's block apart at changes and MIDI, runs the graph
// of the derived class in pieces, and mixes with the dry signal.
// Threads: [audio] but where marked.
#pragma once

#include "base/AudioThreadMark.h"
#include "base/LockFreeQueue.h"
#include "base/Property.h"
#include "base/Realtime.h"
#include "base/UpdatedObject.h"
#include "framework/ControllerMapping.h"
#include "framework/GenericPluginBase.h"
#include "framework/MidiMessage.h"
#include "wave/AudioSource.h"
#include "wave/Environment.h"
#include "wave/LevelSource.h"
#include "wave/Producer.h"
#include "wave/SpectrumSource.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class ExchangeStream;

class GenericPluginProcessor : public GenericPluginBase {
public:
    class BypassProcessor;
    class Channel;

    // What the audio side asks of whatever binds it to a host.
    class ProcessorAdapter {
    public:
        virtual void programChange(std::int32_t bank, std::int32_t program) noexcept REALTIME = 0; // [audio]
        virtual void midiActivity(std::int32_t code) noexcept REALTIME = 0;                        // [audio]
        virtual void processorParameterChanged(std::int32_t id) noexcept = 0;                      // [any]

    protected:
        ~ProcessorAdapter() = default;
    };

    // One span of the host's block. A channel's pointer is never null.
    struct Buffers {
        std::span<const float* const> inputs; // the main channels, then those of the side chain
        std::span<float* const> outputs;
    };

    // Bits of the flags that travel with a span.
    static constexpr std::uint32_t inputSilent = 1;  // in: every sample of every input is 0
    static constexpr std::uint32_t outputSilent = 2; // out: every sample of every output is 0

    static constexpr std::int32_t jumpId = -1;  // in the change queue: smoothed values arrive at once
    static constexpr std::int32_t resetId = -2; // in the change queue: the whole graph forgets

    // [main] The derived class calls init, then makes its channels and its graph.
    GenericPluginProcessor(int layoutIndex, std::size_t channelsOfLayout);
    ~GenericPluginProcessor() override; // [main]

    void setAdapter(ProcessorAdapter* bound) noexcept { adapter = bound; } // [main & !processing] not owned

    // Work, from the host's side.
    virtual void process(const Buffers& buffers, std::size_t frames, std::uint32_t& flags) noexcept REALTIME;
    virtual void reset() noexcept REALTIME;
    void setSampleRate(double rate); // [main & !processing] Hz
    void setSideChainConnected(bool connected) noexcept REALTIME { sideChainConnected = connected; }
    void setTransport(double tempo, double beats, bool playing) noexcept REALTIME; // beats per minute; beats

    // Parameters. A batch is heard at one point of the audio, when the outermost bracket closes.
    virtual void postJump() noexcept;                                                           // [any]
    virtual void postReset() noexcept;                                                          // [any]
    void parameterChanged(std::int32_t id, float value, std::uint32_t flags) noexcept override; // [any]
    virtual void setExtra(std::int32_t, float) {} // [main] values that are no parameters, by ids of the product
    AudioThreadMark& audioThread() noexcept { return audioThreadMark; } // [any]

    // MIDI.
    void receiveHostMidi(const MidiMessage& message) noexcept REALTIME; // to decoder and learn queue
    void receiveEditorMidi(const MidiMessage& message);                 // [main] the same from the editor side

    // For the receivers behind the decoder.
    void setMidiActivity(std::int32_t code) noexcept REALTIME { midiActivityCode = code; } // told at the span's end
    void programChange(std::int32_t bank, std::int32_t program) noexcept REALTIME;
    virtual void noteOff(std::int32_t, float) noexcept REALTIME {} // note, velocity
    virtual void noteOn(std::int32_t, float) noexcept REALTIME {}
    std::vector<ValueAssignable<float>*> floatTargets; // what controllers move beside parameters; not owned, not null

    // What displays see. Whoever exchanges holds off a change of layout.
    void readRequests(ExchangeStream& stream); // [main] what displays ask of the meters
    void writeSources(ExchangeStream& stream); // [main] all that is new, and tells the graph that somebody looks

    // Questions.
    virtual std::int32_t tailLength() const noexcept REALTIME;   // samples the graph sounds on, -1: for ever
    virtual std::int32_t silenceTail() const noexcept REALTIME;  // -1
    virtual std::int32_t maxBlockSize() const noexcept REALTIME; // samples of one piece of the graph
    std::int32_t latency() const noexcept REALTIME { return latencySamples; } // as the graph has it now
    bool sideChainInUse() const noexcept REALTIME;
    bool isSideChainConnected() const noexcept REALTIME { return sideChainConnected; }
    bool isInstrument() const noexcept REALTIME;
    std::size_t channelCount() const noexcept REALTIME { return layoutChannels; }
    int layout() const noexcept { return layoutNumber; }
    wave::Environment& environment() noexcept REALTIME { return graph; }
    ControllerMapping& controllerMapping() noexcept REALTIME { return mapping; }
    void reserveQueues() noexcept; // [any but audio] room for what the audio thread will push
    LockFreeQueue<MidiMessage>* learnQueue() noexcept REALTIME { return learn.get(); } // null without the capability

    // Raised at the end of every batch of applied changes, once.
    class Updates final : public UpdatedObject {};
    Updates updates;
    UpdatedObject::DeferredEvent changed;

protected:
    // The switch of the plug-in that opens the side chain port. Constant true unless a product has one.
    virtual bool sideChainSwitch() const noexcept REALTIME { return true; }

    // Set-up, in this order: init from the derived constructor, then its channels and graph.
    void init();                  // [main]
    virtual void initProcess() {} // [main] builds process-wide tables; the first instance of the process runs it
    virtual std::unique_ptr<MidiMessageReceiver> createMidiReceiver() { return nullptr; } // [main] the decoder's tree

    // The road of one span.
    virtual void bindInputs(const Buffers& buffers, std::size_t frames) noexcept REALTIME;
    virtual LockFreeQueue<MidiMessage>& midiQueueFor(LockFreeQueue<MidiMessage>& queue,
                                                     std::size_t frames) noexcept REALTIME;
    virtual void runGraph(std::span<const float*> outputs, std::int32_t count) noexcept REALTIME;

    // The road of one change.
    virtual void beforeChange(std::int32_t) noexcept {}             // [any] on the thread that set the value
    virtual void applyParameter(std::int32_t id) noexcept REALTIME; // -1: all
    virtual void applyChanges() noexcept REALTIME;
    virtual void sampleRateChanged();

    virtual void tempoChanged(double, double) noexcept REALTIME {}
    virtual void transportStarted() noexcept REALTIME {}

    // [any] The graph takes the value over behind the changes that are queued now.
    void setLatency(std::int32_t samples) noexcept REALTIME { wantedLatency.store(samples, std::memory_order_relaxed); }

    void setExternalBypass(bool wanted) noexcept REALTIME;

    std::vector<std::unique_ptr<Channel>>
        channels; // one a channel of the layout, in its order; made by the derived class

    // What displays may see of the graph: slots that init sizes by sourceCounts and the derived class fills. Not owned,
    // null: nothing there. The levels are the further ones first, then those of the channels in their order.
    std::vector<SpectrumSource*> spectrumSources;
    std::vector<LevelSource*> levelSources;
    std::vector<AudioSource*> audioSources;

private:
    struct Change {
        std::int32_t id;
        float value;
    };

    void queueChange(std::int32_t id, float value) noexcept;
    void applyChange(const Change& change) noexcept REALTIME;
    float valueToApply(const Change& change) noexcept REALTIME;
    void resynchronize(std::int32_t strongest) noexcept REALTIME;
    void applyBypass() noexcept REALTIME;
    void countFrames(std::size_t frames) noexcept REALTIME;
    void walkSpan(const Buffers& buffers, std::size_t frames, std::uint32_t& flags) noexcept REALTIME;
    void decodeMidi(const MidiMessage& message) noexcept REALTIME;

    friend class BypassProcessor;

    static constexpr std::int32_t idleFrames = 12288000; // frames since the last exchange saturate here

    AudioThreadMark audioThreadMark;
    ProcessorAdapter* adapter = nullptr;
    wave::Environment graph;
    std::unique_ptr<BypassProcessor> bypass;
    std::unique_ptr<MidiMessageReceiver> midiDecoder;
    ControllerMapping mapping;
    LockFreeQueue<MidiMessage> midiQueue{1024};
    LockFreeQueue<Change> changeQueue{8192};
    std::unique_ptr<LockFreeQueue<MidiMessage>> learn;

    // A batch is never heard in part: applyChanges reads the state of the brackets before and after it reads this
    // count. When both are the same and none is open, none was open in between, so what was counted holds batches
    // whole; and only as many changes as were counted are taken.
    std::atomic<std::uint32_t> pushedChanges{0}; // wraps
    std::uint32_t takenChanges = 0;              // wraps
    std::atomic<bool> resyncWanted{false};       // a change found no room in the queue
    std::atomic<std::int32_t> wantedLatency{0};  // samples; the queue orders it
    std::atomic<std::int32_t> framesSinceExchange{idleFrames};
    std::atomic<std::int32_t> midiState{0}; // rounded value of "Receive Midi"

    const int layoutNumber;
    const std::size_t layoutChannels;
    std::int32_t latencySamples = 0;
    std::int32_t midiActivityCode = -1;
    std::int64_t framesSinceTransport = 0;
    double positionInBeats = 0.0; // wraps at 256
    float lastBeats = 0.0f;
    std::atomic<float> lastTempo{120.0f}; // written by audio, relaxed: displays read it too
    bool initialized = false;
    bool transportPlaying = false;
    bool transportNew = false;
    bool sideChainConnected = false;
    bool externalBypass = false;
};
