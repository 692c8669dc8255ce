// Combines weighted inputs: their sum, or the largest of their magnitudes.
// Threads: those of wave::Producer; inputs come and go with the audio excluded.
#pragma once

#include "base/Property.h"
#include "wave/FloatParameterBus.h"
#include "wave/Source.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class Mixer final : public wave::Source, public PropertyOwner {
public:
    enum class Operation : std::int32_t {
        sum = 0,              // of input x weight
        largestMagnitude = 2, // of |input| x weight
    };

    explicit Mixer(wave::Environment& owner, int inputs = 0, Operation initial = Operation::sum);

    Property<int> inputCount; // inputs that go are forgotten, those that come have weight 1 and no source
    Property<Operation> operation;
    float weightMaximum = 1.0f; // range of the weights of inputs that come
    float weightMinimum = 0.0f;

    void addInput(wave::Producer* producer, float weight);
    void setSource(std::size_t index, wave::Producer* producer) noexcept REALTIME; // not owned, may be null

    FloatParameterBus& weight(std::size_t index) noexcept REALTIME { return entries[index]->weight; }
    wave::Producer* source(std::size_t index) const noexcept REALTIME { return entries[index]->source; }

    void process(wave::BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME override;

    void propertyChanged(AbstractProperty& changed) override;

private:
    struct Entry {
        Entry(wave::Environment& owner, float minimum, float maximum) : weight(owner, 1.0f, minimum, maximum) {}
        FloatParameterBus weight;
        wave::Producer* source = nullptr;
    };

    void resizeEntries();
    void refreshFastPath() noexcept REALTIME;
    void sumFast(wave::BasicBlock<float>& block, std::int32_t count) noexcept REALTIME;
    void fold(wave::BasicBlock<float>& block, std::int32_t count) noexcept REALTIME;

    std::vector<std::unique_ptr<Entry>> entries;
    std::int32_t filled = 0; // samples of the block that hold its constant sum, as long as that is its last value
    bool fastPath = false;   // derived: a sum of few inputs that are all connected
};
