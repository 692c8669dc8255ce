// Sound files where no library for them is at hand: WAV alone, read and written by the tool itself.
#include "tools/host/Failure.h"
#include "tools/host/FilePath.h"
#include "tools/host/SoundFile.h"
#include "tools/host/System.h"
#include "tools/host/TextTools.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <fstream>
#include <string_view>

static_assert(std::endian::native == std::endian::little, "the file's numbers lie in memory as they are");

namespace {

constexpr std::uint16_t tagWhole = 1;
constexpr std::uint16_t tagFloat = 3;
constexpr std::uint16_t tagExtensible = 0xFFFE; // the true tag begins the sub-format
constexpr std::size_t headerBytes = 80;         // RIFF, an extensible "fmt ", "fact" and the head of "data"
constexpr std::uint64_t mostDataBytes = 0xFFFFFFFFu - headerBytes;
constexpr unsigned speakerBits = 18; // named places of the channel mask

// The first two bytes of a sub-format are its tag.
constexpr std::string_view subFormatRest("\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 14);

struct Samples {
    const char* name;
    std::uint16_t tag;
    std::uint32_t bytes;
};

constexpr std::array<Samples, 5> sampleFormats{
    {{"16", tagWhole, 2}, {"24", tagWhole, 3}, {"32", tagWhole, 4}, {"float", tagFloat, 4}, {"double", tagFloat, 8}}};

const Samples& samplesOf(const std::string& name) {
    for (const Samples& samples : sampleFormats) {
        if (sameWord(samples.name, name))
            return samples;
    }
    throw Failure("--format is 16, 24, 32, float or double, not \"" + name + "\"");
}

template <typename T>
T numberAt(std::string_view bytes, std::size_t offset) {
    T number{};
    std::memcpy(&number, bytes.data() + offset, sizeof number);
    return number;
}

template <typename T>
void append(std::string& bytes, T number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

float sampleAt(const char* place, const Samples& samples) {
    if (samples.tag == tagFloat)
        return samples.bytes == 4 ? numberAt<float>({place, 4}, 0)
                                  : static_cast<float>(numberAt<double>({place, 8}, 0));
    std::int32_t whole = 0; // in the upper bytes, so that all widths have the same full scale
    std::memcpy(reinterpret_cast<char*>(&whole) + (4 - samples.bytes), place, samples.bytes);
    return static_cast<float>(static_cast<double>(whole) / 2147483648.0);
}

void appendSample(std::string& bytes, float value, const Samples& samples) {
    if (samples.tag == tagFloat) {
        samples.bytes == 4 ? append(bytes, value) : append(bytes, static_cast<double>(value));
        return;
    }
    const double steps = std::ldexp(1.0, static_cast<int>(samples.bytes) * 8 - 1);
    const double clipped = std::isnan(value) ? 0.0 : std::clamp(double{value} * steps, -steps, steps - 1.0);
    const auto whole = static_cast<std::int32_t>(std::lrint(clipped));
    bytes.append(reinterpret_cast<const char*>(&whole), samples.bytes);
}

} // namespace

struct SoundReader::Content {
    explicit Content(const std::string& path) : stream(filePath(path), std::ios::binary) {}

    std::string take(std::size_t count) {
        std::string bytes(count, '\0');
        stream.read(bytes.data(), static_cast<std::streamsize>(count));
        bytes.resize(static_cast<std::size_t>(stream.gcount()));
        return bytes;
    }

    std::ifstream stream;
    Samples samples{};
};

SoundReader::SoundReader(const std::string& path) : file(path), content(std::make_unique<Content>(path)) {
    std::error_code error;
    if (!std::filesystem::exists(filePath(path), error))
        throw Failure("there is no file " + path);
    const Failure foreign("cannot read " + path + ": it is no WAV file of whole numbers or floats");
    const std::string head = content->take(12);
    if (head.size() < 12 || !head.starts_with("RIFF") || head.substr(8) != "WAVE")
        throw foreign;
    for (;;) {
        const std::string chunk = content->take(8);
        if (chunk.size() < 8)
            throw foreign;
        const std::uint64_t size = numberAt<std::uint32_t>(chunk, 4);
        if (chunk.starts_with("data")) {
            if (channelCount == 0)
                throw foreign;
            frameCount = size / (std::uint64_t{content->samples.bytes} * channelCount);
            return;
        }
        if (!chunk.starts_with("fmt ")) {
            content->stream.ignore(static_cast<std::streamsize>(size + size % 2));
            continue;
        }
        const std::string format = size >= 16 && size <= 4096 ? content->take(size + size % 2) : std::string();
        if (format.size() < 16)
            throw foreign;
        std::uint16_t tag = numberAt<std::uint16_t>(format, 0);
        const std::uint32_t bytes = numberAt<std::uint16_t>(format, 14) / 8u;
        if (tag == tagExtensible && format.size() >= 40) {
            tag = numberAt<std::uint16_t>(format, 24);
            for (unsigned bit = 0; bit < speakerBits; ++bit)
                if ((numberAt<std::uint32_t>(format, 20) >> bit & 1u) != 0)
                    map.push_back(static_cast<int>(bit));
        }
        const auto* const known = std::find_if(sampleFormats.begin(), sampleFormats.end(), [&](const Samples& one) {
            return one.tag == tag && one.bytes == bytes;
        });
        rate = static_cast<int>(numberAt<std::uint32_t>(format, 4));
        channelCount = numberAt<std::uint16_t>(format, 2);
        if (known == sampleFormats.end() || channelCount == 0 || rate <= 0)
            throw foreign;
        content->samples = *known;
        if (map.size() != channelCount)
            map.clear();
    }
}

SoundReader::~SoundReader() = default;

std::size_t SoundReader::read(Channels& into, std::size_t count) {
    const std::size_t wanted = static_cast<std::size_t>(std::min<std::uint64_t>(count, frameCount - position));
    const std::size_t sampleBytes = content->samples.bytes;
    const std::string bytes = content->take(wanted * channelCount * sampleBytes);
    if (bytes.size() < wanted * channelCount * sampleBytes)
        throw Failure("cannot read " + file + ": it ends too early");
    position += wanted;
    into.resize(channelCount);
    for (std::size_t channel = 0; channel < into.size(); ++channel) {
        into[channel].assign(count, 0.0f);
        for (std::size_t i = 0; i < wanted; ++i)
            into[channel][i] = sampleAt(bytes.data() + (i * into.size() + channel) * sampleBytes, content->samples);
    }
    return wanted;
}

struct SoundWriter::Content {
    Content(const std::string& path, const Format& wanted)
        : file(path), format(wanted), samples(samplesOf(wanted.samples.empty() ? "float" : wanted.samples)) {}

    // For what has been written so far.
    std::string header() const {
        std::uint32_t mask = 0;
        for (const int bit : format.channelMap)
            mask |= 1u << bit;
        const std::uint32_t frameBytes = samples.bytes * format.channels;
        std::string bytes = "RIFF";
        append(bytes, static_cast<std::uint32_t>(headerBytes - 8 + dataBytes + dataBytes % 2));
        bytes.append("WAVEfmt ");
        append(bytes, std::uint32_t{40});
        append(bytes, tagExtensible);
        append(bytes, static_cast<std::uint16_t>(format.channels));
        append(bytes, static_cast<std::uint32_t>(format.sampleRate));
        append(bytes, static_cast<std::uint32_t>(format.sampleRate) * frameBytes);
        append(bytes, static_cast<std::uint16_t>(frameBytes));
        append(bytes, static_cast<std::uint16_t>(samples.bytes * 8));
        append(bytes, std::uint16_t{22}); // bytes of what follows
        append(bytes, static_cast<std::uint16_t>(samples.bytes * 8));
        append(bytes, mask);
        append(bytes, samples.tag);
        bytes.append(subFormatRest).append("fact");
        append(bytes, std::uint32_t{4});
        append(bytes, static_cast<std::uint32_t>(dataBytes / frameBytes));
        bytes.append("data");
        append(bytes, static_cast<std::uint32_t>(dataBytes));
        return bytes;
    }

    OutputFile file;
    const Format format;
    const Samples samples;
    std::uint64_t dataBytes = 0;
};

SoundWriter::SoundWriter(const std::string& path, const Format& wanted) {
    const std::string extension = pathText(filePath(path).extension());
    if (!sameWord(extension, ".wav") && !sameWord(extension, ".wave"))
        throw Failure("cannot write " + path + ": this build of zelk-host knows .wav alone");
    content = std::make_unique<Content>(path, wanted);
    if (wanted.frames * wanted.channels * content->samples.bytes > mostDataBytes)
        throw Failure("cannot write " + path + ": a WAV file holds no more than 4 GiB");
    wholeNumbers = content->samples.tag == tagWhole;
    content->file.write(content->header());
}

SoundWriter::~SoundWriter() = default;

void SoundWriter::write(const Channels& samples, std::size_t first, std::size_t count) {
    std::string bytes;
    bytes.reserve(count * samples.size() * content->samples.bytes);
    for (std::size_t i = 0; i < count; ++i) {
        for (const std::vector<float>& channel : samples) {
            const float sample = channel[first + i];
            if (wholeNumbers && !(std::abs(sample) <= 1.0f))
                ++clippedSamples;
            appendSample(bytes, sample, content->samples);
        }
    }
    content->dataBytes += bytes.size();
    if (content->dataBytes > mostDataBytes)
        throw Failure("cannot write " + content->file.path() + ": a WAV file holds no more than 4 GiB");
    content->file.write(bytes);
}

void SoundWriter::finish() {
    if (content->dataBytes % 2 != 0)
        content->file.write(std::string_view("\0", 1));
    content->file.rewriteStart(content->header());
    content->file.commit();
}
