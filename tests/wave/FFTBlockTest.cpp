#include "wave/FFTBlock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

namespace {

std::vector<float> noise(std::int32_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> range(-1.0f, 1.0f);
    std::vector<float> samples(static_cast<std::size_t>(count));
    for (float& sample : samples)
        sample = range(random);
    return samples;
}

// Bin k by the definition, in double.
class Definition {
public:
    explicit Definition(const std::vector<float>& wanted) : samples(wanted), turns(wanted.size()) {
        for (std::size_t index = 0; index < turns.size(); ++index)
            turns[index] = std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(index) /
                                               static_cast<double>(turns.size()));
    }
    std::complex<double> bin(std::size_t k) const {
        std::complex<double> sum;
        for (std::size_t n = 0; n < turns.size(); ++n)
            sum += static_cast<double>(samples[n]) * turns[k * n & (turns.size() - 1)]; // sizes are powers of two
        return sum;
    }

private:
    const std::vector<float>& samples;
    std::vector<std::complex<double>> turns;
};

std::complex<double> binOf(const FFTBlock& block, std::size_t k) {
    const std::size_t half = static_cast<std::size_t>(block.getPlan().getSize()) / 2;
    if (k == 0 || k == half)
        return block.data()[k];
    return {block.data()[k], -block.data()[half + k]};
}

std::vector<const FFTKernels*> allKernels() {
    std::vector<const FFTKernels*> all{&FFTKernels::plain()};
    if (FFTKernels::avx2() != nullptr)
        all.push_back(FFTKernels::avx2());
    return all;
}

TEST(FFTBlock, TheSpectrumIsThatOfTheDefinitionAndTheInverseBringsTheSamplesBack) {
    for (const FFTKernels* kernels : allKernels())
        for (std::int32_t size = 32; size <= 262144; size *= 2) {
            SCOPED_TRACE(size);
            const FFTPlan plan(size, *kernels);
            FFTBlock block(plan);
            const std::vector<float> samples = noise(size, 1);
            std::copy(samples.begin(), samples.end(), block.data());
            block.transform();
            const Definition expected(samples);
            const std::size_t half = samples.size() / 2;
            const double tolerance = 3e-7 * std::sqrt(static_cast<double>(size)) * std::log2(size); // of a bin's rms
            for (std::size_t k = 0; k <= half; k += std::max<std::size_t>(half / 8, 1)) {
                EXPECT_LT(std::abs(binOf(block, k) - expected.bin(k)), tolerance) << k;
                if (k > 0) {
                    EXPECT_LT(std::abs(binOf(block, k - 1) - expected.bin(k - 1)), tolerance) << k - 1;
                }
            }
            block.transformInverse();
            std::vector<float> back(samples.size());
            block.readScaled(0, back.data(), size);
            for (std::size_t n = 0; n < samples.size(); ++n)
                ASSERT_NEAR(back[n], samples[n], 1e-6f) << n;
        }
}

TEST(FFTBlock, AnyCutOfTheWorkGivesTheSameBits) {
    std::mt19937 random(7);
    for (const FFTKernels* kernels : allKernels())
        for (const std::int32_t size : {32, 64, 128, 512, 1024, 2048, 8192}) {
            const FFTPlan plan(size, *kernels);
            const std::vector<float> samples = noise(size, 2);
            AlignedBuffer<float> scratch(size);
            FFTBlock whole(plan);
            FFTBlock cut(plan, scratch);
            std::copy(samples.begin(), samples.end(), whole.data());
            std::copy(samples.begin(), samples.end(), cut.data());
            for (int direction = 0; direction < 2; ++direction) {
                direction == 0 ? whole.transform() : whole.transformInverse();
                cut.begin();
                for (std::int32_t left = plan.getTotalWork(); left > 0;) {
                    const auto units = std::uniform_int_distribution<std::int32_t>(1, std::min(left, 700))(random);
                    direction == 0 ? cut.advance(units) : cut.advanceInverse(units);
                    left -= units;
                }
                ASSERT_TRUE(std::equal(whole.data(), whole.data() + size, cut.data())) << size << ' ' << direction;
            }
        }
}

TEST(FFTBlock, ProductsOfSpectraAreThoseOfComplexNumbersAndLeaveTheOtherBinsAlone) {
    constexpr std::int32_t half = 64;
    std::vector<std::vector<float>> spectra;
    for (unsigned seed = 3; seed < 13; ++seed)
        spectra.push_back(noise(2 * half, seed));
    const std::vector<float> before = noise(2 * half, 13);
    const auto at = [](const std::vector<float>& bins, std::size_t k) {
        return std::complex<double>(bins[k], -bins[half + k]);
    };
    const auto product = [&](std::size_t a, std::size_t b, std::size_t k) {
        if (k > 0)
            return at(spectra[a], k) * at(spectra[b], k);
        return std::complex<double>(spectra[a][0] * spectra[b][0], -spectra[a][half] * spectra[b][half]); // both real
    };
    for (const FFTKernels* kernels : allKernels())
        for (const bool add : {false, true})
            for (const std::int32_t factors : {1, 2, 5})
                for (const std::int32_t from : {0, 16, 48}) {
                    const std::int32_t to = from + 16;
                    std::vector<const float*> a;
                    std::vector<const float*> b;
                    for (std::size_t factor = 0; factor < static_cast<std::size_t>(factors); ++factor) {
                        a.push_back(spectra[factor].data());
                        b.push_back(spectra[9 - factor].data());
                    }
                    std::vector<float> out = before;
                    (add ? kernels->multiplyAdd : kernels->multiply)(a.data(), b.data(), factors, out.data(), half,
                                                                     from, to);
                    for (std::size_t k = 0; k < half; ++k) {
                        const bool touched = k >= static_cast<std::size_t>(from) && k < static_cast<std::size_t>(to);
                        std::complex<double> expected = add || !touched ? at(before, k) : 0.0;
                        for (std::size_t factor = 0; touched && factor < a.size(); ++factor)
                            expected += product(factor, 9 - factor, k);
                        ASSERT_LT(std::abs(at(out, k) - expected), 1e-6) << k;
                    }
                }
}

} // namespace
