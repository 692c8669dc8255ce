// zelk-host match: the bands that give one recording the long-term spectrum of another.
#include "analysis/EQMatchSession.h"
#include "analysis/RealTimeFrequencyAnalyzer.h"
#include "base/NumberText.h"
#include "tools/host/Failure.h"
#include "tools/host/Session.h"
#include "tools/host/System.h"
#include "tools/host/TextTools.h"
#include "tools/lab/CurvePlot.h"
#include "tools/lab/LabClock.h"
#include "tools/lab/LabCommands.h"
#include "tools/lab/Listening.h"
#include "tools/lab/PluginBands.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>

namespace {

constexpr double wholeRecording = std::numeric_limits<double>::max();

Options matchOptions() {
    Options options("match",
                    "Runs EQ Match of Zelk over two recordings: prints the bands that give IN the spectrum of\n"
                    "REFERENCE, and after each of them the error that is left when IN is played through the plug-in.\n"
                    "Works on Zelk alone. --save-state keeps the bands.",
                    {"FILE.clap", "IN", "REFERENCE"});
    options.add({"--bands", "N", "how many bands, 1 to 24 (default: as many as are worth it)"});
    options.add({"--png", "FILE", "where to draw the difference before and after (default: match.png)"});
    Session::addOptions(options);
    return options;
}

void prepare(SpectrumPresenter& presenter, double sampleRate) {
    presenter.columnCount = static_cast<std::uint32_t>(CurvePlot::columnCount);
    presenter.minLog2Frequency = static_cast<float>(std::log2(CurvePlot::leastHz));
    presenter.maxLog2Frequency = static_cast<float>(std::log2(CurvePlot::mostHz));
    presenter.sampleRate = static_cast<float>(sampleRate);
    presenter.floorDb = -180.0f;
}

// The analyzer in front of one presenter.
struct Average {
    explicit Average(double sampleRate)
        : analyzer(externalAnalyzer, labClock::makeTimer()), presenter(labClock::makeTimer()) {
        prepare(presenter, sampleRate);
        presenter.setSource(&analyzer.measurement(0));
    }
    void look(double elapsedMs) { presenter.update(elapsedMs); }

    RealTimeFrequencyAnalyzer analyzer;
    SpectrumPresenter presenter;
};

// The long-term spectrum of what the plug-in makes of the recording.
std::vector<float> outputSpectrum(PluginInstance& instance, const Recording& input) {
    Listening listening(instance, input.sampleRate);
    Average average(input.sampleRate);
    average.presenter.accumulate = true;
    average.analyzer.measurement(0).connect(&listening.output());
    listening.play(input, nullptr, wholeRecording, [&](double elapsedMs) { average.look(elapsedMs); });
    return {average.presenter.columns().begin(), average.presenter.columns().end()};
}

std::vector<float> differenceOf(const std::vector<float>& reference, const std::vector<float>& present) {
    std::vector<float> curve(present.size());
    std::transform(reference.begin(), reference.end(), present.begin(), curve.begin(), std::minus<>());
    return curve;
}

// In dB^2, below the lower half rate.
double errorOf(const std::vector<float>& curve, double nyquist) {
    double sum = 0.0;
    std::size_t count = 0;
    for (; count < curve.size() && CurvePlot::hzOf(count) < nyquist; ++count)
        sum += static_cast<double>(curve[count]) * static_cast<double>(curve[count]);
    return count > 0 ? sum / static_cast<double>(count) : 0.0;
}

// Scaled to what can be seen of both.
std::string pictureOf(const std::vector<float>& before, const std::vector<float>& after, const std::string& title,
                      const std::string& subtitle, double nyquist) {
    double most = 12.0;
    for (std::size_t column = 0; column < before.size() && CurvePlot::hzOf(column) < nyquist; ++column)
        most = std::max(most, std::abs(static_cast<double>(before[column])) + 3.0);
    most = std::min(most, 60.0);
    const PlotCurve curves[] = {{"before", before, {214, 84, 36}}, {"after", after, {22, 101, 216}}};
    return CurvePlot::picture(curves, title, subtitle, -most, most);
}

} // namespace

int matchCommand(const std::vector<std::string>& words) {
    Options options = matchOptions();
    options.parse(words);
    if (options.wantsHelp()) {
        std::fputs(options.help().c_str(), stdout);
        return 0;
    }
    const std::string png = options.text("--png").value_or("match.png");
    std::vector<std::string> outputs{png};
    if (const auto state = options.text("--save-state"))
        outputs.push_back(*state);
    std::vector<std::string> inputs = Session::inputFiles(options);
    inputs.push_back(options.positional(1));
    inputs.push_back(options.positional(2));
    demandApart(inputs, outputs);
    const auto wanted = static_cast<std::size_t>(options.whole("--bands", 0, 1, EQMatchPlacement::bandCount));

    const Recording input(options.positional(1));
    const Recording reference(options.positional(2));
    const double nyquist = std::min({input.sampleRate, reference.sampleRate, 2.0 * CurvePlot::mostHz}) / 2.0;
    Session session(options);
    session.prepare(static_cast<std::uint32_t>(input.samples.size()));
    PluginInstance& instance = session.instance();
    PluginBands bands(instance);

    Average ofInput(input.sampleRate);
    Average ofReference(reference.sampleRate);
    EQMatchSession match(ofInput.presenter, ofReference.presenter, bands);
    match.analyze();
    {
        Listening listening(instance, input.sampleRate);
        ofInput.analyzer.measurement(0).connect(&listening.input());
        listening.play(input, nullptr, wholeRecording, [&](double elapsedMs) { ofInput.look(elapsedMs); });
        ofInput.analyzer.measurement(0).connect(nullptr);
        SampleSource source(reference.samples.size(), 0);
        ofReference.analyzer.measurement(0).connect(&source);
        listen(reference, source, [&](double elapsedMs) { ofReference.look(elapsedMs); });
        ofReference.analyzer.measurement(0).connect(nullptr);
    }
    if (!match.canMatch())
        throw Failure("there is too little sound in the recordings for a match");
    const std::vector<float> target(ofReference.presenter.columns().begin(), ofReference.presenter.columns().end());
    const std::vector<float> before = differenceOf(target, outputSpectrum(instance, input));
    match.match();
    const std::size_t count = wanted > 0 ? std::min(wanted, match.found().size()) : match.bandCount();

    std::printf("%2d %54s %9.3f dB^2\n", 0, "without bands", errorOf(before, nyquist));
    std::vector<float> after = before;
    for (std::size_t placed = 1; placed <= count; ++placed) {
        match.setBandCount(placed);
        after = differenceOf(target, outputSpectrum(instance, input));
        std::printf("%2zu %54s %9.3f dB^2\n", placed, PluginBands::text(EQMatchBand(match.found()[placed - 1])).c_str(),
                    errorOf(after, nyquist));
        if (match.verdict() == EQMatchPlacement::Verdict::noneFree) {
            std::fputs("zelk-host: note: the plug-in has no band left\n", stderr);
            break;
        }
    }
    match.finish();
    OutputFile file(png);
    file.write(pictureOf(before, after, onOneLine(options.positional(1)) + " to " + onOneLine(options.positional(2)),
                         wholeText(static_cast<std::int64_t>(count)) + " bands, " +
                             fixedText(errorOf(before, nyquist), 2) + " to " + fixedText(errorOf(after, nyquist), 2) +
                             " dB^2",
                         nyquist));
    file.commit();
    return session.finish();
}
