#include "tools/host/EventList.h"

#include <algorithm>

EventList::EventList() : table{this, shownSize, shownEvent} {}

void EventList::addValue(std::uint64_t frame, const clap_param_info& parameter, double value) {
    Event event{frame, {}};
    event.value = {};
    event.value.header = {sizeof(clap_event_param_value), 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0};
    event.value.param_id = parameter.id;
    event.value.cookie = parameter.cookie;
    event.value.note_id = -1;
    event.value.port_index = -1;
    event.value.channel = -1;
    event.value.key = -1;
    event.value.value = value;
    insert(event);
}

void EventList::addMidi(std::uint64_t frame, std::uint32_t port, const std::array<std::uint8_t, 3>& bytes) {
    Event event{frame, {}};
    event.midi = {};
    event.midi.header = {sizeof(clap_event_midi), 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_MIDI, 0};
    event.midi.port_index = static_cast<std::uint16_t>(port);
    std::copy(bytes.begin(), bytes.end(), event.midi.data);
    insert(event);
}

void EventList::insert(const Event& event) {
    const auto behind = std::upper_bound(events.begin(), events.end(), event.frame,
                                         [](std::uint64_t wanted, const Event& other) { return wanted < other.frame; });
    events.insert(behind, event);
}

std::vector<EventList::Event>::const_iterator EventList::from(std::uint64_t frame) const noexcept {
    return std::lower_bound(events.begin(), events.end(), frame,
                            [](const Event& event, std::uint64_t wanted) { return event.frame < wanted; });
}

std::size_t EventList::countFrom(std::uint64_t frame) const noexcept {
    return static_cast<std::size_t>(events.end() - from(frame));
}

void EventList::showBlock(std::uint64_t start, std::uint32_t count) noexcept {
    first = events.size() - countFrom(start);
    shown = events.size() - countFrom(start + count) - first;
    for (std::size_t i = first; i < first + shown; ++i)
        events[i].header.time = static_cast<std::uint32_t>(events[i].frame - start);
}

std::uint32_t EventList::shownSize(const clap_input_events* list) noexcept {
    return static_cast<std::uint32_t>(static_cast<const EventList*>(list->ctx)->shown);
}

const clap_event_header* EventList::shownEvent(const clap_input_events* list, std::uint32_t index) noexcept {
    const EventList& self = *static_cast<const EventList*>(list->ctx);
    return index < self.shown ? &self.events[self.first + index].header : nullptr;
}

OutputEvents::OutputEvents(HostSide& hostSide) : table{this, push}, side(hostSide) {}

void OutputEvents::begin(std::uint32_t frames) noexcept {
    blockFrames = frames;
    lastTime = 0;
}

bool OutputEvents::push(const clap_output_events* list, const clap_event_header* event) noexcept {
    OutputEvents& self = *static_cast<OutputEvents*>(list->ctx);
    if (self.blockFrames == 0)
        return true;
    if (event->time >= self.blockFrames)
        self.side.complain("an output event lies behind the end of its block");
    if (event->time < self.lastTime)
        self.side.complain("output events are not in the order of their times");
    self.lastTime = event->time;
    return true;
}
