#include "tools/host/Player.h"

#include "tools/host/Failure.h"

#include <algorithm>
#include <chrono>
#include <cmath>

Player::Player(PluginInstance& wanted, const Settings& chosen, EventList& eventList)
    : instance(wanted)
    , settings(chosen)
    , events(eventList)
    , produced(wanted.host())
    , layout(audioPorts(wanted))
    , inputBuffers(layout.inputs, chosen.blockFrames)
    , outputBuffers(layout.outputs, chosen.blockFrames) {
    if (layout.outputs.empty())
        throw Failure("the plug-in has no audio output");
    if (settings.inPlace) {
        if (layout.inputs.empty())
            throw Failure("the plug-in has no audio input to work in place");
        outputBuffers.share(inputBuffers);
    }
    instance.activate(settings.sampleRate, settings.blockFrames);
    instance.serve();
    instance.startProcessing();
}

Player::~Player() {
    instance.rest();
    instance.serve();
}

void Player::play(std::size_t frames, const std::vector<Channels>& inputs, Channels& output) {
    output.resize(layout.mainOutputChannels());
    for (std::vector<float>& channel : output)
        channel.resize(frames);
    std::size_t done = 0;
    while (done < frames) {
        // Back to the main thread only when the plug-in asked for it.
        instance.onAudioThread([&] {
            while (done < frames && !failed) {
                const auto count =
                    static_cast<std::uint32_t>(std::min<std::size_t>(settings.blockFrames, frames - done));
                block(done, count, inputs, output);
                done += count;
                if (instance.host().wantsMainThread())
                    break;
            }
        });
        if (failed)
            throw Failure("the plug-in failed to process the block at sample " + std::to_string(measured.frames));
        instance.serve();
    }
}

void Player::block(std::size_t offset, std::uint32_t count, const std::vector<Channels>& from, Channels& to) {
    static const Channels silence;
    for (std::size_t port = 0; port < layout.outputs.size(); ++port)
        outputBuffers.spoil(port, count);
    for (std::size_t port = 0; port < layout.inputs.size(); ++port)
        inputBuffers.fill(port, port < from.size() ? from[port] : silence, offset, count);
    events.showBlock(measured.frames, count);
    produced.begin(count);

    const double seconds = static_cast<double>(measured.frames) / settings.sampleRate;
    clap_event_transport transport{};
    transport.header = {sizeof transport, 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_TRANSPORT, 0};
    transport.flags = CLAP_TRANSPORT_HAS_TEMPO | CLAP_TRANSPORT_HAS_SECONDS_TIMELINE | CLAP_TRANSPORT_IS_PLAYING;
    transport.tempo = 120.0;
    transport.song_pos_seconds = std::llround(seconds * static_cast<double>(CLAP_SECTIME_FACTOR));

    clap_process work{};
    work.steady_time = static_cast<std::int64_t>(measured.frames);
    work.frames_count = count;
    work.transport = &transport;
    work.audio_inputs = inputBuffers.clap();
    work.audio_outputs = outputBuffers.clap();
    work.audio_inputs_count = inputBuffers.ports();
    work.audio_outputs_count = outputBuffers.ports();
    work.in_events = events.clap();
    work.out_events = produced.clap();

    const auto start = std::chrono::steady_clock::now();
    failed = instance.process(work) == CLAP_PROCESS_ERROR;
    const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (failed)
        return;

    if (!inputBuffers.guardsIntact(count) || !outputBuffers.guardsIntact(count))
        instance.host().complain("process wrote behind the end of a buffer");
    for (std::size_t channel = 0; channel < to.size(); ++channel) {
        const float* made = outputBuffers.channel(0, channel);
        std::copy_n(made, count, to[channel].begin() + static_cast<std::ptrdiff_t>(offset));
        measured.notFinite += static_cast<std::uint64_t>(
            std::count_if(made, made + count, [](float sample) { return !std::isfinite(sample); }));
    }
    if (took > measured.worstSeconds) {
        measured.worstSeconds = took;
        measured.worstFrame = measured.frames;
        measured.worstFrames = count;
    }
    measured.seconds += took;
    measured.frames += count;
}
