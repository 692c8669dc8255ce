// Lets a composite filter hand its own input to the components inside it, without a copy.
// Threads: those of wave::Producer.
#pragma once

#include "wave/Filter.h"

namespace wave {

class InputForwarder : public Producer {
public:
    // The consumer is not owned and outlives this.
    InputForwarder(Environment& owner, const Consumer& consumer) : Producer(owner), forwarded(&consumer.input) {}

    void process(BasicBlock<float>&, std::int32_t count, std::uint32_t) noexcept REALTIME override {
        output = &pullOrSilence(*forwarded, environment, count);
    }

private:
    Producer* const* forwarded; // the field, not what it holds: rewiring takes effect at once
};

} // namespace wave
