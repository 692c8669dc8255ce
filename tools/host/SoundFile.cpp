#include "tools/host/SoundFile.h"

#include "tools/host/Failure.h"
#include "tools/host/FilePath.h"
#include "tools/host/System.h"
#include "tools/host/TextTools.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>

#include <sndfile.h>

namespace {

struct CloseSound {
    void operator()(SNDFILE* sound) const { sf_close(sound); }
};
using Sound = std::unique_ptr<SNDFILE, CloseSound>;

struct Container {
    const char* extension;
    int format;
    const char* bestSamples;
};

constexpr std::array<Container, 13> containers{{{"wav", SF_FORMAT_WAV, "float"},
                                                {"wave", SF_FORMAT_WAV, "float"},
                                                {"rf64", SF_FORMAT_RF64, "float"},
                                                {"w64", SF_FORMAT_W64, "float"},
                                                {"aif", SF_FORMAT_AIFF, "float"},
                                                {"aiff", SF_FORMAT_AIFF, "float"},
                                                {"aifc", SF_FORMAT_AIFF, "float"},
                                                {"caf", SF_FORMAT_CAF, "float"},
                                                {"au", SF_FORMAT_AU, "float"},
                                                {"snd", SF_FORMAT_AU, "float"},
                                                {"flac", SF_FORMAT_FLAC, "24"},
                                                {"ogg", SF_FORMAT_OGG, "vorbis"},
                                                {"oga", SF_FORMAT_OGG, "vorbis"}}};

struct Samples {
    const char* name;
    int format;
    int bytes;
};

constexpr std::array<Samples, 6> sampleFormats{{{"16", SF_FORMAT_PCM_16, 2},
                                                {"24", SF_FORMAT_PCM_24, 3},
                                                {"32", SF_FORMAT_PCM_32, 4},
                                                {"float", SF_FORMAT_FLOAT, 4},
                                                {"double", SF_FORMAT_DOUBLE, 8},
                                                {"vorbis", SF_FORMAT_VORBIS, 1}}};

const Container& containerOf(const std::string& path) {
    std::string extension = pathText(filePath(path).extension());
    if (!extension.empty())
        extension.erase(0, 1);
    for (const Container& container : containers) {
        if (sameWord(container.extension, extension))
            return container;
    }
    // A device has no extension, and takes whatever comes.
    std::error_code error;
    if (std::filesystem::exists(filePath(path), error) && !std::filesystem::is_regular_file(filePath(path), error) &&
        !std::filesystem::is_directory(filePath(path), error))
        return containers.front();
    std::string names;
    for (const Container& container : containers)
        names += (names.empty() ? "" : ", ") + std::string(container.extension);
    throw Failure("cannot tell the format of " + path + ": its extension is none of " + names);
}

const Samples& samplesOf(const std::string& name) {
    for (const Samples& samples : sampleFormats) {
        if (sameWord(samples.name, name))
            return samples;
    }
    throw Failure("--format is 16, 24, 32, float or double, not \"" + name + "\"");
}

// A plain WAV counts its bytes in 32 bits, and names no speakers.
int formatFor(const Container& container, const Samples& samples, const SoundWriter::Format& wanted) {
    const std::uint64_t bytes = wanted.frames * wanted.channels * static_cast<std::uint64_t>(samples.bytes);
    int major = container.format;
    if (major == SF_FORMAT_WAV && bytes > 0xfff00000u)
        major = SF_FORMAT_RF64;
    else if (major == SF_FORMAT_WAV && !wanted.channelMap.empty() && wanted.channels > 2)
        major = SF_FORMAT_WAVEX;
    return major | samples.format;
}

// The library's reason without its full stop; where the system failed, the system's.
std::string reasonOf(SNDFILE* sound) {
    if (sf_error(sound) == SF_ERR_SYSTEM)
        return systemReason();
    std::string reason = trimmed(sf_strerror(sound));
    while (!reason.empty() && reason.back() == '.')
        reason.pop_back();
    return reason;
}

} // namespace

struct SoundReader::Content {
    Sound sound;
};

SoundReader::SoundReader(const std::string& path) : file(path), content(std::make_unique<Content>()) {
    std::error_code error;
    if (!std::filesystem::exists(filePath(path), error))
        throw Failure("there is no file " + path);
    SF_INFO info{};
    content->sound.reset(sf_open(path.c_str(), SFM_READ, &info));
    if (content->sound == nullptr)
        throw Failure("cannot read " + path + ": " + reasonOf(nullptr));
    channelCount = static_cast<std::uint32_t>(info.channels);
    rate = info.samplerate;
    frameCount = static_cast<std::uint64_t>(info.frames);
    map.resize(channelCount);
    const int mapBytes = static_cast<int>(map.size() * sizeof(int));
    if (sf_command(content->sound.get(), SFC_GET_CHANNEL_MAP_INFO, map.data(), mapBytes) == SF_FALSE)
        map.clear();
}

SoundReader::~SoundReader() = default;

std::size_t SoundReader::read(Channels& into, std::size_t count) {
    SNDFILE* const sound = content->sound.get();
    interleaved.resize(count * channels());
    const sf_count_t got = sf_readf_float(sound, interleaved.data(), static_cast<sf_count_t>(count));
    const std::size_t taken = got < 0 ? 0 : static_cast<std::size_t>(got);
    if (sf_error(sound) != SF_ERR_NO_ERROR)
        throw Failure("cannot read " + file + ": " + reasonOf(sound));
    position += taken;
    if (taken < count && position < frames())
        throw Failure("cannot read " + file + ": it ends too early");
    into.resize(channels());
    for (std::size_t channel = 0; channel < into.size(); ++channel) {
        into[channel].assign(count, 0.0f);
        for (std::size_t i = 0; i < taken; ++i)
            into[channel][i] = interleaved[i * into.size() + channel];
    }
    return taken;
}

struct SoundWriter::Content {
    explicit Content(const std::string& path) : file(path) {}

    OutputFile file;
    Sound sound;
};

SoundWriter::SoundWriter(const std::string& path, const Format& wanted) : content(std::make_unique<Content>(path)) {
    Sound& sound = content->sound;
    const Container& container = containerOf(path);
    const Samples& samples = samplesOf(wanted.samples.empty() ? container.bestSamples : wanted.samples);
    SF_INFO info{};
    info.samplerate = wanted.sampleRate;
    info.channels = static_cast<int>(wanted.channels);
    info.format = formatFor(container, samples, wanted);
    if (sf_format_check(&info) == SF_FALSE)
        throw Failure("a file of the kind ." + std::string(container.extension) + " cannot hold " +
                      std::to_string(wanted.channels) + " channels of the format " + samples.name + " at " +
                      std::to_string(wanted.sampleRate) + " Hz");
    sound.reset(sf_open_fd(content->file.descriptor(), SFM_WRITE, &info, SF_FALSE));
    if (sound == nullptr)
        throw Failure("cannot write " + path + ": " + reasonOf(nullptr));
    wholeNumbers =
        samples.format == SF_FORMAT_PCM_16 || samples.format == SF_FORMAT_PCM_24 || samples.format == SF_FORMAT_PCM_32;
    sf_command(sound.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    std::vector<int> map = wanted.channelMap;
    if (map.size() == wanted.channels) // containers without a place for it say no, which does no harm
        sf_command(sound.get(), SFC_SET_CHANNEL_MAP_INFO, map.data(), static_cast<int>(map.size() * sizeof(int)));
}

SoundWriter::~SoundWriter() = default;

void SoundWriter::write(const Channels& samples, std::size_t first, std::size_t count) {
    interleaved.resize(count * samples.size());
    for (std::size_t channel = 0; channel < samples.size(); ++channel) {
        for (std::size_t i = 0; i < count; ++i)
            interleaved[i * samples.size() + channel] = samples[channel][first + i];
    }
    if (wholeNumbers)
        clippedSamples += static_cast<std::uint64_t>(std::count_if(
            interleaved.begin(), interleaved.end(), [](float sample) { return !(std::abs(sample) <= 1.0f); }));
    const auto wanted = static_cast<sf_count_t>(count);
    if (sf_writef_float(content->sound.get(), interleaved.data(), wanted) != wanted)
        throw Failure("cannot write " + content->file.path() + ": " + systemReason());
}

void SoundWriter::finish() {
    sf_write_sync(content->sound.get());
    if (sf_close(content->sound.release()) != SF_ERR_NO_ERROR)
        throw Failure("cannot write " + content->file.path() + ": " + systemReason());
    content->file.commit();
}
