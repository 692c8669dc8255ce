// What a presenter keeps in files, and how a file of another size, rate or width becomes its picture.

#include "analysis/Decibels.h"
#include "analysis/SpectrumFile.h"
#include "analysis/SpectrumPresenter.h"
#include "base/BinaryDataWriter.h"
#include "platform/Files.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace {

// What no analysis gives is cut to what sums and curves can bear.
constexpr float lowestStored = -1000.0f; // dB
constexpr float highestStored = 200.0f;

} // namespace

bool SpectrumPresenter::saveSpectrum(const std::string& path) const {
    if (frame.fftSize == 0 || entries.empty())
        return false;
    SpectrumFile file;
    file.fftSize = static_cast<std::int32_t>(frame.fftSize);
    file.sampleRate = sampleRate;
    // Bins between two entries belong to the upper one, as in the picture.
    auto entry = entries.begin();
    for (std::size_t bin = 0; bin < frame.fftSize / 2; ++bin) {
        if (entry->bin < bin && entry + 1 != entries.end())
            ++entry;
        file.levels.push_back(entry->shown);
    }
    std::ostringstream bytes;
    BinaryDataWriter writer(&bytes);
    file.write(writer);
    return writer.good() && replaceFile(path, bytes.view());
}

bool SpectrumPresenter::loadSpectrum(BinaryDataReader& reader) {
    const std::optional<SpectrumFile> file = SpectrumFile::read(reader);
    if (!file.has_value() || (frame.fftSize == 0 && (source == nullptr || source->size() == 0)))
        return false;
    followFrame();
    const auto size = static_cast<double>(frame.fftSize);
    // Enough for the average not to grow in any more, and for a match.
    frames = std::max(static_cast<std::int32_t>(std::lround(0.5 * static_cast<double>(sampleRate) / size)) + 1,
                      framesForMatch);
    const double storedPerBin = static_cast<double>(file->fftSize) * static_cast<double>(sampleRate) /
                                (size * static_cast<double>(file->sampleRate.value_or(sampleRate)));
    const std::vector<float>& stored = file->levels;
    std::size_t next = 0; // the first stored bin that has not been looked at
    for (Entry& entry : entries) {
        const double place = static_cast<double>(entry.bin) * storedPerBin;
        float level = floorDb;
        if (place < static_cast<double>(stored.size())) {
            const auto bin = static_cast<std::size_t>(place);
            const auto at = stored.begin() + static_cast<std::ptrdiff_t>(bin);
            if (bin >= next) // several stored bins in one: their peak
                level = *std::max_element(stored.begin() + static_cast<std::ptrdiff_t>(next), at + 1);
            else // several entries in one stored bin
                level = bin + 1 < stored.size()
                            ? *at + static_cast<float>(place - std::trunc(place)) * (*(at + 1) - *at)
                            : *at;
            next = bin + 1;
        }
        level = std::clamp(level, lowestStored, highestStored);
        entry.shown = level;
        entry.value = accumulate ? dbToMagnitude(level - tiltAt(entry.column)) * static_cast<float>(frames) : level;
    }
    silent = false;
    running = false;
    return true;
}
