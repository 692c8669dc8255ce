#include "tests/support/EqualizerBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace {

constexpr std::uint32_t maxFrames = 4096;

} // namespace

EqualizerBench::EqualizerBench(const char* libraryPath, clap_id layout, double sampleRate)
    : rate(sampleRate), library(libraryPath), instance(library, host) {
    const auto* configs = instance.extension<clap_plugin_audio_ports_config>(CLAP_EXT_AUDIO_PORTS_CONFIG);
    EXPECT_TRUE(configs->select(instance.plugin, layout));
    const auto* params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
    clap_param_info info{};
    for (std::uint32_t index = 0; index < params->count(instance.plugin); ++index) {
        EXPECT_TRUE(params->get_info(instance.plugin, index, &info));
        ids.emplace(info.name, info.id);
    }
    instance.start(rate, maxFrames);
}

clap_id EqualizerBench::id(std::string_view name) const {
    const auto found = ids.find(name);
    if (found == ids.end())
        ADD_FAILURE() << "no parameter \"" << name << '"';
    return found != ids.end() ? found->second : CLAP_INVALID_ID;
}

void EqualizerBench::set(std::string_view name, std::string_view text, std::size_t position) {
    const auto* params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
    double value = 0.0;
    ASSERT_TRUE(params->text_to_value(instance.plugin, id(name), std::string(text).c_str(), &value))
        << name << ": " << text;
    set(name, value, position);
}

void EqualizerBench::set(std::string_view name, double value, std::size_t position) {
    const Event event{position, id(name), value};
    const auto place = std::upper_bound(events.begin(), events.end(), event, [](const Event& one, const Event& other) {
        return one.position < other.position;
    });
    events.insert(place, event);
}

void EqualizerBench::settle(double seconds) {
    render(Channels(channels(), std::vector<float>(static_cast<std::size_t>(seconds * rate) + 1, 0.0f)));
}

void EqualizerBench::restart() {
    render(Channels(channels(), std::vector<float>(1, 0.0f)));
    instance.stop();
    instance.plugin->on_main_thread(instance.plugin); // the editor side follows
    instance.start(rate, maxFrames);
}

Channels EqualizerBench::render(const Channels& main, std::uint32_t block, const Channels* sideChain) {
    const std::size_t length = main.front().size();
    Channels result(channels());
    std::size_t next = 0;
    for (std::size_t position = 0; position < length; position += block) {
        const std::size_t frames = std::min<std::size_t>(block, length - position);
        for (std::size_t channel = 0; channel < channels(); ++channel) {
            std::copy_n(main[channel].begin() + static_cast<std::ptrdiff_t>(position), frames,
                        instance.inputs[channel].begin());
            std::vector<float>& side = instance.inputs[channels() + channel];
            if (sideChain != nullptr)
                std::copy_n((*sideChain)[channel].begin() + static_cast<std::ptrdiff_t>(position), frames,
                            side.begin());
            else
                std::fill_n(side.begin(), frames, 0.0f);
        }
        instance.events.clear();
        for (; next < events.size() && events[next].position < position + frames; ++next)
            instance.events.addValue(static_cast<std::uint32_t>(events[next].position - position), events[next].id,
                                     events[next].value);
        instance.process(static_cast<std::uint32_t>(frames));
        instance.taken.values.clear();
        for (std::size_t channel = 0; channel < channels(); ++channel)
            result[channel].insert(result[channel].end(), instance.outputs[channel].begin(),
                                   instance.outputs[channel].begin() + static_cast<std::ptrdiff_t>(frames));
    }
    EXPECT_EQ(next, events.size()) << "an event lies behind the end of the sound";
    events.clear();
    instance.events.clear();
    return result;
}

Channels EqualizerBench::impulseResponse(std::size_t channel, std::size_t length) {
    Channels input(channels(), std::vector<float>(length, 0.0f));
    input[channel][0] = 1.0f;
    return render(input);
}

std::uint32_t EqualizerBench::latency() const {
    return instance.extension<clap_plugin_latency>(CLAP_EXT_LATENCY)->get(instance.plugin);
}

std::vector<float> sine(double hz, double amplitude, std::size_t length, double sampleRate) {
    std::vector<float> samples(length);
    for (std::size_t i = 0; i < length; ++i)
        samples[i] =
            static_cast<float>(amplitude * std::sin(2.0 * std::numbers::pi * hz * static_cast<double>(i) / sampleRate));
    return samples;
}

std::vector<float> noise(std::uint32_t seed, double amplitude, std::size_t length) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> even(-amplitude, amplitude);
    std::vector<float> samples(length);
    for (float& sample : samples)
        sample = static_cast<float>(even(random));
    return samples;
}

std::complex<double> spectrumAt(const std::vector<float>& samples, double hz, double sampleRate) {
    // Horner's rule from the last sample back: no table, and no error that grows.
    const std::complex<double> turn = std::polar(1.0, -2.0 * std::numbers::pi * hz / sampleRate);
    std::complex<double> sum;
    for (auto sample = samples.rbegin(); sample != samples.rend(); ++sample)
        sum = sum * turn + static_cast<double>(*sample);
    return sum;
}

double magnitudeDb(const std::vector<float>& impulse, double hz, double sampleRate) {
    return 20.0 * std::log10(std::max(std::abs(spectrumAt(impulse, hz, sampleRate)), 1e-20));
}

double peakDifferenceDb(const std::vector<float>& one, const std::vector<float>& other) {
    EXPECT_EQ(one.size(), other.size());
    double largest = 0.0;
    for (std::size_t i = 0; i < std::min(one.size(), other.size()); ++i)
        largest = std::max(largest, std::fabs(static_cast<double>(one[i]) - static_cast<double>(other[i])));
    return 20.0 * std::log10(std::max(largest, 1e-20));
}

double roughness(const std::vector<float>& samples, std::size_t begin, std::size_t end) {
    double largest = 0.0;
    for (std::size_t i = begin + 2; i < std::min(end, samples.size()); ++i)
        largest =
            std::max(largest, std::fabs(static_cast<double>(samples[i]) - 2.0 * static_cast<double>(samples[i - 1]) +
                                        static_cast<double>(samples[i - 2])));
    return largest;
}
