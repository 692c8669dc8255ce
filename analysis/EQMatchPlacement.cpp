#include "analysis/EQMatchPlacement.h"

#include "analysis/Decibels.h"
#include "eq/BandDesign.h"

#include <algorithm>
#include <cmath>

namespace {

FilterSlope slopeOf(std::int32_t order) noexcept {
    switch (order) {
    case 1:
        return FilterSlope::db6;
    case 3:
        return FilterSlope::db18;
    case 4:
        return FilterSlope::db24;
    case 5:
        return FilterSlope::db30;
    case 6:
        return FilterSlope::db36;
    case 8:
        return FilterSlope::db48;
    case 12:
        return FilterSlope::db72;
    case 16:
        return FilterSlope::db96;
    default:
        return FilterSlope::db12;
    }
}

} // namespace

EQMatchBand::EQMatchBand(const AnalogFilterPrototype& found)
    : shape(found.shape)
    , slope(slopeOf(found.order))
    , log2Frequency(static_cast<float>(std::log2(found.frequency)))
    , gainDb(magnitudeToDb(found.gain))
    , q(plainQ(found.shape, found.q)) {}

std::size_t EQMatchPlacement::firstFree() const {
    std::size_t band = 0;
    while (band < bandCount && bands.isUsed(band))
        ++band;
    return band;
}

EQMatchPlacement::Verdict EQMatchPlacement::apply(std::span<const AnalogFilterPrototype> found, std::size_t count) {
    Verdict verdict = count <= found.size() ? Verdict::placed : Verdict::allFound;
    count = std::min(count, found.size());
    bands.beginChange();
    std::size_t written = 0;
    for (; written < count; ++written) {
        if (written == placed.size()) {
            const std::size_t free = firstFree();
            if (free == bandCount) {
                verdict = Verdict::noneFree;
                break;
            }
            placed.push_back(free);
        }
        bands.setBand(placed[written], EQMatchBand(found[written]));
    }
    for (; placed.size() > written; placed.pop_back())
        bands.releaseBand(placed.back());
    bands.endChange();
    return verdict;
}
