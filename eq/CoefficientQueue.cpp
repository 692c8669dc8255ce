#include "eq/CoefficientQueue.h"

#include <algorithm>
#include <cstring>

template <typename T>
CoefficientQueue<T>::CoefficientQueue(std::size_t mostRuns, std::size_t longest)
    : capacity(std::max<std::size_t>(mostRuns, 1))
    , longestRow(longest)
    , rowLength(longest)
    , lengths(std::make_unique<std::uint32_t[]>(capacity))
    , rows(std::make_unique<T[]>(capacity * longest)) {}

template <typename T>
void CoefficientQueue<T>::enqueue(std::int32_t count, const T* row) noexcept REALTIME {
    const std::size_t bytes = rowLength * sizeof(T);
    T* const last = rows.get() + (used - (used > 0)) * rowLength;
    const auto length = static_cast<std::uint32_t>(count);
    if (used > 0 && (used == capacity || std::memcmp(last, row, bytes) == 0)) {
        std::memmove(last, row, bytes);
        lengths[used - 1] += length;
        return;
    }
    std::memmove(rows.get() + used * rowLength, row, bytes);
    lengths[used] = length;
    ++used;
}

template <typename T>
void CoefficientQueue<T>::restart() noexcept REALTIME {
    if (used > 1)
        std::memcpy(rows.get(), rows.get() + (used - 1) * rowLength, rowLength * sizeof(T));
    used = 0;
}

template class CoefficientQueue<float>;
template class CoefficientQueue<double>;
