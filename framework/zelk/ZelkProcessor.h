// The audio side of the product.
// Threads: audio, except construction (main).
#pragma once

#include "framework/GenericPluginProcessor.h"

class ZelkProcessor final : public GenericPluginProcessor {
public:
    explicit ZelkProcessor(int layoutIndex);
    ~ZelkProcessor() override;

    std::int32_t silenceTail() const noexcept REALTIME override { return 8192; }
};
