#include "eq/EQFilter.h"

#include "platform/FloatingPointMode.h"
#include "tests/eq/FilterRig.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <random>
#include <thread>

namespace {

using Change = std::function<void(EQFilter&)>;

constexpr float boost = 3.981f; // of a bell of 12 dB

// A bell of 12 dB at 1024 Hz on a pair of channels, the left of which hears a sine. Settings reach the right one first,
// which is not the one that calculates.
struct SineRig : FilterRig {
    explicit SineRig(double hz) : in(sine(hz, 48000)), filter(environment, 8, 1), sister(environment, 8, filter) {
        filter.input = &inputs[0];
        sister.input = &inputs[1];
        sister.setPartner(&filter);
        sister.setLink(true);
        set([](EQFilter& each) { each.gain.parameter().setValue(12.0f, 0.0f); });
    }

    template <typename Setting>
    void set(Setting setting) {
        setting(sister);
        setting(filter);
    }

    // What the left channel gives with one change after half a second.
    Sound listen(const Change& change) {
        return run(filter, in, 256, [&](std::size_t at) {
            if (at == when)
                set(change);
        });
    }

    static constexpr std::size_t when = 24064;
    Sound in;
    EQFilter filter, sister;
};

TEST(EQFilterSound, SwitchingAndGlidingDoNotClick) {
    struct Case {
        const char* name;
        Change before, change;
        float multiple; // of the steady second difference, for a sine at 100, 1000 and 5000 Hz
    };
    const Change nothing = [](EQFilter&) {};
    const Case cases[] = {
        {"off", nothing, [](EQFilter& f) { f.enabled = false; }, 2.0f},
        {"on", [](EQFilter& f) { f.enabled = false; }, [](EQFilter& f) { f.enabled = true; }, 2.5f},
        {"gain to -30 dB", nothing, [](EQFilter& f) { f.gain.assign(-30.0f); }, 3.5f},
        {"Q to 40", nothing, [](EQFilter& f) { f.q.assign(40.0f); }, 6.0f},
        {"frequency to 8 kHz", nothing, [](EQFilter& f) { f.frequency.assign(13.0f); }, 5.0f},
        {"to the state-variable form", nothing, [](EQFilter& f) { f.gainModulated = true; }, 1.001f},
        {"to the direct form", [](EQFilter& f) { f.gainModulated = true; },
         [](EQFilter& f) { f.gainModulated = false; }, 1.001f},
        {"to the state-variable form, 8 sections", [](EQFilter& f) { f.slope = FilterSlope::db96; },
         [](EQFilter& f) { f.gainModulated = true; }, 1.001f},
    };
    for (const Case& each : cases)
        for (const double hz : {100.0, 1000.0, 5000.0}) {
            SineRig rig(hz);
            rig.set(each.before);
            const Sound sound = rig.listen(each.change);
            const std::span<const float> out(sound), in(rig.in);
            const float steady =
                std::max({largestSecondDifference(out.subspan(12000, 12000)), largestSecondDifference(out.last(6000)),
                          largestSecondDifference(in.first(12000))});
            EXPECT_LT(largestSecondDifference(out.subspan(12000)), each.multiple * steady)
                << each.name << " at " << hz << " Hz";
        }
}

struct Shaped {
    FilterShape shape;
    FilterSlope slope;
    bool moving = false;
    float gain = 12.0f;

    void operator()(EQFilter& filter) const {
        filter.gainModulated = moving;
        filter.shape = shape;
        filter.slope = slope;
        filter.gain.parameter().setValue(gain, 0.0f);
    }
};

std::ostream& operator<<(std::ostream& stream, const Shaped& shaped) {
    return stream << "shape " << static_cast<int>(shaped.shape) << ", slope " << static_cast<int>(shaped.slope)
                  << (shaped.moving ? ", moving, " : ", ") << shaped.gain << " dB";
}

// How far the sound behind SineRig::when stands out of what is steady before and after, by its second difference.
float multipleOfSteady(const SineRig& rig, std::span<const float> out) {
    return largestSecondDifference(out.subspan(12000)) /
           std::max({largestSecondDifference(out.subspan(12000, 12000)), largestSecondDifference(out.last(6000)),
                     largestSecondDifference(std::span<const float>(rig.in).first(12000))});
}

TEST(EQFilterSound, ANewShapeOrSlopeDoesNotClick) {
    using enum FilterShape;
    using enum FilterSlope;
    constexpr float allowed = 1.6f; // 40 to 980 without the fade
    const Shaped twelve{bell, db12};
    const std::pair<Shaped, Shaped> cases[] = {
        {twelve, {bell, db24}},
        {twelve, {bell, db96}},
        {{bell, db96}, twelve},
        {twelve, {lowShelf, db12}},
        {twelve, {lowPass, db12}},
        {twelve, {lowPass, brickwall}},
        {{highPass, brickwall}, twelve},
        {{bell, db12, true}, {notch, db12, true}}, // out of the state-variable form, and into it
        {{notch, db12, true}, {bell, db12, true}},
        {{bell, db12, true}, {bell, db96, true}},
        {twelve, {lowShelf, db48, true}},
        {{bell, db12, false, 0.03f}, {notch, db12, false, 0.03f}}, // where the scale is not 1
        {{bell, db12, false, 0.0f}, {notch, db12, false, 0.0f}},
        {{notch, db12, false, 0.0f}, {bell, db12, false, 0.0f}},
    };
    for (const auto& [before, after] : cases)
        for (const double hz : {100.0, 1000.0, 5000.0}) {
            SineRig rig(hz);
            rig.set(before);
            EXPECT_LT(multipleOfSteady(rig, rig.listen([&to = after](EQFilter& f) {
                          f.gainModulated = to.moving;
                          f.shape = to.shape;
                          f.slope = to.slope;
                      })),
                      allowed)
                << before << " to " << after << " at " << hz << " Hz";
        }
}

// Changes that come while the one before still fades, and the switch between them; the sound is that of the blocks of
// any size, and of a channel alone.
TEST(EQFilterSound, ChangesThatFollowOneAnotherDoNotClickEither) {
    using enum FilterShape;
    const FilterShape shapes[] = {notch, lowShelf, bandPass, highShelf, lowPass, bell, highPass, bell};
    for (const std::size_t apart : {48u, 144u, 480u, 912u, 960u})
        for (const bool switches : {false, true}) {
            const auto listen = [&](SineRig& rig, std::size_t block, bool alone) {
                if (alone)
                    rig.sister.setPartner(nullptr);
                rig.set(Shaped{bell, FilterSlope::db24});
                Sound out;
                std::size_t made = 0;
                while (out.size() < rig.in.size()) {
                    std::size_t count = std::min(block, rig.in.size() - out.size());
                    const std::size_t next = SineRig::when + made * apart;
                    if (out.size() == next && made < std::size(shapes)) {
                        rig.set([&](EQFilter& f) {
                            f.shape = shapes[made];
                            if (switches && made % 3 == 1)
                                f.enabled = made % 2 == 0;
                        });
                        ++made;
                        continue;
                    }
                    if (next > out.size())
                        count = std::min(count, next - out.size());
                    for (wave::Input& input : rig.inputs)
                        input.setSamples({rig.in.data() + out.size(), count});
                    wave::Filter* const pair[] = {&rig.filter, &rig.sister};
                    rig.cycle(pair, static_cast<std::int32_t>(count));
                    const float* const left = rig.filter.getOutput()->data();
                    if (!alone) {
                        EXPECT_TRUE(std::equal(left, left + count, rig.sister.getOutput()->data()));
                    }
                    out.insert(out.end(), left, left + count);
                }
                return out;
            };
            for (const double hz : {100.0, 1000.0}) {
                SineRig rig(hz), cut(hz), alone(hz);
                const Sound out = listen(rig, 256, false);
                // Of the sine as the low shelf boosts it. The switch has a straight fade.
                const float steady = boost * largestSecondDifference(rig.in);
                EXPECT_LT(largestSecondDifference(std::span<const float>(out).subspan(12000)),
                          (switches ? 3.0f : 1.1f) * steady)
                    << apart << " samples apart at " << hz << " Hz";
                EXPECT_LT(largestDifference(out, listen(cut, 37, false)), 1e-5f);
                EXPECT_LT(largestDifference(out, listen(alone, 256, true)), 1e-5f);
            }
        }
}

TEST(EQFilterSound, FullSweepsOfTheSettingsStayNearTheSineTheyBoost) {
    struct Case {
        const char* name;
        std::function<void(EQFilter&, float)> set; // a sine of 1 or 20 Hz
        float direct, stateVariable;               // multiples of the second difference of the boosted sine
    };
    const Case cases[] = {
        {"frequency, 1 Hz to 32 kHz", [](EQFilter& f, float s) { f.frequency.assign(7.5f + 7.5f * s); }, 1.6f, 1.7f},
        {"gain, -30 to 30 dB", [](EQFilter& f, float s) { f.gain.assign(30.0f * s); }, 1.1f, 1.1f},
        // The state-variable form takes each new Q as a step of its band-pass share; docs/filters.md says why.
        {"Q, 0.025 to 40", [](EQFilter& f, float s) { f.q.assign(std::pow(40.0f, s)); }, 1.2f, 11.0f},
    };
    for (const Case& each : cases)
        for (const double rate : {1.0, 20.0})
            for (const bool moving : {false, true})
                for (const FilterSlope slope : {FilterSlope::db12, FilterSlope::db96}) {
                    SineRig rig(1000.0);
                    rig.set([&](EQFilter& filter) {
                        filter.gainModulated = moving;
                        filter.slope = slope;
                    });
                    const Sound out = rig.run(rig.filter, rig.in, 256, [&](std::size_t at) {
                        const double seconds = static_cast<double>(at) / 48000.0;
                        const auto swing = static_cast<float>(std::sin(2.0 * std::numbers::pi * rate * seconds));
                        rig.set([&](EQFilter& filter) { each.set(filter, swing); });
                    });
                    const float peak = std::max(*std::max_element(out.begin(), out.end()), 0.5f * boost);
                    const float steady = largestSecondDifference(rig.in) * peak / 0.5f;
                    EXPECT_LT(largestSecondDifference(out) / steady, moving ? each.stateVariable : each.direct)
                        << each.name << " at " << rate << " Hz, slope " << static_cast<int>(slope);
                }
}

// 24 bands on two channels, as they stand in a chain: shared queues, linked pairs.
struct Chain : FilterRig {
    static constexpr std::size_t bands = 24;

    Chain() {
        for (std::size_t b = 0; b < bands; ++b)
            for (std::size_t c = 0; c < 2; ++c) {
                auto& side = filters[c];
                if (filters[0].empty())
                    side.push_back(std::make_unique<EQFilter>(environment, 8, 1));
                else
                    side.push_back(std::make_unique<EQFilter>(environment, 8, *filters[0].front()));
                side[b]->input = b > 0 ? static_cast<wave::Producer*>(side[b - 1].get()) : &inputs[c];
                if (c == 1) {
                    side[b]->setPartner(filters[0][b].get());
                    side[b]->setLink(true);
                }
            }
    }

    ~Chain() {
        while (!filters[1].empty()) {
            filters[1].pop_back();
            filters[0].pop_back();
        }
    }

    // Both channels always get the same settings, but for the switch.
    template <typename Setting>
    void set(std::size_t band, Setting setting) {
        for (auto& side : filters)
            setting(*side[band]);
    }

    void block(const Sound& sound) {
        for (wave::Input& input : inputs)
            input.setSamples(sound);
        wave::Filter* const last[] = {filters[0].back().get(), filters[1].back().get()};
        cycle(last, static_cast<std::int32_t>(sound.size()));
    }

    float peak() const {
        float largest = 0.0f;
        for (const auto& side : filters)
            for (std::size_t i = 0; i < 256; ++i) {
                const float size = std::fabs((*side.back()->getOutput())[i]);
                largest = size <= largest ? largest : size; // a not-a-number stays
            }
        return largest;
    }

    std::vector<std::unique_ptr<EQFilter>> filters[2];
};

double nanosecondsForBlocks(Chain& chain, const Sound& sound) {
    double best = 1e12;
    for (int round = 0; round < 20; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        for (int i = 0; i < 10; ++i)
            chain.block(sound);
        best =
            std::min(best, std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - begin).count());
    }
    return best;
}

void runAMinute() {
    setAudioFloatingPointMode();
    const char* const given = std::getenv("SEED");
    const unsigned seed = given != nullptr ? static_cast<unsigned>(std::atoi(given)) : std::random_device{}();
    std::cout << "SEED=" << seed << "\n";
    std::mt19937 random(seed);
    const auto any = [&](float low, float high) { return std::uniform_real_distribution<float>(low, high)(random); };
    // The last three only in a few bands, so that there is sound at the end of the chain.
    using enum FilterShape;
    constexpr FilterShape shapes[] = {bell,      bell,     bell,     notch,    lowShelf, highShelf,
                                      tiltShelf, flatTilt, lowShelf, highPass, lowPass,  bandPass};
    Chain chain;
    const auto changeBand = [&](std::size_t band) {
        const float value = any(0.0f, 1.0f);
        switch (random() % 8) {
        case 0: // from 40 Hz, so that what rings is over in seconds
            return chain.set(band, [&](EQFilter& f) { f.frequency.assign(5.3f + 9.7f * value); });
        case 1:
            return chain.set(band, [&](EQFilter& f) { f.q.assign(std::pow(40.0f, 2.0f * value - 1.0f)); });
        case 2:
            return chain.set(band, [&](EQFilter& f) {
                f.shape = shapes[static_cast<std::size_t>(value * (band < 3 ? 11.99f : 8.99f))];
            });
        case 3:
            return chain.set(band,
                             [&](EQFilter& f) { f.slope = static_cast<FilterSlope>(static_cast<int>(value * 9.99f)); });
        case 4:
            return chain.set(band, [&](EQFilter& f) { f.gainModulated = value > 0.5f; });
        case 5:
            chain.filters[random() % 2][band]->enabled = value > 0.4f;
            return;
        default:
            return chain.set(band, [&](EQFilter& f) { f.gain.assign(any(-6.0f, 6.0f)); });
        }
    };
    Sound noise(256);
    float loudest = 0.0f;
    for (int block = 0; block < 60 * 48000 / 256; ++block) {
        if (block % 4 == 0)
            changeBand(random() % Chain::bands);
        for (float& sample : noise)
            sample = any(-0.5f, 0.5f);
        chain.block(noise);
        const float peak = chain.peak();
        ASSERT_TRUE(std::isfinite(peak)) << "block " << block;
        loudest = std::max(loudest, peak);
    }
    const double withSignal = nanosecondsForBlocks(chain, noise);

    const Sound silence(256, 0.0f);
    int blocks = 0;
    while (chain.peak() > 1e-9f * loudest && ++blocks < 20 * 48000 / 256)
        chain.block(silence);
    EXPECT_LT(blocks, 20 * 48000 / 256);
    for (int i = 0; i < 60 * 48000 / 256; ++i)
        chain.block(silence);
    EXPECT_LT(nanosecondsForBlocks(chain, silence), 1.5 * withSignal); // denormals would cost many times as much
    std::cout << "loudest " << loudest << ", silent after " << blocks << " blocks, now " << chain.peak() << "\n";
}

TEST(EQFilterSound, AMinuteOfRandomSettingsStaysFiniteAndFallsSilent) {
    std::thread(runAMinute).join(); // the floating-point mode ends with the thread
}

} // namespace
