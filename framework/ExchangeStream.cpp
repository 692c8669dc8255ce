#include "framework/ExchangeStream.h"

void ExchangeStream::clear() noexcept {
    bytes.clear();
    position = 0;
    failed = false;
}

void ExchangeStream::writeSamples(std::span<const float> samples) {
    append(samples.data(), samples.size_bytes());
}

void ExchangeStream::readSamples(std::span<float> target) noexcept {
    static_cast<void>(take(target.data(), target.size_bytes()));
}

void ExchangeStream::append(const void* from, std::size_t size) {
    const auto* const first = static_cast<const std::byte*>(from);
    bytes.insert(bytes.end(), first, first + size);
}

bool ExchangeStream::take(void* to, std::size_t size) noexcept {
    if (failed || bytes.size() - position < size) {
        failed = true;
        return false;
    }
    if (size > 0)
        std::memcpy(to, bytes.data() + position, size);
    position += size;
    return true;
}
