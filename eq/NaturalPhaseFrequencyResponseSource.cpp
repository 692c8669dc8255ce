#include "eq/NaturalPhaseFrequencyResponseSource.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

constexpr double sound = 0.0001;       // power of a denominator from which on a ratio is good as it is
constexpr double steadyPhase = 0.1;    // radians
constexpr std::int32_t taperBin = 248; // behind it the phase falls to 0 at bin 256, the last of the grid of 512 points

// Without the special cases of the operators for infinite and undefined values, which cost more than the rest.
std::complex<double> product(std::complex<double> a, std::complex<double> b) noexcept {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

double phaseDistance(std::complex<double> a, std::complex<double> b) noexcept {
    const double distance = std::fabs(std::arg(a) - std::arg(b));
    return distance > std::numbers::pi ? 2.0 * std::numbers::pi - distance : distance;
}

std::complex<double> tapered(std::complex<double> value, std::int32_t index) noexcept {
    if (index <= taperBin)
        return value;
    const double a = static_cast<double>(index - taperBin);
    return std::polar(std::abs(value), std::arg(value) * (1.0 - a * a * 0.015625)); // 1 / 8^2
}

} // namespace

// The ratios of ascending indices, made for many at a time: so each source is called once for all of them.
class NaturalPhaseFrequencyResponseSource::RatioReader {
public:
    RatioReader(const NaturalPhaseFrequencyResponseSource& chain, std::int32_t first, std::int32_t last) noexcept
        : owner(chain), next(first), left(last - first + 1) {}

    Ratio read() noexcept {
        if (position == filled)
            fill();
        const std::complex<double> n = numerator[position], d = denominator[position];
        ++position;
        Ratio ratio;
        ratio.power = std::norm(d);
        if (ratio.power > 0.0)
            ratio.value = product(n, std::conj(d)) / ratio.power;
        return ratio;
    }

private:
    static constexpr std::int32_t most = 32;
    using Products = std::array<std::complex<double>, most>;

    void fill() noexcept {
        position = 0;
        filled = static_cast<std::size_t>(std::clamp(left, 1, most));
        multiply(owner.numerators, numerator);
        multiply(owner.denominators, denominator);
        next += static_cast<std::int32_t>(filled);
        left -= static_cast<std::int32_t>(filled);
    }

    void multiply(const std::vector<DiscreteFrequencyResponseSource*>& factors, Products& products) const noexcept {
        std::array<std::complex<float>, most> values;
        const std::span<std::complex<float>> used(values.data(), filled);
        std::fill_n(products.begin(), filled, 1.0);
        for (DiscreteFrequencyResponseSource* const factor : factors) {
            factor->responses(next, used);
            for (std::size_t i = 0; i < filled; ++i)
                products[i] = product(products[i], std::complex<double>(used[i]));
        }
    }

    const NaturalPhaseFrequencyResponseSource& owner;
    std::int32_t next;
    std::int32_t left;
    std::size_t position = 0;
    std::size_t filled = 0;
    Products numerator, denominator;
};

void NaturalPhaseFrequencyResponseSource::responses(std::int32_t start,
                                                    std::span<std::complex<float>> out) noexcept REALTIME {
    // How a task is sliced must not be heard: the look ahead goes on behind the end of the slice, up to that of the
    // grid.
    const std::int32_t last = mapping->count;
    const std::int32_t end = start + static_cast<std::int32_t>(out.size());
    RatioReader reader(*this, start, std::min(end, last));
    Ratio here = reader.read(); // that of bin 0 is not used, but caches fill from there
    for (std::int32_t index = start; index < end; ++index) {
        Ratio ahead = index + 1 <= last ? reader.read() : here;
        if (here.power == 0.0)
            here.value = previous;
        const std::complex<double> next = ahead.power == 0.0 ? previous : ahead.value;
        if (index == 0) {
            const bool real = ahead.power < sound && std::fabs(std::arg(next)) < steadyPhase;
            here.value = real ? std::abs(next) : 1.0;
        } else if (!isBelievable(here, next)) {
            here.value = previous;
        }
        previous = here.value;
        out[static_cast<std::size_t>(index - start)] = std::complex<float>(tapered(here.value, index));
        here = ahead;
    }
}

bool NaturalPhaseFrequencyResponseSource::isBelievable(const Ratio& here,
                                                       std::complex<double> next) const noexcept REALTIME {
    if (here.power >= sound)
        return true;
    // The denominator is near a zero. A ratio far off its neighbours is a zero missed by a bin.
    const double power = std::norm(here.value), before = std::norm(previous);
    if (power > 10000.0)
        return false;
    const bool large = here.power > 1e-6 && power > 1e-6;
    if (!large && (power < 0.001 * std::min(before, 1.0) || power > std::min(10.0 * std::max(before, 1.0), 100.0)))
        return false;
    // A jump of the phase is one only if the next index stays on its far side.
    const double jump = phaseDistance(here.value, previous);
    return jump <= steadyPhase || phaseDistance(next, previous) >= jump / 2.0;
}

std::complex<float> NaturalPhaseFrequencyResponseSource::response(std::int32_t index) noexcept REALTIME {
    std::complex<float> value;
    NaturalPhaseFrequencyResponseSource::responses(index, {&value, 1});
    return value;
}

float NaturalPhaseFrequencyResponseSource::squaredMagnitude(std::int32_t index) noexcept REALTIME {
    return std::norm(NaturalPhaseFrequencyResponseSource::response(index));
}

void NaturalPhaseFrequencyResponseSource::squaredMagnitudes(std::int32_t start,
                                                            std::span<float> out) noexcept REALTIME {
    for (float& each : out)
        each = NaturalPhaseFrequencyResponseSource::squaredMagnitude(start++);
}
