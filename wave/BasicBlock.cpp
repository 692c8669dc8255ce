#include "wave/BasicBlock.h"

#include "wave/Environment.h"

#include <algorithm>

namespace wave {

template <typename T>
BasicBlock<T>::BasicBlock(Environment& owner) : AlignedBuffer<T>(owner.getMaxBlockSize()), environment(owner) {
    environment.addMaxBlockSizeListener(*this);
}

template <typename T>
BasicBlock<T>::~BasicBlock() {
    environment.removeMaxBlockSizeListener(*this);
}

template <typename T>
void BasicBlock<T>::maxBlockSizeChanged() {
    this->resize(environment.getMaxBlockSize());
}

template <typename T>
void BasicBlock<T>::fillConstant(T value, std::int32_t count) noexcept REALTIME {
    std::fill_n(this->data(), count, value);
    isConstant = 1;
}

template class BasicBlock<float>;
template class BasicBlock<double>;

ConstValueBlock::ConstValueBlock(Environment& owner, float constant) : BasicBlock<float>(owner), value(constant) {
    fillConstant(value, getCapacity());
}

void ConstValueBlock::maxBlockSizeChanged() {
    BasicBlock<float>::maxBlockSizeChanged();
    fillConstant(value, getCapacity());
}

void ConstValueBlock::setValue(float wanted) noexcept REALTIME {
    value = wanted;
    fillConstant(value, getCapacity());
}

} // namespace wave
