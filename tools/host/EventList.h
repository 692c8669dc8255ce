// Events for the plug-in, placed on the time line of a whole run and handed out block by block, and the list that takes
// what the plug-in sends back.
// Threads: filled on main before the run; the lists are read on the thread of the call that brings them, without
// allocation.
#pragma once

#include "host/clap/Clap.h"
#include "tools/host/HostSide.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

class EventList {
public:
    EventList();
    EventList(const EventList&) = delete;
    EventList& operator=(const EventList&) = delete;

    // At a sample of the run; events of one sample keep the order in which they were added.
    void addValue(std::uint64_t frame, const clap_param_info& parameter, double value);
    void addMidi(std::uint64_t frame, std::uint32_t port, const std::array<std::uint8_t, 3>& bytes);

    // Shows the events of the samples from start on, count of them, with their offsets in that block.
    void showBlock(std::uint64_t start, std::uint32_t count) noexcept;

    const clap_input_events* clap() const { return &table; }
    std::size_t size() const { return events.size(); }
    std::size_t countFrom(std::uint64_t frame) const noexcept; // events there or later

private:
    // One slot takes any event that this host sends.
    struct Event {
        std::uint64_t frame;
        union {
            clap_event_header header;
            clap_event_param_value value;
            clap_event_midi midi;
        };
    };

    void insert(const Event& event);
    std::vector<Event>::const_iterator from(std::uint64_t frame) const noexcept;

    static std::uint32_t shownSize(const clap_input_events* list) noexcept;
    static const clap_event_header* shownEvent(const clap_input_events* list, std::uint32_t index) noexcept;

    clap_input_events table;
    std::vector<Event> events; // ascending by frame
    std::size_t first = 0;     // of the block shown
    std::size_t shown = 0;
};

class OutputEvents {
public:
    explicit OutputEvents(HostSide& hostSide);
    OutputEvents(const OutputEvents&) = delete;
    OutputEvents& operator=(const OutputEvents&) = delete;

    // Forgets the events of the last block.
    void begin(std::uint32_t frames) noexcept;

    const clap_output_events* clap() const { return &table; }

private:
    static bool push(const clap_output_events* list, const clap_event_header* event) noexcept;

    clap_output_events table;
    HostSide& side;
    std::uint32_t blockFrames = 0; // 0: a flush, where times have no meaning
    std::uint32_t lastTime = 0;
};
