#include "analysis/SpectrumFile.h"

#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"

#include <cmath>
#include <cstddef>

namespace {

constexpr const char* signature = "TVSP";
constexpr std::int32_t version = 2;
constexpr std::int32_t firstVersionWithRate = 2;

} // namespace

std::optional<SpectrumFile> SpectrumFile::read(BinaryDataReader& reader) {
    if (reader.readHeader() != signature)
        return std::nullopt;
    SpectrumFile file;
    file.fftSize = reader.readInt32();
    if (!reader.good() || file.fftSize < 1 || file.fftSize > largestSize)
        return std::nullopt;
    file.levels.reserve(static_cast<std::size_t>(file.fftSize / 2));
    for (std::int32_t bin = 0; bin < file.fftSize / 2; ++bin) {
        const float level = reader.readFloat();
        if (!reader.good() || !std::isfinite(level))
            return std::nullopt;
        file.levels.push_back(level);
    }
    if (reader.version >= firstVersionWithRate) {
        file.sampleRate = reader.readFloat();
        if (!reader.good() || !std::isfinite(*file.sampleRate) || *file.sampleRate <= 0.0f)
            return std::nullopt;
    }
    return file;
}

void SpectrumFile::write(BinaryDataWriter& writer) const {
    writer.writeHeader(signature, version);
    writer.writeInt32(fftSize);
    for (const float level : levels)
        writer.writeFloat(level);
    writer.writeFloat(sampleRate.value_or(0.0f));
}
