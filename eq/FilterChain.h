// Runs the filters of one channel one behind the other. Those that stand still, and none has done anything else for
// most of the time, run side by side in one pass of the kernels over the sections of all of them; the others run by
// themselves in their place. What is heard is the same.
// Threads: those of wave::Producer; filters and partner change with the audio excluded or between cycles.
#pragma once

#include "base/Realtime.h"
#include "eq/BiquadKernels.h"
#include "eq/EQFilter.h"
#include "wave/Source.h"

#include <array>
#include <cstddef>
#include <cstdint>

class FilterChain final : public wave::Filter {
public:
    static constexpr std::size_t maxFilters = 24;

    explicit FilterChain(wave::Environment& owner);

    void clear() noexcept REALTIME { filterCount = 0; }
    void add(EQFilter& filter) noexcept REALTIME; // behind those before; not owned. The chain feeds it from now on

    // The same chain on the other channel of a pair, which has the sister filters in the same places: whichever is
    // asked first runs both. Null: alone. Not owned.
    void setPartner(FilterChain* other) noexcept REALTIME { partner = other; }

    bool isEmpty() const noexcept REALTIME { return filterCount == 0; }

    void filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock, std::int32_t count,
                std::uint32_t mode) noexcept REALTIME override;

private:
    // What a filter that runs by itself finds at its input.
    class Tap final : public wave::Source {
    public:
        using Source::Source;
        void hold(const wave::BasicBlock<float>& block) noexcept REALTIME;
        void process(wave::BasicBlock<float>&, std::int32_t, std::uint32_t) noexcept REALTIME override {}
    };

    void runSections(FilterChain* other, std::size_t sectionCount, std::int32_t count) noexcept REALTIME;
    void runAlone(EQFilter& filter, FilterChain* other, std::int32_t count) noexcept REALTIME;

    Tap tap;
    std::array<EQFilter*, maxFilters> filters{};
    std::size_t filterCount = 0;
    FilterChain* partner = nullptr;
    const wave::BasicBlock<float>* signal = nullptr; // of this cycle, behind the filters so far
    std::array<BiquadSection, maxFilters * BiquadProcessor::maxSections> sections;
};
