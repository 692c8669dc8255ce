// Sound files read and written in pieces, one list of samples a channel.
// Threads: main.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

using Channels = std::vector<std::vector<float>>;

class SoundReader {
public:
    explicit SoundReader(const std::string& path); // throws Failure
    ~SoundReader();
    SoundReader(const SoundReader&) = delete;
    SoundReader& operator=(const SoundReader&) = delete;

    std::uint32_t channels() const { return channelCount; }
    int sampleRate() const { return rate; }
    std::uint64_t frames() const { return frameCount; }
    const std::vector<int>& channelMap() const { return map; } // for a SoundWriter; empty: the file tells none

    // Fills the channels with the next samples, and with silence behind the end. Returns how many came from the file.
    std::size_t read(Channels& into, std::size_t count); // throws Failure

private:
    struct Content;

    std::string file;
    std::unique_ptr<Content> content;
    std::uint32_t channelCount = 0;
    int rate = 0; // Hz
    std::uint64_t frameCount = 0;
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
    ~SoundWriter();
    SoundWriter(const SoundWriter&) = delete;
    SoundWriter& operator=(const SoundWriter&) = delete;

    void write(const Channels& samples, std::size_t first, std::size_t count); // throws Failure
    void finish();                                                             // throws Failure

    // Samples so far that the file's whole numbers could not hold; they were clipped.
    std::uint64_t clipped() const { return clippedSamples; }

private:
    struct Content;

    std::unique_ptr<Content> content;
    bool wholeNumbers = false;
    std::vector<float> interleaved;
    std::uint64_t clippedSamples = 0;
};
