#include "eq/CoefficientQueue.h"

#include <algorithm>

template <typename T, std::size_t group>
CoefficientQueue<T, group>::CoefficientQueue(std::size_t mostRuns, std::size_t longest)
    : capacity(std::max<std::size_t>(mostRuns, 1))
    , longestRow(longest)
    , rowLength(longest)
    , lengths(std::make_unique<std::uint32_t[]>(capacity))
    , rows(std::make_unique<T[]>(capacity * longest)) {}

template <typename T, std::size_t group>
void CoefficientQueue<T, group>::restart() noexcept REALTIME {
    if (used > 1)
        copyRow(row(used - 1), 0);
    used = 0;
}

template class CoefficientQueue<double, 5>;
template class CoefficientQueue<float, 1>;
