#include "eq/EQResponses.h"

#include "eq/ResponseProduct.h"

#include <algorithm>
#include <array>

namespace {

// An index off the grid reads its nearest end.
double radiansAt(const AlignedBuffer<float>& radians, std::int32_t index) noexcept {
    return static_cast<double>(radians[std::clamp(index, 0, radians.getCapacity() - 1)]);
}

using Frequencies = std::array<double, ResponseProduct::most>; // those behind the piece are 0

// law(frequencies, product) multiplies the product by the response at each frequency.
template <typename Law>
void forPieces(const AlignedBuffer<float>& radians, std::int32_t start, std::span<std::complex<float>> out,
               Law law) noexcept {
    while (!out.empty()) {
        const std::size_t count = std::min(out.size(), ResponseProduct::most);
        Frequencies w{};
        for (std::size_t i = 0; i < count; ++i)
            w[i] = radiansAt(radians, start + static_cast<std::int32_t>(i));
        ResponseProduct product(count);
        law(w, product);
        product.store(out.first(count));
        out = out.subspan(count);
        start += static_cast<std::int32_t>(count);
    }
}

} // namespace

float EQMagnitudeResponse::computeSquaredMagnitude(std::int32_t index) noexcept REALTIME {
    return static_cast<float>(prototype.squaredMagnitude(radiansAt(radians, index)));
}

void EQMagnitudeResponse::computeSquaredMagnitudes(std::int32_t start, float* out,
                                                   std::int32_t count) noexcept REALTIME {
    // A buffer ends with room for one group more than it holds.
    const std::int32_t onGrid = std::clamp((radians.getCapacity() + 3) / 4 * 4 - start, 0, count);
    prototype.squaredMagnitudes(radians.data() + start, out, static_cast<std::size_t>(onGrid));
    for (std::int32_t i = onGrid; i < count; ++i)
        out[i] = computeSquaredMagnitude(start + i);
}

void EQAnalogResponse::computeResponses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME {
    forPieces(radians, start, out, [this](const Frequencies& w, ResponseProduct& product) {
        for (const BiquadPrototype& section : prototype.used())
            // Numbers of its own, which the stores of the product cannot change.
            product.multiply([&w, inverse = section.invFrequency, b0 = section.b0, b1 = section.b1, b2 = section.b2,
                              a0 = section.a0, a1 = section.a1, a2 = section.a2](std::size_t i) {
                const double v = w[i] * inverse;
                return ResponseProduct::Factor{b0 - v * v * b2, v * b1, a0 - v * v * a2, v * a1};
            });
    });
}

void EQBiquadResponse::computeResponses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME {
    forPieces(radians, start, out, [this](const Frequencies& w, ResponseProduct& product) {
        multiplyCascade(product, row.data(), prototype.used().size(), w);
    });
}
