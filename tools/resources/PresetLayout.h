// The order of the values in a preset of version 4, and what the versions before it lacked. Files in users' folders
// hold to it, so it never changes; what comes later in the list of parameters goes behind it.
// Threads: any.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace PresetLayout {

inline constexpr std::int32_t version = 4;
inline constexpr std::string_view signature = "ZK3p";
inline constexpr std::int32_t bands = 24;
inline constexpr std::int32_t valuesPerBand = 13;
inline constexpr std::int32_t firstGlobal = bands * valuesPerBand;
inline constexpr std::int32_t factoryValues = 334;  // what a factory preset holds
inline constexpr std::int32_t parameterCount = 358; // with the external side chains of the bands

enum BandValue : std::int32_t {
    used,
    enabled,
    frequency,
    gain,
    dynamicRange,
    dynamicsEnabled,
    threshold,
    q,
    shape,
    slope,
    stereoPlacement,
    speakers,
    solo,
};

inline constexpr float bandDefaults[valuesPerBand] = {0, 1, 9.965784f, 0, 0, 1, 1, 0.5f, 0, 1, 2, 1, 0};

struct Global {
    std::string_view name;
    float standard;
    float lowest;
    float highest;
    std::string_view valueNames; // with commas between them; empty: a number
};
extern const Global globals[factoryValues - firstGlobal];

inline constexpr std::string_view shapeNames =
    "Bell,Low Shelf,Low Cut,High Shelf,High Cut,Notch,Band Pass,Tilt Shelf,Flat Tilt";
inline constexpr std::string_view slopeNames =
    "6 dB/oct,12 dB/oct,18 dB/oct,24 dB/oct,30 dB/oct,36 dB/oct,48 dB/oct,72 dB/oct,96 dB/oct,Brickwall";
inline constexpr std::string_view placementNames = "Left,Right,Stereo,Mid,Side";
inline constexpr std::string_view speakersNames =
    "All Speakers,All (excl. LFE),LFE,Center,L/R (Front),Lc/Rc (Front Center),Lss/Rss (Surround Side),"
    "Ls/Rs (Surround),Lsr/Rsr (Surround Rear),Cs or S (Center Surround),Lts/Rts (Top Surround),"
    "L/C/R (Front + Center),Lw/Rw (Wide),Ltf/Rtf (Top Surround Front),Ltr/Rtr (Top Surround Rear)";

// Place of a name in a list with commas, without regard to case; -1: none.
std::int32_t indexOfName(std::string_view names, std::string_view name);

// Where the values of an older version stand today.
struct VersionMap {
    std::vector<std::uint32_t> indices; // one an old value
    std::vector<std::uint32_t> added;   // parameters that the old version lacks, as its map lists them
};
VersionMap mapOf(std::int32_t oldVersion); // 1 to 3

} // namespace PresetLayout
