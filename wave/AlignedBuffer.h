// Memory for samples: zero-filled, aligned to 32 bytes, with room behind the last element for whole vectors.
// Threads: resizing with the audio excluded, the rest on the thread of the owner.
#pragma once

#include "base/Realtime.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

// T is float or double.
template <typename T>
class AlignedBuffer {
public:
    static constexpr std::size_t alignment = 32;

    AlignedBuffer() = default;
    explicit AlignedBuffer(std::int32_t elements);
    AlignedBuffer(AlignedBuffer&& other) noexcept;
    AlignedBuffer& operator=(AlignedBuffer&& other) noexcept;

    // Keeps the first min(old, new) elements, the others are 0. At most 0 releases the storage.
    void resize(std::int32_t elements);

    void clear() noexcept REALTIME; // all to zero, the room behind the last element too

    std::int32_t getCapacity() const noexcept { return capacity; }

    // The elements, and behind them at least 32 bytes that belong to the buffer. Null without elements.
    T* data() noexcept REALTIME { return storage.get(); }
    const T* data() const noexcept REALTIME { return storage.get(); }

    template <typename Index>
    T& operator[](Index index) noexcept REALTIME {
        return storage.get()[index];
    }
    template <typename Index>
    const T& operator[](Index index) const noexcept REALTIME {
        return storage.get()[index];
    }

private:
    struct Release {
        void operator()(T* memory) const noexcept;
    };

    std::unique_ptr<T[], Release> storage;
    std::int32_t capacity = 0;
};

extern template class AlignedBuffer<float>;
extern template class AlignedBuffer<double>;
