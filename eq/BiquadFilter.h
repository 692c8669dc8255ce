// A cascade of sections as a component of the graph, with a soft switch. Of two sister filters on the channels of a
// pair one runs both as long as both are fully on. Threads: audio; construction, destruction and partnership with the
// audio excluded. Properties: audio, between cycles.
#pragma once

#include "base/Property.h"
#include "eq/BiquadProcessor.h"
#include "wave/Filter.h"

#include <cstddef>
#include <cstdint>

class BiquadFilter : public wave::Filter, public PropertyOwner {
public:
    BiquadFilter(wave::Environment& owner, std::size_t sections, std::int32_t granularity);
    BiquadFilter(wave::Environment& owner, std::size_t sections, BiquadFilter& queueOwner); // see BiquadProcessor
    ~BiquadFilter() override;

    void reset() noexcept REALTIME override;
    void filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock, std::int32_t count,
                std::uint32_t mode) noexcept REALTIME override;

    // Queues rows for exactly `count` samples. Sister filters have equal settings, so one call serves both channels.
    virtual void calculateCoefficients(std::int32_t count, BiquadProcessor& wanted) noexcept REALTIME = 0;

    virtual void setLink(bool linked) noexcept REALTIME; // runs as one with the partner from now on, or alone
    virtual void clearLink() noexcept REALTIME;          // alone, and each as its own switch says

    // The same band on the other channel, which must be of the same class; it gets this one as its partner.
    void setPartner(BiquadFilter* other) noexcept REALTIME;
    BiquadFilter* getPartner() const noexcept REALTIME { return partnerFilter; }

    Property<bool> enabled;
    const wave::BasicBlock<float>* partnerInput = nullptr; // stands in for the partner's input; not owned, may be null

    const BiquadProcessor& getProcessor() const noexcept REALTIME { return processor; }

protected:
    void propertyChanged(AbstractProperty& property) override;

    BiquadProcessor processor;

    bool isWhole() const noexcept REALTIME;                     // the stream goes on where this filter was last asked
    void noteSteadyBlock(std::int32_t count) noexcept REALTIME; // of this filter and its linked partner

private:
    void noteContinuity(std::int32_t count) noexcept REALTIME;
    void upholdLink() noexcept REALTIME;
    const wave::BasicBlock<float>& pullPartnerInput(std::int32_t count) noexcept REALTIME;
    void finish(const wave::BasicBlock<float>& result) noexcept REALTIME;

    BiquadFilter* partnerFilter = nullptr; // not owned
    std::uint64_t nextPosition = 0;
};

inline bool BiquadFilter::isWhole() const noexcept REALTIME {
    return nextPosition == environment.position && nextPosition != environment.lastRestartPosition;
}

inline void BiquadFilter::noteSteadyBlock(std::int32_t count) noexcept REALTIME {
    nextPosition = environment.position + static_cast<std::uint64_t>(count);
    processor.noteRun(count);
    if (!processor.isLinked())
        return;
    partnerFilter->nextPosition = nextPosition;
    partnerFilter->processor.noteRun(count);
}
