#include "framework/zelk/ChainMagnitude.h"

#include "framework/zelk/KernelGrid.h"
#include "framework/zelk/ZelkBand.h"
#include "wave/BlockMath.h"

#include <algorithm>
#include <bit>

void ZelkProcessor::ChainMagnitude::resize(std::int32_t bins) {
    product.resize(bins);
    valid = 0;
    present = {};
}

ZelkProcessor::ChainMagnitude::Plan
ZelkProcessor::ChainMagnitude::plan(std::span<const std::int32_t> bands) const noexcept REALTIME {
    Bands all = 0, changed = 0;
    for (const std::int32_t index : bands) {
        const Bands bit = Bands{1} << index;
        all |= bit;
        if (owner.band(index).designVersion() != seen[static_cast<std::size_t>(index)])
            changed |= bit;
    }
    const bool holds = all == (present.moving | present.standing) && (changed & present.standing) == 0 && valid > 0;
    return holds ? Plan{present.moving, present.standing, false} : Plan{changed, all & ~changed, true};
}

void ZelkProcessor::ChainMagnitude::begin(std::span<const std::int32_t> bands) noexcept REALTIME {
    present = plan(bands);
    if (present.rebuilds)
        valid = 0;
    for (const std::int32_t index : bands)
        seen[static_cast<std::size_t>(index)] = owner.band(index).designVersion();
}

void ZelkProcessor::ChainMagnitude::read(std::int32_t start, std::span<float> out, float factor) noexcept REALTIME {
    const auto end = start + static_cast<std::int32_t>(out.size());
    if (end > valid) { // in order, so the part from `valid` on is asked for now
        const std::span<float> fresh(product.data() + valid, static_cast<std::size_t>(end - valid));
        std::fill(fresh.begin(), fresh.end(), 1.0f);
        multiply(present.standing, valid, fresh);
        valid = end;
    }
    wave::mapBlock(
        out.data(), static_cast<std::int32_t>(out.size()), [factor](float power) { return power * factor; },
        product.data() + start);
    multiply(present.moving, start, out);
}

void ZelkProcessor::ChainMagnitude::multiply(Bands bands, std::int32_t start,
                                             std::span<float> inOut) noexcept REALTIME {
    for (; bands != 0; bands &= bands - 1) {
        EQMagnitudeResponse& response = *owner.band(std::countr_zero(bands)).magnitudeResponse;
        if (const float* const powers = response.stored(start, inOut.size()); powers != nullptr)
            wave::updateBlock(
                inOut.data(), static_cast<std::int32_t>(inOut.size()), [](float so, float power) { return so * power; },
                powers);
    }
}

// Measured: what is evaluated anew costs by its sections, what lies in a cache by the way through memory.
std::int32_t ZelkProcessor::ChainMagnitude::cost(std::span<const std::int32_t> bands) const noexcept REALTIME {
    constexpr std::int32_t base = 10;
    constexpr std::int32_t cached = 5;
    constexpr std::int32_t section = 10;
    const Plan next = plan(bands);
    std::int32_t sum = base;
    for (const std::int32_t index : bands) {
        const bool evaluated = owner.band(index).magnitudeResponse->getValidCount() == 0;
        if (evaluated)
            sum += section * owner.band(index).sectionCount();
        if (next.rebuilds || (next.moving >> index & 1) != 0)
            sum += cached;
    }
    return sum;
}
