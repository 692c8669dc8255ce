#include "framework/LevelSourceProxy.h"

#include "framework/ExchangeStream.h"

void LevelSourceProxy::clear() noexcept {
    values = {nothing, nothing, nothing, 0.0f, 0.0f};
    detection = Detection::largest;
    requests.store(0, std::memory_order_relaxed);
}

void LevelSourceProxy::receive(ExchangeStream& stream) {
    const auto sent = stream.read<std::array<float, valueCount>>();
    const auto sentDetection = stream.read<std::int32_t>();
    if (!stream.good())
        return;
    values = sent;
    detection = static_cast<Detection>(sentDetection);
}

void LevelSourceProxy::send(LevelSource* source, ExchangeStream& stream) {
    std::array<float, valueCount> values{nothing, nothing, nothing, 0.0f, 0.0f};
    Detection kind = Detection::largest;
    if (source != nullptr) {
        values = {source->level(Info::level), source->level(Info::peak), source->level(Info::extreme), 0.0f, 0.0f};
        kind = source->getDetection();
    }
    stream.write(values);
    stream.write(static_cast<std::int32_t>(kind));
}

void LevelSourceProxy::answer(LevelSource& source, std::uint8_t requested) {
    if ((requested & peakReset) != 0)
        source.resetPeak();
    if ((requested & holdRelease) != 0)
        source.releaseHold();
}
