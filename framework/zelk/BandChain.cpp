#include "framework/zelk/BandChain.h"

#include "framework/zelk/BandPlacement.h"
#include "framework/zelk/KernelGrid.h"
#include "framework/zelk/ZelkBand.h"
#include "framework/zelk/ZelkChannel.h"

#include <algorithm>
#include <cmath>

ZelkProcessor::BandChain::BandChain(ZelkProcessor& processor, ZelkChannel& ownChannel, bool isFirst)
    : DiscreteFrequencyResponseSource(processor.noGrid())
    , owner(processor)
    , channel(ownChannel)
    , first(isFirst)
    , filters(processor.environment())
    , magnitude(processor)
    , naturalPhase(processor.noGrid()) {
    naturalPhase.numerators.reserve(bandCount);
    naturalPhase.denominators.reserve(bandCount);
}

void ZelkProcessor::BandChain::setPartner(BandChain& other, Role ownRole) noexcept {
    partner = &other;
    role = ownRole;
}

void ZelkProcessor::BandChain::add(std::int32_t band) noexcept REALTIME {
    list[count++] = band;
}

bool ZelkProcessor::BandChain::sounds(std::int32_t band) const noexcept REALTIME {
    return bandOnChannel(owner.bands.set(band), channel.speakerCode);
}

void ZelkProcessor::BandChain::renewConvolver(bool inUse) noexcept REALTIME {
    KernelGrid* const wanted = inUse ? owner.kernelGrid() : nullptr;
    if (wanted == grid)
        return;
    const RealtimePermit permit{"convolver of a chain"};
    trustedRealtime([this, wanted] {
        if (partner != nullptr && role == Role::leads)
            partner->dropConvolver(); // may read this one's kernel
        dropConvolver();
        grid = wanted;
        if (grid == nullptr)
            return;
        mapping = &grid->mapping;
        magnitude.resize(grid->mode == ProcessingMode::linearPhase ? grid->bins() : 0);
        kernel = std::make_unique<FrequencyResponseKernel>(owner.environment(), *grid->configuration, *this);
        convolver = std::make_unique<Convolver>(owner.environment(), *kernel);
        convolver->setSchedule(wave::Producer::Schedule::middle); // also while solo mutes the main path
    });
}

void ZelkProcessor::BandChain::dropConvolver() {
    convolver.reset();
    kernel.reset();
    grid = nullptr;
}

bool ZelkProcessor::BandChain::isLikePartner() const noexcept REALTIME {
    return partner != nullptr && std::ranges::equal(bands(), partner->bands());
}

wave::Producer& ZelkProcessor::BandChain::connect(wave::Producer& input) noexcept REALTIME {
    const bool linear = convolver != nullptr && owner.isLinear();
    wave::Producer& signal = linear ? input : connectFilters(input);
    if (convolver == nullptr)
        return signal;
    convolver->input = &signal;
    // In Natural Phase kernels change within a block. In Linear Phase all bands of a chain work on its channel.
    if (role == Role::follows)
        convolver->follow(linear && isLikePartner() ? partner->convolver.get() : nullptr);
    if (!linear)
        gatherResponses();
    updateDynamic();
    markDirty();
    return *convolver;
}

wave::Producer& ZelkProcessor::BandChain::connectFilters(wave::Producer& input) noexcept REALTIME {
    if (bands().empty())
        return input;
    if (partner == nullptr || isLikePartner()) {
        filters.clear();
        for (const std::int32_t band : bands())
            filters.add(channel.mainFilter(band));
        filters.setPartner(partner != nullptr ? &partner->filters : nullptr);
        filters.input = &input;
        return filters;
    }
    // Sister filters that stand in chains of different bands find each other's input by pulling.
    wave::Producer* signal = &input;
    for (const std::int32_t band : bands()) {
        EQFilter& filter = channel.mainFilter(band);
        filter.input = signal;
        signal = &filter;
    }
    return *signal;
}

void ZelkProcessor::BandChain::gatherResponses() noexcept REALTIME {
    naturalPhase.numerators.clear();
    naturalPhase.denominators.clear();
    trustedRealtime([this] { // both have room for all bands
        for (const std::int32_t index : bands()) {
            Band& band = owner.band(index);
            if (!sounds(index) || band.isElliptic())
                continue;
            naturalPhase.numerators.push_back(band.analogResponse.get());
            naturalPhase.denominators.push_back(band.biquadResponse.get());
        }
    });
}

void ZelkProcessor::BandChain::markDirty() noexcept REALTIME {
    if (kernel == nullptr || convolver->isFollowing())
        return;
    kernel->setEvaluationWeight(evaluationCost());
    kernel->setDirty();
}

std::span<const std::int32_t> ZelkProcessor::BandChain::soundingBands() noexcept REALTIME {
    std::size_t found = 0;
    for (const std::int32_t band : bands())
        if (sounds(band))
            sounding[found++] = band;
    return std::span(sounding).first(found);
}

// Measured. In Natural Phase a bin costs a complex division for each band, and a band's sections when it has changed.
std::int32_t ZelkProcessor::BandChain::evaluationCost() noexcept REALTIME {
    if (owner.isLinear())
        return magnitude.cost(soundingBands());
    constexpr std::int32_t base = 200;
    constexpr std::int32_t cached = 55;
    constexpr std::int32_t section = 350;
    std::int32_t cost = base;
    for (const std::int32_t index : soundingBands()) {
        const Band& band = owner.band(index);
        cost += cached + (band.analogResponse->getValidCount() == 0 ? section * band.sectionCount() : 0);
    }
    return cost;
}

void ZelkProcessor::BandChain::updateDynamic() noexcept REALTIME {
    if (kernel == nullptr)
        return;
    kernel->dynamic = owner.isLinear() && std::any_of(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count),
                                                      [this](std::int32_t band) {
                                                          return sounds(band) && owner.band(band).dynamics.isActive();
                                                      });
}

// The response

void ZelkProcessor::BandChain::responses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME {
    if (!owner.isLinear()) {
        naturalPhase.responses(start, out);
        return;
    }
    const std::span<float> powers(grid->work.data(), out.size());
    squaredMagnitudes(start, powers);
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = std::sqrt(powers[i]);
}

void ZelkProcessor::BandChain::squaredMagnitudes(std::int32_t start, std::span<float> out) noexcept REALTIME {
    if (start == 0) {
        const std::span<const std::int32_t> active = soundingBands();
        for (const std::int32_t index : active)
            if (owner.band(index).dynamics.isActive())
                owner.band(index).updateDesign(kernel->getCyclePosition());
        kernel->setEvaluationWeight(magnitude.cost(active)); // of the next, if nothing else happens
        magnitude.begin(active);
    }
    const float gain = first ? owner.kernelGain() : 1.0f;
    magnitude.read(start, out, gain * gain);
}

std::complex<float> ZelkProcessor::BandChain::response(std::int32_t index) noexcept REALTIME {
    std::complex<float> result;
    responses(index, {&result, 1});
    return result;
}

float ZelkProcessor::BandChain::squaredMagnitude(std::int32_t index) noexcept REALTIME {
    return std::norm(response(index));
}
