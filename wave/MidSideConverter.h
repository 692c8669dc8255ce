// Left and right to mid and side, and back.
// Threads: those of wave::Producer.
#pragma once

#include "base/Property.h"
#include "wave/MultiProducer.h"

#include <array>
#include <cstdint>
#include <span>

class MidSideConverter final : public wave::MultiProducer {
public:
    enum class Conversion : std::int32_t { none = 0, encode = 1, decode = 2 };

    explicit MidSideConverter(wave::Environment& owner, Conversion initial = Conversion::none);

    Property<Conversion> conversion;
    std::array<wave::Producer*, 2> inputs{}; // left and right, or mid and side; not owned, null reads as silence

    void processAll(std::span<const wave::BasicBlock<float>*> chosen, std::int32_t count) noexcept REALTIME override;
};
