// Turns a level and a balance into the gains of two sides.
// Threads: those of wave::Producer.
#pragma once

#include "base/Property.h"
#include "wave/FloatParameterBus.h"
#include "wave/MultiProducer.h"

#include <cstdint>
#include <span>

class LevelPanConverter final : public wave::MultiProducer, public PropertyOwner {
public:
    explicit LevelPanConverter(wave::Environment& owner);

    Property<bool> invert;   // both sides change their sign
    FloatParameterBus level; // linear, 0 to 100000
    FloatParameterBus pan;   // -1, only the first side, to 1, only the second; the nearer side is not raised

    void processAll(std::span<const wave::BasicBlock<float>*> chosen, std::int32_t count) noexcept REALTIME override;
};
