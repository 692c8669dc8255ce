// The sizes of a convolver.
// Threads: any while nobody writes; the properties with the audio excluded.
#pragma once

#include "base/Realtime.h"
#include "eq/Convolver.h"
#include "wave/FFTPlan.h"

#include <cstdint>
#include <memory>

// Of one level, the largest, and by `child` of those below. All of it stays as it was made, but for what is written
// under "settings".
class Convolver::Configuration {
public:
    // A kernel of `kernelLength` samples, with the smallest transform, whose size is also the latency, of
    // `minimumBlock`. Both are above 0; the block is a power of 2 and at least FFTPlan::smallestSize.
    Configuration(std::int32_t kernelLength, std::int32_t minimumBlock);
    Configuration(const Configuration&) = delete;
    Configuration& operator=(const Configuration&) = delete;

    // Settings, the same on all levels. They are there before the kernel and the convolver are made.
    void setCrossfadeMilliseconds(double milliseconds); // one kernel to the next
    void setUpdateDivisor(std::int32_t divisor);        // of a kernel's hops: how many of them a new kernel may take

    void makeKernelPlan(); // for kernels that are designed as spectra: size kernelLength, with a Hann window

    // Partitions of this level that are in use, from the first. A change resets the convolver.
    void setActivePartitions(std::int32_t count) noexcept REALTIME;

    std::int32_t getKernelLength() const noexcept REALTIME { return kernelLength; }
    std::int32_t getLatency() const noexcept REALTIME { return latency; }
    std::int32_t getHop() const noexcept REALTIME { return hop; }                       // half a transform
    std::int32_t getFirstHop() const noexcept REALTIME { return lead; }                 // hops that the child covers
    std::int32_t getPartitionCount() const noexcept REALTIME { return partitionCount; } // of this level
    std::int32_t getActivePartitions() const noexcept REALTIME { return activePartitions; }
    std::int32_t getUpdateDivisor() const noexcept REALTIME { return updateDivisor; }
    double getCrossfadeMilliseconds() const noexcept REALTIME { return crossfadeMilliseconds; }
    std::int32_t crossfadeSamples(float sampleRate) const noexcept REALTIME;
    const FFTPlan& getPlan() const noexcept REALTIME { return *plan; }
    const FFTPlan* getKernelPlan() const noexcept REALTIME { return kernelPlan.get(); } // null before it is made
    const Configuration* getChild() const noexcept REALTIME { return child.get(); }
    Configuration* getChild() noexcept REALTIME { return child.get(); }

    std::int32_t activePartitionsOfAllLevels() const noexcept REALTIME;
    std::int32_t totalPartitions() const noexcept REALTIME; // of this level and all below

private:
    std::int32_t kernelLength;
    std::int32_t latency;
    std::int32_t lead = 0;
    std::int32_t hop = 0;
    std::int32_t partitionCount = 0;
    std::int32_t activePartitions = 0;
    std::int32_t updateDivisor = 4;
    double crossfadeMilliseconds = 20.0;
    std::unique_ptr<FFTPlan> plan;
    std::unique_ptr<FFTPlan> kernelPlan; // at the top only
    std::unique_ptr<Configuration> child;
};
