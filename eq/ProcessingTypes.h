// How the engine works on the signal: by which method, and on which part of it.
// Threads: any.
#pragma once

#include <cstdint>

enum class ProcessingMode : std::int32_t { zeroLatency, naturalPhase, linearPhase };

enum class ProcessingResolution : std::int32_t { low, medium, high, veryHigh, maximum };

enum class StereoPlacement : std::int32_t { left, right, stereo, mid, side };

// What the two channels of a pair are.
enum class ChannelMode : std::int32_t { leftRight, midSide };
