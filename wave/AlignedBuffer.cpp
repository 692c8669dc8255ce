#include "wave/AlignedBuffer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace {

// Whole vectors of the widest kind, and one more, so that neither a rounded-up read nor its neighbour leaves the room.
template <typename T>
std::size_t roomInBytes(std::int32_t elements) noexcept {
    constexpr std::size_t vector = AlignedBuffer<T>::alignment;
    const std::size_t bytes = static_cast<std::size_t>(elements) * sizeof(T);
    return (bytes + vector - 1) / vector * vector + vector;
}

} // namespace

template <typename T>
void AlignedBuffer<T>::Release::operator()(T* memory) const noexcept {
    ::operator delete[](memory, std::align_val_t{alignment});
}

template <typename T>
AlignedBuffer<T>::AlignedBuffer(std::int32_t elements) {
    resize(elements);
}

template <typename T>
AlignedBuffer<T>::AlignedBuffer(AlignedBuffer&& other) noexcept
    : storage(std::move(other.storage)), capacity(std::exchange(other.capacity, 0)) {}

template <typename T>
AlignedBuffer<T>& AlignedBuffer<T>::operator=(AlignedBuffer&& other) noexcept {
    if (this != &other) {
        storage = std::move(other.storage);
        capacity = std::exchange(other.capacity, 0);
    }
    return *this;
}

template <typename T>
void AlignedBuffer<T>::resize(std::int32_t elements) {
    elements = std::max(elements, 0);
    if (elements == capacity)
        return;
    std::unique_ptr<T[], Release> wanted;
    if (elements > 0) {
        const std::size_t room = roomInBytes<T>(elements);
        wanted.reset(static_cast<T*>(::operator new[](room, std::align_val_t{alignment})));
        std::memset(wanted.get(), 0, room);
        std::copy_n(storage.get(), std::min(elements, capacity), wanted.get());
    }
    storage = std::move(wanted);
    capacity = elements;
}

template <typename T>
void AlignedBuffer<T>::clear() noexcept REALTIME {
    if (capacity > 0)
        std::memset(storage.get(), 0, roomInBytes<T>(capacity));
}

template class AlignedBuffer<float>;
template class AlignedBuffer<double>;
