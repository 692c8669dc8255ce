// Note names. Semitones count from C-1; A4 is 69 and 440 Hz.
// Threads: any; writing allocates.
#pragma once

#include <string>
#include <string_view>

inline constexpr double log2HzOfA4 = 8.78135971352466; // log2(440)

// A letter, "#" or "b", an octave (4 when absent), then cents: "A4", "bb3", "F#2 -14". False: something else.
[[nodiscard]] bool parseNote(std::string_view text, double& log2Hz);

std::string formatNote(double semitones);
std::string formatNoteWithCents(double semitones); // "F#2 -14"
