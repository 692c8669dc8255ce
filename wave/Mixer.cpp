#include "wave/Mixer.h"

#include "base/FloatTolerance.h"
#include "wave/BlockMath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace {

constexpr std::size_t fastInputs = 16;
constexpr std::size_t termsPerPass = 3; // a pass over the output costs as much as a term

struct Term {
    const wave::BasicBlock<float>* source;
    const wave::BasicBlock<float>* weight;
};

template <bool onTop, typename Law, typename... Inputs>
void write(float* out, std::int32_t samples, Law law, Inputs... inputs) noexcept {
    if constexpr (onTop)
        wave::updateBlock(out, samples, law, inputs...);
    else
        wave::mapBlock(
            out, samples, [=](auto... values) { return law(0.0f, values...); }, inputs...);
}

// Adds the terms in their order, each with one factor.
template <bool onTop, std::size_t... term>
void addSteady(float* out, const Term* terms, std::int32_t samples, std::index_sequence<term...>) noexcept {
    const float factors[] = {(*terms[term].weight)[0]...};
    const auto law = [=](float sum, auto... values) { return (sum + ... + (values * factors[term])); };
    write<onTop>(out, samples, law, terms[term].source->data()...);
}

// The same with weights that move.
template <bool onTop, std::size_t... term>
void addMoving(float* out, const Term* terms, std::int32_t samples, std::index_sequence<term...>) noexcept {
    const auto law = [](float sum, auto... values) {
        const float each[] = {values...}; // sources, then weights
        return (sum + ... + (each[term] * each[sizeof...(term) + term]));
    };
    write<onTop>(out, samples, law, terms[term].source->data()..., terms[term].weight->data()...);
}

template <std::size_t count>
void addTerms(float* out, const Term* terms, std::int32_t samples, bool steady, bool onTop) noexcept {
    constexpr auto all = std::make_index_sequence<count>();
    if (steady)
        onTop ? addSteady<true>(out, terms, samples, all) : addSteady<false>(out, terms, samples, all);
    else
        onTop ? addMoving<true>(out, terms, samples, all) : addMoving<false>(out, terms, samples, all);
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
        if (filled < count || block[0] != sum) {
            block.fillConstant(sum, count);
            filled = count;
        }
        return;
    }
    block.isConstant = 0;
    filled = 0;
    for (std::size_t first = 0; first < used; first += termsPerPass) {
        const std::size_t now = std::min(used - first, termsPerPass);
        const bool onTop = first > 0;
        if (now == 1)
            addTerms<1>(block.data(), &terms[first], count, weightsSteady, onTop);
        else if (now == 2)
            addTerms<2>(block.data(), &terms[first], count, weightsSteady, onTop);
        else
            addTerms<3>(block.data(), &terms[first], count, weightsSteady, onTop);
    }
}

void Mixer::fold(wave::BasicBlock<float>& block, std::int32_t count) noexcept REALTIME {
    bool first = true;
    bool constant = true;
    float* const out = block.data();
    filled = 0;
    for (const auto& entry : entries) {
        if (entry->source == nullptr)
            continue;
        const wave::BasicBlock<float>& source = entry->source->pull(count);
        const wave::BasicBlock<float>& weight = entry->weight.read(count);
        constant = constant && source.isConstant != 0 && weight.isConstant != 0;
        const float* const in = source.data();
        const float* const weights = weight.data();
        const auto magnitude = [](float x, float w) { return std::fabs(x) * w; };
        const auto product = [](float x, float w) { return x * w; };
        if (operation == Operation::largestMagnitude) {
            if (first)
                wave::mapBlock(out, count, magnitude, in, weights);
            else
                wave::updateBlock(
                    out, count,
                    [=](float best, float x, float w) { return magnitude(x, w) > best ? magnitude(x, w) : best; }, in,
                    weights);
        } else if (first) {
            wave::mapBlock(out, count, product, in, weights);
        } else {
            wave::updateBlock(
                out, count, [=](float sum, float x, float w) { return sum + product(x, w); }, in, weights);
        }
        first = false;
    }
    if (first)
        output = &environment.zeroBlock;
    else
        block.isConstant = constant ? 1 : 0;
}
