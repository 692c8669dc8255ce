#include "tools/host/ResponseMeasurement.h"

#include "tools/host/Fft.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace {

constexpr std::size_t mostSize = std::size_t{1} << 20;
constexpr double decayedLevel = 1e-7; // of the last eighth, relative to the peak
constexpr double sameLevel = 1e-6;    // of the difference of two measurements, relative to the peak
constexpr int mostAttempts = 8;

float peakOf(const float* from, const float* to) {
    float peak = 0.0f;
    for (; from != to; ++from)
        peak = std::max(peak, std::abs(*from));
    return peak;
}

bool hasDecayed(const std::vector<float>& response) {
    const float* end = response.data() + response.size();
    return peakOf(end - response.size() / 8, end) <= decayedLevel * peakOf(response.data(), end);
}

bool areSame(const std::vector<float>& a, const std::vector<float>& b) {
    if (a.size() != b.size())
        return false;
    const double allowed = sameLevel * peakOf(a.data(), a.data() + a.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!(std::abs(static_cast<double>(a[i]) - b[i]) <= allowed))
            return false;
    }
    return true;
}

} // namespace

double Response::hz(std::size_t bin) const {
    return static_cast<double>(bin) * sampleRate / static_cast<double>(2 * (bins.size() - 1));
}

double Response::magnitudeDb(std::size_t bin) const {
    const double magnitude = std::abs(bins[bin]);
    return magnitude > 0.0 ? 20.0 * std::log10(magnitude) : -std::numeric_limits<double>::infinity();
}

double Response::phaseDegrees(std::size_t bin) const {
    return std::arg(bins[bin]) * 180.0 / std::numbers::pi;
}

ResponseMeasurement::ResponseMeasurement(PluginInstance& wanted, double rate, std::uint32_t blockFrames)
    : instance(wanted), sampleRate(rate), player(wanted, {rate, blockFrames, false}, noEvents) {
    warmUp();
}

// Some plug-ins finish what was set only while sound goes through them: smoothing, kernels that are built bit by bit.
// Half a second of noise at -80 dB gives them the time, without waking anything that reacts to level.
void ResponseMeasurement::warmUp() {
    const auto frames = static_cast<std::size_t>(sampleRate / 2.0) + 1;
    std::vector<Channels> noise(1, Channels(player.ports().mainInputChannels(), std::vector<float>(frames)));
    std::uint32_t random = 1;
    for (std::vector<float>& channel : noise[0]) {
        for (float& sample : channel) {
            random = random * 1664525u + 1013904223u; // the constants of Numerical Recipes' quick generator
            sample = 1e-4f * (static_cast<float>(random >> 8) / 8388608.0f - 1.0f);
        }
    }
    Channels ignored;
    player.play(frames, noise, ignored);
}

std::vector<float> ResponseMeasurement::impulseResponse(std::uint32_t input, std::uint32_t output) {
    instance.reset();
    std::vector<Channels> impulse(1, Channels(player.ports().mainInputChannels(), std::vector<float>(size)));
    impulse[0][input][0] = 1.0f;
    Channels responses;
    player.play(size, impulse, responses);
    return responses[output];
}

Response ResponseMeasurement::measure(std::uint32_t input, std::uint32_t output) {
    Response response;
    response.sampleRate = sampleRate;
    response.input = input;
    response.output = output;
    std::vector<float> impulse;
    for (int attempt = 0; attempt < mostAttempts && !response.steady; ++attempt) {
        std::vector<float> next = impulseResponse(input, output);
        while (!hasDecayed(next) && size < mostSize) {
            size *= 2;
            next = impulseResponse(input, output);
        }
        response.steady = areSame(impulse, next);
        impulse = std::move(next);
    }
    response.decayed = hasDecayed(impulse);

    std::vector<std::complex<double>> data(impulse.begin(), impulse.end());
    transform(data);
    // A delay turns bin k by -2 pi k latency / size; whole turns are dropped before they cost digits.
    const std::uint64_t delay = instance.latency();
    for (std::size_t bin = 0; bin <= size / 2; ++bin) {
        const double turns = static_cast<double>(bin * delay % size) / static_cast<double>(size);
        response.bins.push_back(data[bin] * std::polar(1.0, 2.0 * std::numbers::pi * turns));
    }
    return response;
}
