#include "wave/SoundCopy.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace {

TEST(SoundCopy, EveryKernelTakesOutWhatIsNoSoundAndTouchesNothingElse) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const std::vector<float> values{0.5f,  -0.0f,    std::numeric_limits<float>::quiet_NaN(), infinity, -infinity,
                                    1e18f, -1.1e18f, std::numeric_limits<float>::max(),       1e-42f,   -3.0f,
                                    1e17f};
    constexpr float guard = 77.0f;
    for (wave::SoundCopy::Function* const copy :
         {static_cast<wave::SoundCopy::Function*>(wave::SoundCopy::plain), wave::SoundCopy::avx2()}) {
        if (copy == nullptr)
            continue;
        for (const std::int32_t count : {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 64, 511})
            for (std::size_t offset = 1; offset < 4; ++offset)
                for (const bool inPlace : {false, true}) {
                    const std::size_t length = static_cast<std::size_t>(count) + offset + 8;
                    std::vector<float> in(length, guard);
                    for (std::int32_t i = 0; i < count; ++i)
                        in[offset + static_cast<std::size_t>(i)] =
                            values[(static_cast<std::size_t>(i) * 7 + offset) % values.size()];
                    const std::vector<float> before = in;
                    std::vector<float> apart(length, guard);
                    std::vector<float>& out = inPlace ? in : apart;
                    copy(in.data() + offset, count, out.data() + offset);
                    for (std::size_t i = 0; i < length; ++i) {
                        const bool inside = i >= offset && i < offset + static_cast<std::size_t>(count);
                        const float expected = !inside ? guard : std::fabs(before[i]) <= 1e18f ? before[i] : 0.0f;
                        ASSERT_EQ(std::bit_cast<std::uint32_t>(out[i]), std::bit_cast<std::uint32_t>(expected))
                            << "sample " << i << " of " << count << " from " << offset;
                    }
                }
    }
}

} // namespace
