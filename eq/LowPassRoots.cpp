#include "eq/LowPassRoots.h"

#include "eq/EllipticFunctions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace {

using Root = AnalogFilterPrototype::Root;

struct Direction {
    double sine = 1.0;
    double cosine = 0.0;
};

constexpr std::size_t orders = AnalogFilterPrototype::maxOrder + 1;
using DirectionTable = std::array<std::array<Direction, AnalogFilterPrototype::maxSections>, orders>;

// The power series, for angles up to a quarter turn; only the compiler runs it.
constexpr double sineOf(long double x) {
    long double term = x;
    long double sum = x;
    for (int n = 2; n <= 26; n += 2) {
        term *= -x * x / static_cast<long double>(n * (n + 1));
        sum += term;
    }
    return static_cast<double>(sum);
}

constexpr DirectionTable makeDirections() {
    DirectionTable table{};
    constexpr long double quarter = std::numbers::pi_v<long double> / 2;
    for (std::size_t order = 1; order < orders; ++order) {
        for (std::size_t k = 0; k < order / 2; ++k) { // the real pole of odd orders is the default
            const long double theta = quarter * static_cast<long double>(2 * k + 1) / static_cast<long double>(order);
            table[order][k] = {sineOf(theta), sineOf(quarter - theta)};
        }
    }
    return table;
}

constexpr DirectionTable directions = makeDirections();

// The classic design: equal ripple in both bands, by Jacobi's elliptic functions.
std::array<Root, 6> makeBrickwallRoots() {
    constexpr int order = 12;
    constexpr double discrimination = 5.773063007511319e-12; // (10^0.0025 - 1) / (10^9 - 1), squared ripple ratio
    constexpr double complement = 0.9999999999942268;        // 1 - discrimination
    constexpr double inverseRipple = 13.161241296559476;     // 1 / sqrt(10^0.0025 - 1)

    const double quarterPeriod = completeEllipticIntegral(discrimination);
    const double nome = std::exp(-std::numbers::pi * completeEllipticIntegral(complement) / (order * quarterPeriod));
    double upper = 1.0;
    double lower = 1.0;
    for (int i = 1; i <= 6; ++i) {
        upper += std::pow(nome, i * (i + 1));
        lower += 2.0 * std::pow(nome, i * i);
    }
    const double selectivity = 4.0 * std::sqrt(nome) * (upper / lower) * (upper / lower);
    const double k2 = selectivity * selectivity;
    const double K1 = completeEllipticIntegral(k2);
    const double shift = inverseJacobiTangent(inverseRipple, complement) * K1 / (order * quarterPeriod);
    const JacobiFunctions at = jacobiFunctions(shift, 1.0 - k2);

    std::array<Root, order / 2> roots{};
    for (std::size_t i = 0; i < roots.size(); ++i) {
        const double j = static_cast<double>(2 * i + 1);
        const JacobiFunctions along = jacobiFunctions(j * K1 / order, k2);
        const double scale = 1.0 / (1.0 - along.dn * along.dn * at.sn * at.sn);
        Root& root = roots[i];
        root.poleRe = -along.dn * along.cn * at.sn * at.cn * scale;
        root.poleIm = at.dn * along.sn * scale;
        root.zeroRe = 0.0;
        root.zeroIm = 1.0 / (along.sn * selectivity);
        root.gain = (root.poleRe * root.poleRe + root.poleIm * root.poleIm) / (root.zeroIm * root.zeroIm);
    }
    return roots;
}

const std::array<Root, 6> brickwall = makeBrickwallRoots();

} // namespace

void butterworthRoots(std::int32_t order, std::span<Root> roots) noexcept REALTIME {
    const auto& row = directions[static_cast<std::size_t>(order)];
    const std::size_t count = static_cast<std::size_t>(order + 1) / 2;
    for (std::size_t k = 0; k < count; ++k)
        roots[k] = {-row[k].sine, row[k].cosine, std::numeric_limits<double>::infinity(), 0.0, 1.0};
}

void brickwallRoots(std::span<Root> roots) noexcept REALTIME {
    std::copy(brickwall.begin(), brickwall.end(), roots.begin());
}
