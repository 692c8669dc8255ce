// zelk-host render: a sound file through a plug-in.
#include "base/NumberText.h"
#include "tools/host/Commands.h"
#include "tools/host/Failure.h"
#include "tools/host/MidiFile.h"
#include "tools/host/Parameters.h"
#include "tools/host/Player.h"
#include "tools/host/ProgressBar.h"
#include "tools/host/Session.h"
#include "tools/host/SoundFile.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>

namespace {

Options renderOptions() {
    Options options("render",
                    "Sends the sound file IN through the plug-in and writes OUT, whose extension tells the container\n"
                    "(wav, flac, aiff, caf, w64, rf64, au, ogg). OUT appears only when it is complete.",
                    {"FILE.clap", "IN", "OUT"});
    options.add({"--block", "N", "samples a block (default: 256)"});
    options.add({"--rate", "HZ",
                 "sample rate that the plug-in is told and OUT gets (default: that of IN);\n"
                 "the samples are not converted"});
    options.add({"--sidechain", "FILE",
                 "sound for the second input port, of the same sample rate; mono goes to all\n"
                 "channels, silence follows its end"});
    options.add({"--automate", "FILE", "parameter changes, a line each: seconds, parameter, value"});
    options.add(
        {"--midi", "FILE", "standard MIDI file, format 0 or 1, played into the plug-in from the first sample on"});
    options.add({"--compensate", "", "cut the latency from the start, and let the plug-in's tail ring out"});
    options.add({"--format", "SAMPLES", "16, 24, 32, float or double (default: float, or 24 for flac)"});
    options.add({"--in-place", "", "use the same memory for the main input and output"});
    Session::addOptions(options);
    return options;
}

class SideChain {
public:
    SideChain(const std::string& path, int sampleRate, const PluginInstance& instance) : reader(path) {
        const AudioPorts ports = audioPorts(instance);
        if (ports.inputs.size() < 2)
            throw Failure("the plug-in has no side chain input");
        channels = ports.inputs[1].channels;
        if (reader.sampleRate() != sampleRate)
            throw Failure(path + " has " + std::to_string(reader.sampleRate()) + " Hz, but the input has " +
                          std::to_string(sampleRate) + " Hz");
        if (reader.channels() != 1 && reader.channels() != channels)
            throw Failure(path + " has " + std::to_string(reader.channels()) + " channels; the side chain takes 1 or " +
                          std::to_string(channels));
    }

    void read(Channels& into, std::size_t count) {
        reader.read(into, count);
        into.resize(std::min<std::size_t>(into.size(), channels));
        while (into.size() < channels)
            into.push_back(into.front());
    }

private:
    SoundReader reader;
    std::uint32_t channels = 0;
};

std::uint32_t tailOf(const PluginInstance& instance) {
    const std::uint32_t tail = instance.tail();
    if (tail < std::numeric_limits<std::int32_t>::max())
        return tail;
    std::fputs("zelk-host: note: the plug-in's tail is endless; the output ends with the input\n", stderr);
    return 0;
}

void printFigures(const Player::Figures& figures, double rate, std::uint32_t latencyBefore, std::uint32_t latency) {
    const double length = static_cast<double>(figures.frames) / rate;
    const double blockLength = static_cast<double>(figures.worstFrames) / rate;
    std::printf("%.2f s of sound in %.2f s", length, figures.seconds);
    if (figures.seconds > 0.0)
        std::printf(", %.1f times real time", length / figures.seconds);
    if (figures.worstFrames > 0)
        std::printf("\nworst block: %.3f ms, %.1f %% of its %.3f ms, at %.2f s", figures.worstSeconds * 1e3,
                    100.0 * figures.worstSeconds / blockLength, blockLength * 1e3,
                    static_cast<double>(figures.worstFrame) / rate);
    std::printf("\nlatency: %u samples, %.2f ms\n", latency, 1e3 * latency / rate);
    if (latency != latencyBefore)
        std::fprintf(stderr, "zelk-host: note: the latency was %u samples at the start\n", latencyBefore);
}

void printNotes(const Player::Figures& figures, const SoundWriter& writer) {
    if (figures.notFinite > 0)
        std::fprintf(stderr, "zelk-host: note: %llu samples of the output are not finite numbers\n",
                     static_cast<unsigned long long>(figures.notFinite));
    if (writer.clipped() > 0)
        std::fprintf(stderr, "zelk-host: note: %llu samples were clipped; --format float keeps them\n",
                     static_cast<unsigned long long>(writer.clipped()));
}

void demandSeparateFiles(const Options& options) {
    std::vector<std::string> inputs = Session::inputFiles(options);
    inputs.push_back(options.positional(1));
    for (const char* option : {"--sidechain", "--automate", "--midi"}) {
        if (const auto path = options.text(option))
            inputs.push_back(*path);
    }
    std::vector<std::string> outputs{options.positional(2)};
    if (const auto state = options.text("--save-state"))
        outputs.push_back(*state);
    demandApart(inputs, outputs);
}

} // namespace

int renderCommand(const std::vector<std::string>& words) {
    Options options = renderOptions();
    options.parse(words);
    if (options.wantsHelp()) {
        std::fputs(options.help().c_str(), stdout);
        return 0;
    }
    Player::Settings settings;
    settings.blockFrames = static_cast<std::uint32_t>(options.whole("--block", 256, 1, 1 << 20));
    settings.inPlace = options.has("--in-place");
    const double wantedRate = options.number("--rate", 0.0, Session::leastRate, Session::mostRate);
    demandSeparateFiles(options);

    SoundReader reader(options.positional(1));
    settings.sampleRate = wantedRate > 0.0 ? wantedRate : reader.sampleRate();
    Session session(options);
    session.prepare(options.text("--config") ? std::nullopt : std::optional(reader.channels()));
    PluginInstance& instance = session.instance();
    const AudioPorts ports = audioPorts(instance);
    if (ports.mainInputChannels() != reader.channels())
        throw Failure("the input has " + std::to_string(reader.channels()) + " channels; the plug-in takes " +
                      std::to_string(ports.mainInputChannels()));
    std::optional<SideChain> sideChain;
    if (const auto path = options.text("--sidechain"))
        sideChain.emplace(*path, reader.sampleRate(), instance);
    if (settings.inPlace && (ports.outputs.empty() || ports.inputs[0].inPlacePair != ports.outputs[0].id))
        std::fputs("zelk-host: note: the plug-in does not declare that it works in place\n", stderr);

    EventList events;
    if (const auto path = options.text("--automate"))
        addAutomation(events, Parameters(instance), *path, settings.sampleRate);
    if (const auto path = options.text("--midi"))
        addMidiFile(events, instance, *path, settings.sampleRate);

    Player::Figures figures;
    {
        Player player(instance, settings, events);
        const bool compensate = options.has("--compensate");
        const std::uint32_t latency = instance.latency();
        std::uint64_t toSkip = compensate ? latency : 0;
        const std::uint64_t behind = compensate ? std::uint64_t{latency} + tailOf(instance) : 0;
        const std::uint64_t total = reader.frames() + behind;

        SoundWriter writer(options.positional(2),
                           {ports.mainOutputChannels(), static_cast<int>(std::lround(settings.sampleRate)),
                            options.text("--format").value_or(""),
                            ports.mainOutputChannels() == reader.channels() ? reader.channelMap() : std::vector<int>(),
                            total - toSkip});
        ProgressBar progress("rendering");
        const std::size_t chunk = std::max<std::size_t>(1, 16384 / settings.blockFrames) * settings.blockFrames;
        std::vector<Channels> inputs(sideChain ? 2 : 1);
        Channels output;
        for (std::uint64_t position = 0; position < total;) {
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(chunk, total - position));
            reader.read(inputs[0], count);
            if (sideChain)
                sideChain->read(inputs[1], count);
            player.play(count, inputs, output);
            const auto skipped = static_cast<std::size_t>(std::min<std::uint64_t>(toSkip, count));
            writer.write(output, skipped, count - skipped);
            toSkip -= skipped;
            position += count;
            progress.show(static_cast<double>(position) / static_cast<double>(total));
        }
        writer.finish();
        figures = player.figures();
        printFigures(figures, settings.sampleRate, latency, instance.latency());
        printNotes(figures, writer);
        if (const std::size_t unheard = events.countFrom(total); unheard > 0)
            std::fprintf(stderr, "zelk-host: note: %zu events lie behind the end of the sound\n", unheard);
    }
    return session.finish();
}
