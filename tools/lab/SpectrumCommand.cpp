// zelk-host spectrum: what the analyzer shows at one moment of a sound.
#include "analysis/RealTimeFrequencyAnalyzer.h"
#include "analysis/SpectrumPresenter.h"
#include "base/NumberText.h"
#include "tools/host/Failure.h"
#include "tools/host/Parameters.h"
#include "tools/host/Session.h"
#include "tools/host/System.h"
#include "tools/host/TextTools.h"
#include "tools/lab/CurvePlot.h"
#include "tools/lab/LabClock.h"
#include "tools/lab/LabCommands.h"
#include "tools/lab/Listening.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>

namespace {

Options spectrumOptions() {
    Options options("spectrum",
                    "Plays the sound file IN through the plug-in and draws what the analyzer of Zelk shows around it:\n"
                    "the input, the output and the side chain. Works on any plug-in. The standards of the settings\n"
                    "are those of the plug-in's own \"Analyzer\" parameters where it has them.",
                    {"FILE.clap", "IN"});
    options.add({"--at", "SECONDS", "the moment (default: the end)"});
    options.add({"--png", "FILE", "where to draw (default: spectrum.png)"});
    options.add({"--sidechain", "FILE", "sound for the second input port, of the same sample rate"});
    options.add({"--tilt", "DB", "per octave, around 1 kHz (default: 4.5)"});
    options.add({"--speed", "SECONDS", "of a fall to a tenth (default: 2)"});
    options.add({"--resolution", "N", "samples of a window, 32 to 8192 (default: 4096)"});
    options.add({"--range", "DB", "from top to bottom (default: 90)"});
    Session::addOptions(options);
    return options;
}

// The value of a stepped setting of the plug-in, by a table of what its steps mean.
template <typename T, std::size_t count>
double standardOf(const PluginInstance& instance, const char* name, const std::array<T, count>& meanings,
                  double otherwise) {
    const Parameters parameters(instance);
    if (!parameters.knows(name))
        return otherwise;
    const double step = parameters.current(parameters.find(name));
    return step >= 0.0 && step < static_cast<double>(count)
               ? static_cast<double>(meanings[static_cast<std::size_t>(step)])
               : otherwise;
}

void printPeaks(const std::vector<PlotCurve>& curves) {
    for (const PlotCurve& curve : curves) {
        const auto peak = std::max_element(curve.columns.begin(), curve.columns.end());
        std::printf("%-10s highest at %8.1f Hz: %7.2f dB\n", curve.name.c_str(),
                    CurvePlot::hzOf(static_cast<std::size_t>(peak - curve.columns.begin())),
                    static_cast<double>(*peak));
    }
}

} // namespace

int spectrumCommand(const std::vector<std::string>& words) {
    Options options = spectrumOptions();
    options.parse(words);
    if (options.wantsHelp()) {
        std::fputs(options.help().c_str(), stdout);
        return 0;
    }
    const std::string png = options.text("--png").value_or("spectrum.png");
    std::vector<std::string> inputs = Session::inputFiles(options);
    inputs.push_back(options.positional(1));
    if (const auto path = options.text("--sidechain"))
        inputs.push_back(*path);
    demandApart(inputs, {png});

    const Recording input(options.positional(1));
    std::optional<Recording> sideChain;
    if (const auto path = options.text("--sidechain"))
        sideChain.emplace(*path);
    if (sideChain && sideChain->sampleRate != input.sampleRate)
        throw Failure("the side chain has another sample rate than the input");
    const double length = static_cast<double>(input.frames()) / input.sampleRate;
    const double moment = options.number("--at", length, 0.0, length);

    Session session(options);
    session.prepare(static_cast<std::uint32_t>(input.samples.size()));
    PluginInstance& instance = session.instance();
    const double tilt =
        options.number("--tilt", standardOf(instance, "Analyzer Tilt", analyzerTilts, 4.5), -24.0, 24.0);
    const double fall =
        options.number("--speed", standardOf(instance, "Analyzer Speed", analyzerReleaseSeconds, 2.0), 0.0, 1000.0);
    const double range = options.number("--range", 90.0, 10.0, 160.0);
    const auto size = static_cast<std::int32_t>(options.number(
        "--resolution", standardOf(instance, "Analyzer Resolution", analyzerSizes, 4096.0), 32.0, 8192.0));

    std::vector<PlotCurve> curves{{"pre", {}, {150, 158, 170}}, {"post", {}, {22, 101, 216}}};
    if (sideChain)
        curves.push_back({"side chain", {}, {214, 84, 36}});
    {
        Listening listening(instance, input.sampleRate);
        RealTimeFrequencyAnalyzer analyzer(mainAnalyzer, labClock::makeTimer());
        analyzer.fftSize = size;
        analyzer.measurement(0).connect(&listening.input());
        analyzer.measurement(1).connect(&listening.output());
        analyzer.measurement(2).connect(&listening.sideChain());
        std::vector<std::unique_ptr<SpectrumPresenter>> presenters;
        for (std::size_t index = 0; index < curves.size(); ++index) {
            auto presenter = std::make_unique<SpectrumPresenter>(labClock::makeTimer());
            presenter->columnCount = static_cast<std::uint32_t>(CurvePlot::columnCount);
            presenter->minLog2Frequency = static_cast<float>(std::log2(CurvePlot::leastHz));
            presenter->maxLog2Frequency = static_cast<float>(std::log2(CurvePlot::mostHz));
            presenter->floorDb = static_cast<float>(-range);
            presenter->releaseTime = static_cast<float>(fall);
            presenter->sampleRate = static_cast<float>(input.sampleRate);
            presenter->tilt = static_cast<float>(tilt);
            presenter->setSource(&analyzer.measurement(index));
            presenters.push_back(std::move(presenter));
        }
        listening.play(input, sideChain ? &*sideChain : nullptr, moment, [&](double elapsedMs) {
            // One moment for all curves: the analyzer stays locked around them.
            const LockedSource::Lock held(analyzer.measurement(0));
            for (const auto& presenter : presenters)
                presenter->update(elapsedMs);
        });
        for (std::size_t index = 0; index < curves.size(); ++index)
            curves[index].columns.assign(presenters[index]->columns().begin(), presenters[index]->columns().end());
    }
    printPeaks(curves);
    OutputFile file(png);
    file.write(CurvePlot::picture(curves, onOneLine(instance.descriptor().name),
                                  onOneLine(options.positional(1)) + ", " + fixedText(moment, 2) + " s, tilt " +
                                      shortestText(tilt) + " dB/oct",
                                  -range, 0.0));
    file.commit();
    return session.finish();
}
