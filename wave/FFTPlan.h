// All about a transform that depends on its size alone: its stages with their twiddles, and a window for its samples.
// Threads: any for the transform, which never changes; the window with its readers excluded.
#pragma once

#include "base/Property.h"
#include "base/Realtime.h"
#include "wave/AlignedBuffer.h"
#include "wave/FFTKernels.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

enum class FFTWindow : std::int32_t { hann = 1, hamming = 2, kaiser = 3 };

// The transform of N real samples is that of N/2 complex ones, pairs of neighbours, and one stage that takes the two
// interleaved spectra apart. The stages of the complex part are of radix 8, where the size allows, and autosorting:
// each reads one array and writes the other in the order that the next one wants, so that nothing is ever bit-reversed.
class FFTPlan final : private PropertyOwner {
public:
    static constexpr std::int32_t smallestSize = 32;

    struct Stage {
        FFTKernels::Pass pass = nullptr;
        FFTStage layout;
        std::int32_t groups = 0; // which the pass does one by one
        std::int32_t work = 0;   // units of work, the same as those of other stages
    };

    // The size is rounded up to a power of 2.
    explicit FFTPlan(std::int32_t size, const FFTKernels& kernels = FFTKernels::fastest());
    FFTPlan(const FFTPlan&) = delete;
    FFTPlan& operator=(const FFTPlan&) = delete;

    Property<FFTWindow> windowType;
    Property<float> windowParameter; // dB, of a Kaiser window

    std::int32_t getSize() const noexcept REALTIME { return size; }
    float getScale() const noexcept REALTIME { return scale; } // that undoes the gain of forward and inverse
    std::int32_t getTotalWork() const noexcept REALTIME { return totalWork; } // units, of either direction
    const FFTKernels& getKernels() const noexcept REALTIME { return kernels; }

    // size + 1 values. The first and the last belong to the same place of two windows that follow on each other.
    std::span<const float> getWindow() const noexcept REALTIME;
    float getWindowScale() const noexcept REALTIME { return windowScale; } // makes a full-scale sine's bin 1

    std::span<const Stage> getForward() const noexcept REALTIME { return forward; }
    std::span<const Stage> getInverse() const noexcept REALTIME { return inverse; }

private:
    void propertyChanged(AbstractProperty& property) override;
    void makeStages();
    void makeWindow();

    const FFTKernels& kernels;
    std::int32_t size;
    float scale;
    std::int32_t totalWork = 0;
    std::vector<Stage> forward;
    std::vector<Stage> inverse;
    AlignedBuffer<float> twiddles;
    AlignedBuffer<float> window;
    float windowScale = 0.0f;
};
