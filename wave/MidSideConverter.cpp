#include "wave/MidSideConverter.h"

#include "wave/BlockMath.h"

MidSideConverter::MidSideConverter(wave::Environment& owner, Conversion initial)
    : MultiProducer(owner, 2), conversion(nullptr, initial) {}

void MidSideConverter::processAll(std::span<const wave::BasicBlock<float>*> chosen,
                                  std::int32_t count) noexcept REALTIME {
    const wave::BasicBlock<float>& first = wave::pullOrSilence(inputs[0], environment, count);
    const wave::BasicBlock<float>& second = wave::pullOrSilence(inputs[1], environment, count);
    if (conversion == Conversion::none) {
        chosen[0] = &first;
        chosen[1] = &second;
        return;
    }
    const float* const a = first.data();
    const float* const b = second.data();
    const bool encode = conversion == Conversion::encode;
    const auto half = [=](std::int32_t i) { return (b[i] - a[i]) * 0.5f; };
    if (first.isConstant != 0 && second.isConstant != 0) {
        block(0).fillConstant(encode ? half(0) + a[0] : a[0] - b[0], count);
        block(1).fillConstant(encode ? half(0) : a[0] + b[0], count);
        return;
    }
    block(0).isConstant = 0;
    block(1).isConstant = 0;
    if (encode) {
        wave::fillBlock(block(0).data(), count, [=](std::int32_t i) { return half(i) + a[i]; });
        wave::fillBlock(block(1).data(), count, half);
    } else {
        wave::fillBlock(block(0).data(), count, [=](std::int32_t i) { return a[i] - b[i]; });
        wave::fillBlock(block(1).data(), count, [=](std::int32_t i) { return a[i] + b[i]; });
    }
}
