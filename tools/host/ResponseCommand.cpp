// zelk-host response: magnitude and phase of a plug-in in the state wanted.
#include "base/NumberText.h"
#include "tools/host/Commands.h"
#include "tools/host/Failure.h"
#include "tools/host/ProgressBar.h"
#include "tools/host/ResponseMeasurement.h"
#include "tools/host/ResponsePlot.h"
#include "tools/host/Session.h"
#include "tools/host/System.h"
#include "tools/host/TextTools.h"

#include <cmath>
#include <cstdio>
#include <utility>

namespace {

using ChannelPair = std::pair<std::uint32_t, std::uint32_t>; // fed and read

Options responseOptions() {
    Options options("response",
                    "Measures magnitude and phase from an input channel to an output channel, with the latency taken\n"
                    "out of the phase. Without --csv and --png it prints the values at some frequencies.",
                    {"FILE.clap"});
    options.add({"--csv", "FILE", "every frequency of the measurement: Hz, dB, degrees"});
    options.add({"--png", "FILE", "a plot"});
    options.add({"--channel", "N",
                 "input channel fed and output channel read (default: 0); N:M for two different\n"
                 "ones; all for each channel by itself"});
    options.add({"--rate", "HZ", "sample rate (default: 48000)"});
    options.add({"--block", "N", "samples a block (default: 256)"});
    Session::addOptions(options);
    return options;
}

std::uint32_t channelNumber(const std::string& text, std::uint32_t count, const char* side) {
    double number = 0.0;
    if (!wholeNumber(text, number) || number < 0.0 || number != std::floor(number))
        throw Failure("--channel needs a channel number, two of them as N:M, or all, not \"" + text + "\"");
    if (number >= count)
        throw Failure("there is no " + std::string(side) + " channel " + text + "; they go from 0 to " +
                      std::to_string(count - 1));
    return static_cast<std::uint32_t>(number);
}

std::vector<ChannelPair> wantedChannels(const std::string& text, const AudioPorts& ports) {
    const std::uint32_t inputs = ports.mainInputChannels();
    const std::uint32_t outputs = ports.mainOutputChannels();
    if (inputs == 0 || outputs == 0)
        throw Failure("the plug-in has no audio input and output to measure between");
    std::vector<ChannelPair> pairs;
    if (text == "all") {
        for (std::uint32_t channel = 0; channel < std::min(inputs, outputs); ++channel)
            pairs.emplace_back(channel, channel);
        return pairs;
    }
    const std::size_t colon = text.find(':');
    const std::string read = colon == std::string::npos ? text : text.substr(colon + 1);
    pairs.emplace_back(channelNumber(text.substr(0, colon), inputs, "input"), channelNumber(read, outputs, "output"));
    return pairs;
}

// The column heads of several responses carry the channel.
std::string csvOf(const std::vector<Response>& responses) {
    std::string text = "frequency_hz";
    for (const Response& response : responses) {
        std::string channel;
        if (responses.size() > 1)
            channel.append("_").append(wholeText(response.input));
        text.append(",magnitude_db").append(channel).append(",phase_degrees").append(channel);
    }
    text += '\n';
    for (std::size_t bin = 0; bin < responses.front().bins.size(); ++bin) {
        text += shortestText(responses.front().hz(bin));
        for (const Response& response : responses)
            text.append(",")
                .append(fixedText(response.magnitudeDb(bin), 6))
                .append(",")
                .append(fixedText(response.phaseDegrees(bin), 6));
        text += '\n';
    }
    return text;
}

void printTable(const std::vector<Response>& responses) {
    for (const Response& response : responses) {
        if (responses.size() > 1)
            std::printf("channel %u\n", response.input);
        std::printf("%10s %10s %10s\n", "Hz", "dB", "degrees");
        for (const double hz : {20.0, 50.0, 100.0, 200.0, 500.0, 1e3, 2e3, 5e3, 10e3, 15e3, 20e3, 30e3}) {
            const auto bin = static_cast<std::size_t>(std::lround(hz / response.hz(1)));
            if (bin < response.bins.size())
                std::printf("%10.1f %10.3f %10.2f\n", response.hz(bin), response.magnitudeDb(bin),
                            response.phaseDegrees(bin));
        }
    }
}

void printNotes(const std::vector<Response>& responses) {
    for (const Response& response : responses) {
        if (!response.steady)
            std::fputs("zelk-host: note: the response still changed from one measurement to the next\n", stderr);
        if (!response.decayed)
            std::fputs("zelk-host: note: the response rings longer than the measurement; the lows are inexact\n",
                       stderr);
    }
}

std::string plotSubtitle(double rate, std::uint32_t latency, const Response& first) {
    std::string text = shortestText(rate) + " Hz, latency " + wholeText(latency) + " samples";
    if (first.input != first.output)
        text += ", channel " + wholeText(first.input) + " to " + wholeText(first.output);
    return text;
}

void writeWhole(const std::string& path, const std::string& bytes) {
    OutputFile file(path);
    file.write(bytes);
    file.commit();
}

} // namespace

int responseCommand(const std::vector<std::string>& words) {
    Options options = responseOptions();
    options.parse(words);
    if (options.wantsHelp()) {
        std::fputs(options.help().c_str(), stdout);
        return 0;
    }
    const double rate = options.number("--rate", 48000.0, Session::leastRate, Session::mostRate);
    const auto block = static_cast<std::uint32_t>(options.whole("--block", 256, 1, 1 << 20));
    const std::optional<std::string> csv = options.text("--csv");
    const std::optional<std::string> png = options.text("--png");
    std::vector<std::string> outputs;
    for (const std::optional<std::string>& path : {csv, png, options.text("--save-state")}) {
        if (path)
            outputs.push_back(*path);
    }
    demandApart(Session::inputFiles(options), outputs);

    Session session(options);
    session.prepare();
    const std::vector<ChannelPair> channels =
        wantedChannels(options.text("--channel").value_or("0"), audioPorts(session.instance()));
    std::vector<Response> responses;
    std::uint32_t latency = 0;
    {
        ProgressBar progress("measuring");
        ResponseMeasurement measurement(session.instance(), rate, block);
        // A long response makes the measurement longer: then those before it are made again, to be comparable.
        do {
            responses.clear();
            for (const auto& [input, output] : channels) {
                responses.push_back(measurement.measure(input, output));
                progress.show(static_cast<double>(responses.size()) / static_cast<double>(channels.size()));
            }
        } while (responses.front().bins.size() != responses.back().bins.size());
        latency = measurement.latency();
    }
    if (csv)
        writeWhole(*csv, csvOf(responses));
    if (png)
        writeWhole(*png, responsePicture(responses, onOneLine(session.instance().descriptor().name),
                                         plotSubtitle(rate, latency, responses.front())));
    if (!csv && !png)
        printTable(responses);
    printNotes(responses);
    return session.finish();
}
