// The memory in which one half of an instance leaves what the other takes: written from the start, then read once.
// It never leaves the process, so numbers lie in it as the machine has them.
// Threads: any, one at a time.
#pragma once

#include <cstddef>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

class ExchangeStream {
public:
    void clear() noexcept; // what it has allocated stays for the next time

    template <typename T>
    void write(const T& value);
    void writeSamples(std::span<const float> samples);

    template <typename T>
    T read() noexcept;                                  // behind the end: T{}, and the stream has failed
    void readSamples(std::span<float> target) noexcept; // fewer are left: the target stays, and the stream has failed

    std::size_t samplesLeft() const noexcept { return failed ? 0 : (bytes.size() - position) / sizeof(float); }
    bool good() const noexcept { return !failed; }
    void fail() noexcept { failed = true; }

private:
    void append(const void* from, std::size_t size);
    bool take(void* to, std::size_t size) noexcept;

    std::vector<std::byte> bytes;
    std::size_t position = 0; // of the reader
    bool failed = false;
};

template <typename T>
void ExchangeStream::write(const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    append(&value, sizeof(T));
}

template <typename T>
T ExchangeStream::read() noexcept {
    static_assert(std::is_trivially_copyable_v<T>);
    T value{};
    static_cast<void>(take(&value, sizeof(T)));
    return value;
}
