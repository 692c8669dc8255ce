// The bands of one channel that run on the same signal, one behind the other, and the convolver that corrects or
// replaces them in the modes with latency. To its kernel it is the response of all of them. Threads: audio, except
// construction (main).
#pragma once

#include "base/Realtime.h"
#include "eq/Convolver.h"
#include "eq/DiscreteFrequencyResponseSource.h"
#include "eq/FilterChain.h"
#include "eq/FrequencyResponseKernel.h"
#include "eq/NaturalPhaseFrequencyResponseSource.h"
#include "framework/zelk/ChainMagnitude.h"
#include "framework/zelk/EQParameterSet.h"
#include "framework/zelk/ZelkProcessor.h"

#include <array>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

struct KernelGrid;

class ZelkProcessor::BandChain final : public DiscreteFrequencyResponseSource {
public:
    BandChain(ZelkProcessor& processor, ZelkChannel& ownChannel, bool isFirst);
    BandChain(const BandChain&) = delete;
    BandChain& operator=(const BandChain&) = delete;

    enum class Role { leads, follows };
    void setPartner(BandChain& other, Role ownRole) noexcept; // the same chain on the other channel of a pair

    void clear() noexcept REALTIME { count = 0; }
    void add(std::int32_t band) noexcept REALTIME; // in ascending order

    // Convolver and kernel for the present grid, or none. Allocates when there is a change. The one that leads comes
    // first.
    void renewConvolver(bool inUse) noexcept REALTIME;

    // Puts the filters of the bands one behind the other, and the convolver where the mode wants it. The result is
    // where the signal comes out: the input itself when there is neither.
    wave::Producer& connect(wave::Producer& input) noexcept REALTIME;
    void markDirty() noexcept REALTIME;     // what the kernel is made of has changed
    void updateDynamic() noexcept REALTIME; // whether the kernel moves with the audio

    std::span<const std::int32_t> bands() const noexcept REALTIME { return std::span(list).first(count); }

    // For the kernel: the correction of Natural Phase, the magnitude of Linear Phase.
    std::complex<float> response(std::int32_t index) noexcept REALTIME override;
    void responses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME override;
    float squaredMagnitude(std::int32_t index) noexcept REALTIME override;
    void squaredMagnitudes(std::int32_t start, std::span<float> out) noexcept REALTIME override;

private:
    [[nodiscard]] bool sounds(std::int32_t band) const noexcept REALTIME; // works on this channel now
    void dropConvolver();
    [[nodiscard]] bool isLikePartner() const noexcept REALTIME;
    wave::Producer& connectFilters(wave::Producer& input) noexcept REALTIME;
    void gatherResponses() noexcept REALTIME;
    std::span<const std::int32_t> soundingBands() noexcept REALTIME; // of the list
    std::int32_t evaluationCost() noexcept REALTIME;                 // of a bin, in the kernel's units of work

    ZelkProcessor& owner;
    ZelkChannel& channel;
    const bool first; // carries the auto gain of Linear Phase
    std::array<std::int32_t, bandCount> list{};
    std::size_t count = 0;
    std::array<std::int32_t, bandCount> sounding{};
    BandChain* partner = nullptr; // not owned; null on single channels
    Role role = Role::leads;      // of a pair whose kernels would be the same the one that leads makes it
    FilterChain filters;
    KernelGrid* grid = nullptr; // of the convolver; not owned
    ChainMagnitude magnitude;   // of Linear Phase
    NaturalPhaseFrequencyResponseSource naturalPhase;
    std::unique_ptr<FrequencyResponseKernel> kernel;
    std::unique_ptr<Convolver> convolver; // goes ahead of its kernel
};
