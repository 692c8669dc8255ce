// A stored spectrum: the level of each bin in dB. The layout of ".spectrum" files is known here and nowhere else.
// Threads: any but audio.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

class BinaryDataReader;
class BinaryDataWriter;

struct SpectrumFile {
    static constexpr std::int32_t largestSize = 65536; // of the FFT; a larger one is that of a damaged file

    static std::optional<SpectrumFile> read(BinaryDataReader& reader); // of any version; nothing of a damaged file
    void write(BinaryDataWriter& writer) const;

    std::int32_t fftSize = 0;
    std::vector<float> levels;       // dB, of the bins 0 to fftSize / 2 - 1, tilt included
    std::optional<float> sampleRate; // Hz; files of version 1 do not tell
};
