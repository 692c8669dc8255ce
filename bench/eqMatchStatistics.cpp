// How well EQ Match meets curves of known difficulty, and what it costs: bench_eqmatch [SEEDS]. Errors are mean squares
// in dB^2 over 1000 columns from 10 Hz to 30 kHz at 48 kHz.

#include "analysis/EQMatchEngine.h"
#include "tests/support/MatchTargets.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

namespace {

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : 0.5 * (values[middle - 1] + values[middle]);
}

void study(const char* name, std::uint32_t seeds, const std::function<std::vector<float>(std::uint32_t)>& makeCurve,
           std::initializer_list<std::size_t> bandCounts) {
    std::vector<std::vector<double>> errors(bandCounts.size());
    std::int64_t most = 0;
    double slowest = 0.0;
    int significant[25] = {};
    for (std::uint32_t seed = 1; seed <= seeds; ++seed) {
        const std::vector<float> curve = makeCurve(seed);
        EQMatchEngine engine;
        engine.minFrequency = 10.0f;
        engine.maxFrequency = 30000.0f;
        engine.minLog2Frequency = static_cast<float>(std::log2(match::lowestHz));
        engine.maxLog2Frequency = static_cast<float>(std::log2(match::highestHz));
        const auto begin = std::chrono::steady_clock::now();
        engine.prepare(curve, match::rate);
        engine.run();
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        slowest = std::max(slowest, seconds.count());
        most = std::max(most, engine.evaluationCount());
        ++significant[engine.significantBandCount()];
        std::size_t place = 0;
        for (const std::size_t count : bandCounts)
            errors[place++].push_back(
                match::errorBehind(curve, engine.bands().first(std::min(count, engine.bands().size()))));
    }
    std::printf("%-24s", name);
    std::size_t place = 0;
    for (const std::size_t count : bandCounts) {
        const std::vector<double>& all = errors[place++];
        std::printf("  after %2zu: median %.4f worst %.4f", count, medianOf(all),
                    *std::max_element(all.begin(), all.end()));
    }
    std::printf("\n%24s  at most %lld evaluations, %.3f s; significant bands:", "", static_cast<long long>(most),
                slowest);
    for (int count = 0; count < 25; ++count)
        if (significant[count] > 0)
            std::printf(" %d (%d runs)", count, significant[count]);
    std::printf("\n");
}

} // namespace

int main(int argc, char** argv) {
    const auto seeds = static_cast<std::uint32_t>(argc > 1 ? std::max(1, std::atoi(argv[1])) : 24);
    for (const int bells : {1, 2, 3, 4, 8})
        study((std::to_string(bells) + (bells == 1 ? " bell" : " bells")).c_str(), seeds,
              [=](std::uint32_t seed) { return match::bellCurve(seed, bells); }, {1, 8, 24});
    for (const match::Ends ends : {match::Ends::mirrored, match::Ends::open})
        for (const double octaves : {2.0, 1.0, 0.5})
            study((std::string(ends == match::Ends::open ? "open, " : "") + "smooth over " +
                   std::to_string(octaves).substr(0, 3) + " oct")
                      .c_str(),
                  seeds, [=](std::uint32_t seed) { return match::smoothCurve(seed, octaves, ends); }, {8, 24});
    return 0;
}
