#include "wave/Mixer.h"

#include "base/FloatTolerance.h"
#include "wave/BlockMath.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::size_t fastInputs = 16;
constexpr std::size_t termsPerPass = 3; // a pass over the output costs as much as a term

struct Term {
    const wave::BasicBlock<float>* source;
    const wave::BasicBlock<float>* weight;
};

// Adds the terms in their order. A steady weight is one factor.
template <std::size_t count, bool steady, bool onTop>
void addTerms(float* out, const Term* terms, std::int32_t samples) noexcept {
    const Term& second = terms[count > 1 ? 1 : 0];
    const Term& third = terms[count > 2 ? 2 : 0];
    const float* const a = terms[0].source->data();
    const float* const b = second.source->data();
    const float* const c = third.source->data();
    const float* const weightA = terms[0].weight->data();
    const float* const weightB = second.weight->data();
    const float* const weightC = third.weight->data();
    const float factorA = weightA[0];
    const float factorB = weightB[0];
    const float factorC = weightC[0];
    const auto addTo = [=](float sum, std::int32_t i) {
        sum += a[i] * (steady ? factorA : weightA[i]);
        if constexpr (count > 1)
            sum += b[i] * (steady ? factorB : weightB[i]);
        if constexpr (count > 2)
            sum += c[i] * (steady ? factorC : weightC[i]);
        return sum;
    };
    if constexpr (onTop)
        wave::updateBlock(out, samples, addTo);
    else
        wave::fillBlock(out, samples, [=](std::int32_t i) { return addTo(0.0f, i); });
}

using AddTerms = void (*)(float*, const Term*, std::int32_t) noexcept;

template <std::size_t count>
AddTerms chosen(bool steady, bool onTop) noexcept {
    if (steady)
        return onTop ? addTerms<count, true, true> : addTerms<count, true, false>;
    return onTop ? addTerms<count, false, true> : addTerms<count, false, false>;
}

} // namespace

Mixer::Mixer(wave::Environment& owner, int inputs, Operation initial)
    : Source(owner), inputCount(this, inputs), operation(this, initial) {
    resizeEntries();
}

void Mixer::addInput(wave::Producer* producer, float weight) {
    inputCount = std::max(inputCount.get(), 0) + 1;
    entries.back()->weight.parameter().setValue(weight, -1.0f);
    setSource(entries.size() - 1, producer);
}

void Mixer::setSource(std::size_t index, wave::Producer* producer) noexcept REALTIME {
    entries[index]->source = producer;
    refreshFastPath();
}

void Mixer::propertyChanged(AbstractProperty& changed) {
    if (&changed == &inputCount)
        resizeEntries();
    else
        refreshFastPath();
}

void Mixer::resizeEntries() {
    const auto wanted = static_cast<std::size_t>(std::max(inputCount.get(), 0));
    if (wanted < entries.size())
        entries.resize(wanted);
    while (entries.size() < wanted)
        entries.push_back(std::make_unique<Entry>(environment, weightMinimum, weightMaximum));
    refreshFastPath();
}

void Mixer::refreshFastPath() noexcept REALTIME {
    fastPath = operation == Operation::sum && entries.size() <= fastInputs &&
               std::all_of(entries.begin(), entries.end(), [](const auto& each) { return each->source != nullptr; });
}

void Mixer::process(wave::BasicBlock<float>& block, std::int32_t count, std::uint32_t) noexcept REALTIME {
    if (fastPath)
        sumFast(block, count);
    else
        fold(block, count);
}

void Mixer::sumFast(wave::BasicBlock<float>& block, std::int32_t count) noexcept REALTIME {
    std::array<Term, fastInputs> terms;
    std::size_t used = 0;
    bool weightsSteady = true;
    bool sourcesConstant = true;
    for (const auto& entry : entries) {
        const wave::BasicBlock<float>& weight = entry->weight.read(count);
        if (weight.isConstant != 0 && nearlyZero(weight[0]))
            continue; // what nobody hears is not made
        const wave::BasicBlock<float>& source = entry->source->pull(count);
        weightsSteady = weightsSteady && weight.isConstant != 0;
        sourcesConstant = sourcesConstant && source.isConstant != 0;
        terms[used++] = {&source, &weight};
    }
    if (weightsSteady && sourcesConstant) {
        float sum = 0.0f;
        for (std::size_t index = 0; index < used; ++index)
            sum += (*terms[index].source)[0] * (*terms[index].weight)[0];
        block.fillConstant(sum, count);
        return;
    }
    block.isConstant = 0;
    for (std::size_t first = 0; first < used; first += termsPerPass) {
        const std::size_t now = std::min(used - first, termsPerPass);
        const bool onTop = first > 0;
        const AddTerms add = now == 1   ? chosen<1>(weightsSteady, onTop)
                             : now == 2 ? chosen<2>(weightsSteady, onTop)
                                        : chosen<3>(weightsSteady, onTop);
        add(block.data(), &terms[first], count);
    }
}

void Mixer::fold(wave::BasicBlock<float>& block, std::int32_t count) noexcept REALTIME {
    bool first = true;
    bool constant = true;
    float* const out = block.data();
    for (const auto& entry : entries) {
        if (entry->source == nullptr)
            continue;
        const wave::BasicBlock<float>& source = entry->source->pull(count);
        const wave::BasicBlock<float>& weight = entry->weight.read(count);
        constant = constant && source.isConstant != 0 && weight.isConstant != 0;
        const float* const in = source.data();
        const float* const w = weight.data();
        if (operation == Operation::largestMagnitude) {
            const auto largest = [](float a, float b) { return a > b ? a : b; };
            if (first)
                wave::fillBlock(out, count, [=](std::int32_t i) { return std::fabs(in[i]) * w[i]; });
            else
                wave::updateBlock(out, count,
                                  [=](float best, std::int32_t i) { return largest(std::fabs(in[i]) * w[i], best); });
        } else if (first) {
            wave::fillBlock(out, count, [=](std::int32_t i) { return in[i] * w[i]; });
        } else {
            wave::updateBlock(out, count, [=](float sum, std::int32_t i) { return sum + in[i] * w[i]; });
        }
        first = false;
    }
    if (first)
        output = &environment.zeroBlock;
    else
        block.isConstant = constant ? 1 : 0;
}
