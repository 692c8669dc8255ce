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
    // Encoding makes mid and side of left and right, decoding left and right of mid and side.
    const auto mid = [](float left, float right) { return (right - left) * 0.5f + left; };
    const auto side = [](float left, float right) { return (right - left) * 0.5f; };
    const auto left = [](float middle, float difference) { return middle - difference; };
    const auto right = [](float middle, float difference) { return middle + difference; };
    const bool constant = first.isConstant != 0 && second.isConstant != 0;
    const auto make = [&](std::size_t index, auto law) {
        if (constant) {
            block(index).fillConstant(law(first[0], second[0]), count);
            return;
        }
        wave::mapBlock(block(index).data(), count, law, first.data(), second.data());
        block(index).isConstant = 0;
    };
    if (conversion == Conversion::encode) {
        make(0, mid);
        make(1, side);
    } else {
        make(0, left);
        make(1, right);
    }
}
