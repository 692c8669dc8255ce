#include "eq/FilterChain.h"

FilterChain::FilterChain(wave::Environment& owner) : Filter(owner), tap(owner) {}

void FilterChain::Tap::hold(const wave::BasicBlock<float>& block) noexcept REALTIME {
    output = &block;
    stamp();
}

void FilterChain::add(EQFilter& filter) noexcept REALTIME {
    filters[filterCount++] = &filter;
    filter.input = &tap;
}

void FilterChain::filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>&, std::int32_t count,
                         std::uint32_t) noexcept REALTIME {
    FilterChain* const other = partner;
    signal = &inputBlock;
    if (other != nullptr)
        other->signal = &other->pullInput(count);

    std::size_t sectionCount = 0;
    for (std::size_t i = 0; i < filterCount; ++i) {
        EQFilter& each = *filters[i];
        switch (each.prepareSteady(count, other != nullptr)) {
        case EQFilter::Steadiness::rests:
            break;
        case EQFilter::Steadiness::runs:
            sectionCount += each.listSections(sections.data() + sectionCount);
            break;
        case EQFilter::Steadiness::moves:
            runSections(other, sectionCount, count);
            sectionCount = 0;
            runAlone(each, other, count);
            break;
        }
    }
    runSections(other, sectionCount, count);
    output = signal;
    if (other != nullptr) {
        other->output = other->signal;
        other->stamp();
    }
}

void FilterChain::runSections(FilterChain* other, std::size_t sectionCount, std::int32_t count) noexcept REALTIME {
    if (sectionCount == 0)
        return;
    const auto length = static_cast<std::uint32_t>(count);
    BiquadPass pass{.sections = sections.data(),
                    .sectionCount = sectionCount,
                    .runLengths = &length,
                    .runCount = 1,
                    .rowStride = 0,
                    .input = {signal->data(), nullptr},
                    .output = {ownBlock->data(), nullptr}};
    if (other != nullptr) {
        pass.input[1] = other->signal->data();
        pass.output[1] = other->ownBlock->data();
    }
    const BiquadKernel* const direct = biquadKernels().direct;
    trustedRealtime([&] { direct[other != nullptr ? 1 : 0](pass); });
    for (FilterChain* const each : {this, other}) {
        if (each == nullptr)
            continue;
        each->ownBlock->isConstant = 0;
        each->signal = each->ownBlock;
    }
}

void FilterChain::runAlone(EQFilter& filter, FilterChain* other, std::int32_t count) noexcept REALTIME {
    tap.hold(*signal);
    if (other != nullptr)
        other->tap.hold(*other->signal);
    signal = &filter.pull(count);
    if (other != nullptr)
        other->signal = &filter.getPartner()->pull(count);
}
