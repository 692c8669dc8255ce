// Sound files read and written in pieces, one list of samples a channel.
// Threads: main.
#pragma once

#include "tools/host/System.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <sndfile.h>

using Channels = std::vector<std::vector<float>>;

struct CloseSound {
    void operator()(SNDFILE* sound) const { sf_close(sound); }
};
using Sound = std::unique_ptr<SNDFILE, CloseSound>;

class SoundReader {
public:
    explicit SoundReader(const std::string& path); // throws Failure

    std::uint32_t channels() const { return static_cast<std::uint32_t>(info.channels); }
    int sampleRate() const { return info.samplerate; }
    std::uint64_t frames() const { return static_cast<std::uint64_t>(info.frames); }
    const std::vector<int>& channelMap() const { return map; } // empty: the file tells none

    // Fills the channels with the next samples, and with silence behind the end. Returns how many came from the file.
    std::size_t read(Channels& into, std::size_t count); // throws Failure

private:
    std::string file;
    SF_INFO info{};
    Sound sound;
    std::vector<int> map;
    std::vector<float> interleaved;
    std::uint64_t position = 0;
};

class SoundWriter {
public:
    struct Format {
        std::uint32_t channels = 0;
        int sampleRate = 0;
        std::string samples;         // "16", "24", "32", "float", "double"; empty: the best of the container
        std::vector<int> channelMap; // empty: none
        std::uint64_t frames = 0;    // about how many will come
    };

    // The container is that of the path's extension. Throws Failure.
    SoundWriter(const std::string& path, const Format& wanted);

    void write(const Channels& samples, std::size_t first, std::size_t count); // throws Failure
    void finish();                                                             // throws Failure

    // Samples so far that the file's whole numbers could not hold; they were clipped.
    std::uint64_t clipped() const { return clippedSamples; }

private:
    OutputFile file;
    Sound sound;
    bool wholeNumbers = false;
    std::vector<float> interleaved;
    std::uint64_t clippedSamples = 0;
};
