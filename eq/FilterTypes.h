// What a band can be: its shape and its slope. The filter design and the parameters both name them here.
// Threads: any.
#pragma once

#include <cstdint>

// The numbers are those of the design; those left out belong to no shape.
enum class FilterShape : std::int32_t {
    lowPass = 0,
    lowShelf = 2,
    highPass = 3,
    highShelf = 5,
    tiltShelf = 6,
    bell = 7,
    bandPass = 8,
    notch = 10,
    flatTilt = 12,
};

enum class FilterSlope : std::int32_t {
    db6, // per octave
    db12,
    db18,
    db24,
    db30,
    db36,
    db48,
    db72,
    db96,
    brickwall,
};
