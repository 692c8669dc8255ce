#include "eq/BiquadFilter.h"

BiquadFilter::BiquadFilter(wave::Environment& owner, std::size_t sections, std::int32_t granularity)
    : Filter(owner), enabled(this, true), processor(owner, sections, granularity) {
    setResettable(true);
}

BiquadFilter::BiquadFilter(wave::Environment& owner, std::size_t sections, BiquadFilter& queueOwner)
    : Filter(owner), enabled(this, true), processor(owner, sections, queueOwner.processor) {
    setResettable(true);
}

BiquadFilter::~BiquadFilter() {
    setPartner(nullptr);
}

void BiquadFilter::setPartner(BiquadFilter* other) noexcept REALTIME {
    if (partnerFilter != nullptr) {
        processor.link(nullptr);
        partnerFilter->partnerFilter = nullptr;
    }
    partnerFilter = other;
    if (other == nullptr)
        return;
    if (other->partnerFilter != nullptr)
        other->setPartner(nullptr);
    other->partnerFilter = this;
}

void BiquadFilter::setLink(bool linked) noexcept REALTIME {
    processor.link(linked && partnerFilter != nullptr ? &partnerFilter->processor : nullptr);
}

void BiquadFilter::clearLink() noexcept REALTIME {
    processor.link(nullptr);
    processor.setEnabled(enabled);
    if (partnerFilter != nullptr)
        partnerFilter->processor.setEnabled(partnerFilter->enabled);
}

void BiquadFilter::reset() noexcept REALTIME {
    processor.reset();
}

void BiquadFilter::propertyChanged(AbstractProperty& property) {
    if (&property == &enabled)
        processor.setEnabled(enabled);
}

void BiquadFilter::filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock,
                          std::int32_t count, std::uint32_t) noexcept REALTIME {
    noteContinuity(count);
    upholdLink();
    BiquadFilter* const linked = processor.isLinked() ? partnerFilter : nullptr;
    const wave::BasicBlock<float>* linkedInput = nullptr;
    if (linked != nullptr) {
        linkedInput = &pullPartnerInput(count);
        linked->noteContinuity(count);
    }

    if (processor.isOff()) {
        processor.interrupt();
        finish(inputBlock);
        if (linked != nullptr) {
            linked->processor.interrupt();
            linked->finish(*linkedInput);
        }
        return;
    }
    processor.beginBlock(inputBlock, outputBlock, count);
    if (linked != nullptr)
        linked->processor.beginBlock(*linkedInput, *linked->ownBlock, count);
    calculateCoefficients(count, processor);
    processor.process(count);
    finish(processor.getResult());
    if (linked != nullptr)
        linked->finish(linked->processor.getResult());
}

void BiquadFilter::noteContinuity(std::int32_t count) noexcept REALTIME {
    if (!environment.continues(nextPosition, count))
        processor.interrupt();
}

void BiquadFilter::upholdLink() noexcept REALTIME {
    if (partnerFilter == nullptr)
        return;
    if (processor.isLinked()) {
        if (enabled != partnerFilter->enabled)
            clearLink();
    } else if (!partnerFilter->hasRun() && processor.isFullyOn() && partnerFilter->processor.isFullyOn() &&
               !processor.isFading() && !partnerFilter->processor.isFading()) {
        partnerFilter->setLink(true);
    }
}

const wave::BasicBlock<float>& BiquadFilter::pullPartnerInput(std::int32_t count) noexcept REALTIME {
    return partnerInput != nullptr ? *partnerInput : partnerFilter->pullInput(count);
}

void BiquadFilter::finish(const wave::BasicBlock<float>& result) noexcept REALTIME {
    output = &result;
    stamp();
}
