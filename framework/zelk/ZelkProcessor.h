// The audio side of the product.
// Threads: audio, except construction (main).
#pragma once

#include "framework/GenericPluginProcessor.h"
#include "framework/chl/Layouts.h"
#include "framework/zelk/ZelkParameters.h"

class ZelkProcessor final : public GenericPluginProcessor, public ZelkParameters {
public:
    explicit ZelkProcessor(chl::Layout layout);
    ~ZelkProcessor() override;

    std::int32_t silenceTail() const noexcept REALTIME override { return 8192; }
};
