#include "eq/AnalogFilterPrototype.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>

namespace {

using Kind = AnalogFilterPrototype::Kind;
using Shape = AnalogFilterPrototype::Shape;

constexpr float plainQ = 0.70710677f; // no resonance
constexpr std::array orders{1, 2, 3, 4, 5, 6, 8, 12, 16};

AnalogFilterPrototype designed(Shape shape, int order, float q, float gain, double w0 = 0.1,
                               Kind kind = Kind::butterworth) {
    AnalogFilterPrototype prototype;
    prototype.design(kind, shape, order, q, gain);
    prototype.setFrequency(w0, 1.0 / w0);
    return prototype;
}

double dbOf(double power) {
    return 10.0 * std::log10(power);
}

float gainOf(double db) {
    return static_cast<float>(std::pow(10.0, db / 20.0));
}

// What maximally flat sections multiply to, in closed form; v is the frequency over that of the design.
double flatPower(Shape shape, int order, double q, double gain, double v) {
    const auto power = [](double base, int exponent) { return std::pow(base, 2 * exponent); };
    const double inBand = power((v * v - 1.0) * q / v, order / 2);
    switch (shape) {
    case Shape::lowPass:
        return 1.0 / (1.0 + power(v, order));
    case Shape::highPass:
        return 1.0 / (1.0 + power(1.0 / v, order));
    case Shape::lowShelf:
        return (power(v, order) + gain) / (power(v, order) + 1.0 / gain);
    case Shape::highShelf:
        return (power(1.0 / v, order) + gain) / (power(1.0 / v, order) + 1.0 / gain);
    case Shape::tiltShelf:
        return (power(1.0 / v, order) / gain + gain) / (power(1.0 / v, order) * gain + 1.0 / gain);
    case Shape::bell:
        return (inBand + gain) / (inBand + 1.0 / gain);
    case Shape::bandPass:
        return 1.0 / (1.0 + inBand);
    case Shape::notch:
        return inBand / (1.0 + inBand);
    default:
        return -1.0;
    }
}

TEST(AnalogFilterPrototype, EveryShapeAndOrderIsMaximallyFlat) {
    for (const Shape shape : {Shape::lowPass, Shape::highPass, Shape::lowShelf, Shape::highShelf, Shape::tiltShelf,
                              Shape::bell, Shape::bandPass, Shape::notch}) {
        for (const int order : orders) {
            const bool inBand = AnalogFilterPrototype::isBandShape(shape);
            if (inBand && order % 2 != 0)
                continue;
            for (const double db : {-30.0, -4.0, 0.0, 12.0, 30.0}) {
                for (const float q : {0.0176777f, plainQ, 28.3f}) {
                    const float gain = gainOf(db);
                    AnalogFilterPrototype prototype = designed(shape, order, inBand ? q : plainQ, gain);
                    EXPECT_EQ(prototype.sectionCount, (order + 1) / 2);
                    for (const double v : {0.001, 0.3, 0.9, 0.99, 1.0, 1.02, 2.0, 29.0}) {
                        const double wanted = flatPower(shape, order, static_cast<double>(inBand ? q : plainQ),
                                                        static_cast<double>(gain), v);
                        const double got = prototype.squaredMagnitude(0.1 * v);
                        const double complexPower = std::norm(prototype.response(0.1 * v));
                        const double tolerance = 1e-6 * wanted + 1e-25;
                        ASSERT_NEAR(got, wanted, tolerance) << static_cast<int>(shape) << " order " << order << " db "
                                                            << db << " q " << q << " at " << v;
                        ASSERT_NEAR(complexPower, wanted, tolerance);
                    }
                }
            }
        }
    }
}

TEST(AnalogFilterPrototype, ResonanceGoesToTheFirstSecondOrderSectionAndStopsAtTwentyTimesButterworth) {
    for (const float q : {0.1f, 1.0f, 6.0f}) { // of the whole, since the peak of order 2 is q itself
        EXPECT_NEAR(std::abs(designed(Shape::lowPass, 2, q, 1.0f).response(0.1)), q, 1e-6 * static_cast<double>(q));
        EXPECT_NEAR(std::abs(designed(Shape::lowPass, 1, q, 1.0f).response(0.1)), std::sqrt(0.5), 1e-9);
    }
    const AnalogFilterPrototype third = designed(Shape::highPass, 3, 5.0f, 1.0f);
    EXPECT_FALSE(third.sections[0].isFirstOrder());
    EXPECT_TRUE(third.sections[1].isFirstOrder());
    EXPECT_NEAR(std::abs(third.response(0.1)),
                std::abs(designed(Shape::highPass, 3, plainQ, 1.0f).response(0.1)) * 5.0 / static_cast<double>(plainQ),
                1e-5);
    const AnalogFilterPrototype sharp = designed(Shape::highPass, 2, 1000.0f, 1.0f);
    EXPECT_FLOAT_EQ(sharp.sections[0].damping, 0.03535534f);
    EXPECT_FLOAT_EQ(static_cast<float>(sharp.sections[0].a1), 0.03535534f);
}

TEST(AnalogFilterPrototype, TheBrickwallHasItsRippleAndItsStopBand) {
    for (const Shape shape : {Shape::lowPass, Shape::highPass}) {
        AnalogFilterPrototype brickwall = designed(shape, 12, plainQ, 1.0f, 0.1, Kind::elliptic);
        ASSERT_EQ(brickwall.sectionCount, 6);
        double least = 0.0;
        double most = 0.0;
        double stop = -1000.0;
        double stopStart = 0.0;
        for (int step = 0; step <= 200000; ++step) {
            const double v = std::exp(4.0 * step / 200000.0 - 2.0);
            const double db = dbOf(brickwall.squaredMagnitude(shape == Shape::lowPass ? 0.1 * v : 0.1 / v));
            if (v <= 0.99) {
                least = std::min(least, db);
                most = std::max(most, db);
            } else if (stopStart == 0.0 && db < -89.97) {
                stopStart = v;
            }
            if (stopStart != 0.0)
                stop = std::max(stop, db);
        }
        EXPECT_NEAR(most - least, 0.025, 0.0002);
        EXPECT_NEAR(stop, -89.975, 0.003);
        EXPECT_NEAR(stopStart, 1.137, 0.001); // 1 / selectivity
        EXPECT_NEAR(dbOf(brickwall.squaredMagnitude(shape == Shape::lowPass ? 1e-9 : 1e9)), 0.0, 1e-9);
    }
}

TEST(AnalogFilterPrototype, ArraysFollowTheExactResponse) {
    std::array<float, 32> w{};
    std::array<float, 32> powers{};
    std::array<float, 32> phases{};
    for (const auto& prototype : {designed(Shape::bell, 16, 20.0f, 31.6f), designed(Shape::bell, 2, 28.0f, 31.6f),
                                  designed(Shape::highShelf, 3, 0.3f, 0.1f), designed(Shape::lowPass, 16, 0.7f, 1.0f),
                                  designed(Shape::notch, 4, 10.0f, 1.0f)}) {
        for (std::size_t i = 0; i < w.size(); ++i)
            w[i] = static_cast<float>(0.1 * std::exp2((static_cast<double>(i) - 15.3) * 0.02));
        prototype.squaredMagnitudes(w.data(), powers.data(), 29); // up to the end of the group
        prototype.phases(w.data(), phases.data(), 29);
        for (std::size_t i = 0; i < w.size(); ++i) {
            const std::complex<double> exact = prototype.response(static_cast<double>(w[i]));
            EXPECT_NEAR(dbOf(static_cast<double>(powers[i]) / std::norm(exact)), 0.0, 0.002);
            const double turn = std::arg(exact * std::polar(1.0, -static_cast<double>(phases[i])));
            EXPECT_NEAR(turn, 0.0, 1e-5);
            EXPECT_LE(std::fabs(phases[i]), 3.1415930f);
        }
    }
}

TEST(AnalogFilterPrototype, ExtremaAreWhereTheMagnitudeTurns) {
    AnalogFilterPrototype bell = designed(Shape::bell, 2, 2.0f, 4.0f);
    const auto peak = bell.sections[0].findExtrema(1e-6);
    EXPECT_EQ(peak.count, 1);
    EXPECT_NEAR(peak.first, 0.1, 1e-12);

    AnalogFilterPrototype shelf = designed(Shape::lowShelf, 2, 4.0f, 4.0f);
    const auto both = shelf.sections[0].findExtrema(1e-6);
    ASSERT_EQ(both.count, 2);
    EXPECT_LT(both.first, both.second);
    for (const double w : {both.first, both.second}) {
        const double here = shelf.squaredMagnitude(w);
        EXPECT_GT((here - shelf.squaredMagnitude(w * 0.99)) * (here - shelf.squaredMagnitude(w * 1.01)), 0.0);
    }
    EXPECT_EQ(designed(Shape::lowShelf, 1, 4.0f, 4.0f).sections[0].findExtrema(1e-6).count, 0);
    EXPECT_EQ(designed(Shape::lowShelf, 2, 0.5f, 4.0f).sections[0].findExtrema(1e-6).count, 0);
    EXPECT_EQ(bell.sections[0].findExtrema(1.0).count, 0); // too faint for this tolerance
}

} // namespace
