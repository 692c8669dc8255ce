#include "tests/wave/GraphTestObjects.h"

#include <algorithm>

void TestSource::process(wave::BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME {
    ++runs;
    lastMode = mode;
    continued = environment.continues(nextPosition, count);
    if (whenRun)
        trustedRealtime([this] { whenRun(); });
    const auto sample = [this](std::int32_t index) noexcept REALTIME {
        return trustedRealtime([&] { return law(environment.position + static_cast<std::uint64_t>(index)); });
    };
    if (constant) {
        block.fillConstant(sample(0), count);
        return;
    }
    for (std::int32_t index = 0; index < count; ++index)
        block[index] = sample(index);
    block.isConstant = 0;
}

void runCycle(wave::Environment& environment, std::int32_t count, const std::vector<wave::Producer*>& pulled) {
    environment.beginCycle();
    for (wave::Producer* producer : pulled)
        producer->pull(count);
    environment.runCycle(count, false);
}

std::vector<float> render(wave::Environment& environment, wave::Producer& producer, std::size_t total,
                          std::int32_t piece) {
    std::vector<float> sound;
    while (sound.size() < total) {
        const auto count = static_cast<std::int32_t>(std::min(total - sound.size(), static_cast<std::size_t>(piece)));
        environment.beginCycle();
        const wave::BasicBlock<float>& block = producer.pull(count);
        sound.insert(sound.end(), block.data(), block.data() + count);
        environment.runCycle(count, false);
    }
    return sound;
}

float noise(std::uint64_t position, std::uint32_t seed) {
    std::uint64_t bits = (position + 1) * 0x9E3779B97F4A7C15u + seed * 0xBF58476D1CE4E5B9u;
    bits = (bits ^ bits >> 29) * 0x94D049BB133111EBu;
    return static_cast<float>(static_cast<std::int32_t>(bits >> 32)) / 2147483648.0f;
}
