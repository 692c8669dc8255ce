#include "framework/zelk/SoloPath.h"

#include "eq/BandDesign.h"
#include "framework/zelk/EQParameterSet.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float closingMs = 20.0f;
constexpr std::int32_t rowGranularity = 4; // samples

FilterShape soloShape(FilterShape band) noexcept {
    switch (band) {
    case FilterShape::lowShelf:
    case FilterShape::highPass:
        return FilterShape::lowPass;
    case FilterShape::highShelf:
    case FilterShape::lowPass:
        return FilterShape::highPass;
    case FilterShape::tiltShelf:
        return FilterShape::tiltShelf;
    default:
        return FilterShape::bandPass;
    }
}

bool isShelf(FilterShape shape) noexcept {
    return shape == FilterShape::lowShelf || shape == FilterShape::highShelf;
}

// What of the band's Q the first filter takes; 0: it stays off.
float preFilterShare(FilterShape shape) noexcept {
    return shape == FilterShape::bell ? 0.4f : shape == FilterShape::notch ? 0.9f : 0.0f;
}

} // namespace

SoloPath::SoloPath(wave::Environment& environment)
    : preFilter(environment, BiquadProcessor::maxSections, rowGranularity)
    , filter(environment, BiquadProcessor::maxSections, rowGranularity)
    , volume(environment, 0.0f) {
    preFilter.shape = FilterShape::bandPass;
    preFilter.slope = FilterSlope::db96;
    preFilter.enabled = false;
    filter.input = &preFilter;
    volume.input = &filter;
}

void SoloPath::follow(const EQParameterSet& band) noexcept REALTIME {
    const FilterShape shape = band.shape.get();
    const FilterSlope slope = band.slope.get();
    const auto q = static_cast<float>(band.q.unitFromValue(band.q.get()));
    const float frequency = band.frequency.get();

    trustedRealtime([&] {
        filter.shape = soloShape(shape);
        filter.slope = isShelf(shape) ? std::max(slope, FilterSlope::db48) : slope;
    });
    float filterFrequency = frequency;
    if (isShelf(shape)) {
        const BandEdges edges = bandEdges(q, std::exp2(frequency), shape, slope);
        filterFrequency = std::log2(shape == FilterShape::lowShelf ? edges.high : edges.low);
    }
    filter.frequency.assign(filterFrequency);
    filter.gain.assign(band.gain.get());

    const float share = preFilterShare(shape);
    trustedRealtime([&] { preFilter.enabled = share > 0.0f; });
    const bool keepsQ = shape == FilterShape::tiltShelf || shape == FilterShape::bandPass;
    if (share > 0.0f) {
        preFilter.frequency.assign(frequency);
        preFilter.q.assign(share * q);
        filter.q.assign((4.0f / static_cast<float>(order(shape, slope)) + 1.0f) * q);
    } else {
        filter.q.assign(keepsQ ? q : 1.0f);
    }
}

void SoloPath::open(wave::Producer& gain) noexcept REALTIME {
    volume.gain.connect(&gain);
}

void SoloPath::close() noexcept REALTIME {
    if (volume.gain.connected() == nullptr)
        return;
    volume.gain.connect(nullptr);
    volume.gain.parameter().setValue(1.0f, 0.0f);
    volume.gain.parameter().setValue(0.0f, closingMs);
}
