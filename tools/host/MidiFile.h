// Standard MIDI files: what is played from them, and when.
// Threads: main.
#pragma once

#include "tools/host/EventList.h"
#include "tools/host/PluginInstance.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

struct TimedMidi {
    double seconds = 0.0;
    std::array<std::uint8_t, 3> bytes{}; // one message of a channel
};

// The channel messages of all tracks, ascending by time; of one time in the order of the tracks. Formats 0 and 1.
// Throws Failure.
std::vector<TimedMidi> readMidiFile(const std::string& path);

// The file for the plug-in's first note port that takes MIDI. Throws Failure, also when there is none.
void addMidiFile(EventList& events, const PluginInstance& instance, const std::string& path, double sampleRate);
