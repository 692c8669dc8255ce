// From a band's settings to its analog design, and the questions about settings that both sides of an instance ask.
// Threads: any; all are pure but for the prototype that the caller owns.
#pragma once

#include "eq/AnalogFilterPrototype.h"

// The edges between which a band works, in the unit of its frequency.
struct BandEdges {
    float low = 0.0f;
    float high = 0.0f;
};

inline constexpr float maxGainDb = 30.0f;
inline constexpr double flatTiltHz = 640.0; // the middle of a flat tilt, wherever its level is set

// Of the whole filter, 1 to 16; even for band shapes.
std::int32_t order(FilterShape shape, FilterSlope slope) noexcept REALTIME;
// An elliptic design without Q: a cut at the steepest slope.
bool isBrickwall(FilterShape shape, FilterSlope slope) noexcept REALTIME;
// False where the order is one more than the slope says.
bool slopeIsExact(FilterShape shape, FilterSlope slope) noexcept REALTIME;

// The Q that a shape is designed with for a band's plain Q, 0.025 to 40, and back.
float shelfQ(FilterShape shape, float q) noexcept REALTIME;
float plainQ(FilterShape shape, float designQ) noexcept REALTIME;

BandEdges bandEdges(float q, float frequency, FilterShape shape, FilterSlope slope) noexcept REALTIME;

// Frequencies in radians per sample: w0 is the band's, wReference is flatTiltHz.
void designBand(FilterShape shape, FilterSlope slope, float gainDb, float q, double w0,
                AnalogFilterPrototype& prototype, double wReference) noexcept REALTIME;
