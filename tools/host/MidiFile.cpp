#include "tools/host/MidiFile.h"

#include "tools/host/Failure.h"
#include "tools/host/Ports.h"
#include "tools/host/WholeFile.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

namespace {

// Bytes in the order in which the file has them. Whoever reads on behind their end is told whose they were.
class Bytes {
public:
    Bytes(std::string_view content, std::string ownerName) : left(content), owner(std::move(ownerName)) {}

    bool empty() const { return left.empty(); }
    [[noreturn]] void refuse(const std::string& reason) const { throw Failure(owner + " " + reason); }

    std::string_view take(std::size_t count) {
        if (count > left.size())
            refuse("is cut off");
        const std::string_view taken = left.substr(0, count);
        left.remove_prefix(count);
        return taken;
    }

    std::uint8_t byte() { return static_cast<std::uint8_t>(take(1).front()); }

    // The most significant byte first.
    std::uint32_t number(std::size_t count) {
        std::uint32_t value = 0;
        for (const char c : take(count))
            value = value << 8 | static_cast<std::uint8_t>(c);
        return value;
    }

    // Seven bits a byte, the top bit says that more follow.
    std::uint32_t variable() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const std::uint8_t next = byte();
            value = value << 7 | (next & 0x7Fu);
            if (next < 0x80)
                return value;
        }
        refuse("holds a number of more than four bytes");
    }

private:
    std::string_view left;
    std::string owner;
};

struct Message {
    std::uint64_t tick;
    std::array<std::uint8_t, 3> bytes;
};

struct Tempo {
    std::uint64_t tick;
    double secondsPerQuarter;
};

struct Song {
    std::vector<Message> messages;
    std::vector<Tempo> tempos{{0, 0.5}};
};

constexpr std::uint8_t endOfTrack = 0x2F;
constexpr std::uint8_t setTempo = 0x51;

Tempo tempoOf(std::string_view data, std::uint64_t tick, const Bytes& track) {
    Bytes number(data, {});
    const std::uint32_t microseconds = data.size() == 3 ? number.number(3) : 0;
    if (microseconds == 0)
        track.refuse("holds a tempo that is none");
    return {tick, microseconds * 1e-6};
}

std::array<std::uint8_t, 3> channelMessage(std::uint8_t status, std::uint8_t data1, Bytes& track) {
    const bool isShort = (status & 0xE0u) == 0xC0; // program change and channel pressure
    const std::uint8_t data2 = isShort ? std::uint8_t{0} : track.byte();
    if (((data1 | data2) & 0x80) != 0)
        track.refuse("holds a message that is cut short by another");
    return {status, data1, data2};
}

void readTrack(Bytes track, Song& song) {
    std::uint64_t tick = 0;
    std::uint8_t running = 0; // status that messages without one have; 0: none
    while (!track.empty()) {
        tick += track.variable();
        const std::uint8_t first = track.byte();
        if (first == 0xFF) {
            const std::uint8_t type = track.byte();
            const std::string_view data = track.take(track.variable());
            if (type == endOfTrack)
                return;
            if (type == setTempo)
                song.tempos.push_back(tempoOf(data, tick, track));
            running = 0;
        } else if (first == 0xF0 || first == 0xF7) { // system exclusive
            track.take(track.variable());
            running = 0;
        } else if (first > 0xF0) {
            track.refuse("holds a status that files do not have");
        } else if (first >= 0x80) {
            running = first;
            song.messages.push_back({tick, channelMessage(first, track.byte(), track)});
        } else if (running != 0) {
            song.messages.push_back({tick, channelMessage(running, first, track)});
        } else {
            track.refuse("holds data without a status before it");
        }
    }
}

// How long a tick is when the file counts in frames of film: it does not depend on tempo then. Nothing: it counts in
// quarter notes.
std::optional<double> secondsPerTick(std::uint32_t division, const Bytes& header) {
    if (division == 0)
        header.refuse("has no unit of time");
    if ((division & 0x8000) == 0)
        return std::nullopt;
    const std::uint32_t rate = 0x100 - (division >> 8);
    const std::uint32_t ticks = division & 0xFF;
    if ((rate != 24 && rate != 25 && rate != 29 && rate != 30) || ticks == 0)
        header.refuse("has a unit of time that is none");
    const double framesPerSecond = rate == 29 ? 30000.0 / 1001.0 : static_cast<double>(rate);
    return 1.0 / (framesPerSecond * ticks);
}

std::vector<TimedMidi> withTimes(const Song& song, double ticksPerQuarter) {
    std::vector<TimedMidi> timed;
    timed.reserve(song.messages.size());
    auto tempo = song.tempos.begin();
    double reached = 0.0; // seconds at that tempo's tick
    for (const Message& message : song.messages) {
        const auto lasting = [&](std::uint64_t until) {
            return static_cast<double>(until - tempo->tick) / ticksPerQuarter * tempo->secondsPerQuarter;
        };
        for (; std::next(tempo) != song.tempos.end() && std::next(tempo)->tick <= message.tick; ++tempo)
            reached += lasting(std::next(tempo)->tick);
        timed.push_back({reached + lasting(message.tick), message.bytes});
    }
    return timed;
}

std::uint32_t midiPort(const PluginInstance& instance) {
    const std::vector<NotePort> ports = notePorts(instance, true);
    const auto found = std::find_if(ports.begin(), ports.end(), [](const NotePort& port) {
        return (port.dialects & (CLAP_NOTE_DIALECT_MIDI | CLAP_NOTE_DIALECT_MIDI_MPE)) != 0;
    });
    if (found == ports.end())
        throw Failure("the plug-in takes no MIDI");
    return static_cast<std::uint32_t>(found - ports.begin());
}

} // namespace

std::vector<TimedMidi> readMidiFile(const std::string& path) {
    const std::string content = wholeFile(path);
    Bytes file(content, path);
    if (!content.starts_with("MThd"))
        file.refuse("is no standard MIDI file");
    file.take(4);
    Bytes header(file.take(file.number(4)), path);
    const std::uint32_t format = header.number(2);
    const std::uint32_t tracks = header.number(2);
    const std::uint32_t division = header.number(2);
    if (format > 1)
        file.refuse("has format " + std::to_string(format) + "; formats 0 and 1 can be played");
    const std::optional<double> tickLength = secondsPerTick(division, header);

    Song song;
    for (std::uint32_t track = 1; track <= tracks;) {
        if (file.empty())
            file.refuse("ends before track " + std::to_string(track) + " of " + std::to_string(tracks));
        const std::string_view type = file.take(4);
        const std::string_view chunk = file.take(file.number(4));
        if (type == "MTrk")
            readTrack(Bytes(chunk, path + ": track " + std::to_string(track++)), song);
    }
    const auto earlier = [](const auto& a, const auto& b) { return a.tick < b.tick; };
    std::stable_sort(song.messages.begin(), song.messages.end(), earlier);
    std::stable_sort(song.tempos.begin(), song.tempos.end(), earlier);
    if (tickLength) {
        song.tempos = {{0, *tickLength}};
        return withTimes(song, 1.0);
    }
    return withTimes(song, division);
}

void addMidiFile(EventList& events, const PluginInstance& instance, const std::string& path, double sampleRate) {
    constexpr double lastFrame = 1e18; // a frame of its own for any time, far behind every sound
    const std::uint32_t port = midiPort(instance);
    for (const TimedMidi& message : readMidiFile(path)) {
        const double frame = std::min(std::round(message.seconds * sampleRate), lastFrame);
        events.addMidi(static_cast<std::uint64_t>(frame), port, message.bytes);
    }
}
