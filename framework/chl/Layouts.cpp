#include "framework/chl/Layouts.h"

#include "framework/chl/LayoutTable.h"

namespace chl {

namespace {

const LayoutRow* row(Layout layout) noexcept {
    const auto index = static_cast<std::int32_t>(layout);
    return index >= 0 && index < layoutCount ? &layoutTable[static_cast<std::size_t>(index)] : nullptr;
}

template <typename Predicate>
bool anyChannel(Layout layout, Predicate predicate) noexcept {
    const std::size_t channels = channelCount(layout);
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (predicate(speakerCode(layout, channel)))
            return true;
    }
    return false;
}

} // namespace

std::size_t channelCount(Layout layout) noexcept REALTIME {
    const LayoutRow* found = row(layout);
    return found != nullptr ? found->channels : 0;
}

std::string_view layoutName(Layout layout) noexcept {
    const LayoutRow* found = row(layout);
    return found != nullptr ? found->name : std::string_view{};
}

SpeakerCode speakerCode(Layout layout, std::size_t channel) noexcept REALTIME {
    return channel < channelCount(layout) ? row(layout)->codes[channel] : 0;
}

bool speakerInSet(SpeakerCode code, SpeakerSet set) noexcept REALTIME {
    const SpeakerCode azimuth = code & azimuthBits;
    const bool top = (code & topBit) != 0;
    const bool center = (code & centerBit) != 0;
    // The pairs ask for the azimuth alone: a top loudspeaker above a pair moves with it.
    switch (set) {
    case SpeakerSet::all:
        return true;
    case SpeakerSet::allButLfe:
        return (code & lfeBit) == 0;
    case SpeakerSet::tops:
        return top;
    case SpeakerSet::front:
        return !top && ((center && azimuth == 0) || azimuth == 30 || azimuth == 45);
    case SpeakerSet::lfe:
        return (code & lfeBit) != 0;
    case SpeakerSet::center:
        return center && azimuth == 0;
    case SpeakerSet::leftRight:
        return azimuth == 30 || azimuth == 45;
    case SpeakerSet::frontCenter:
        return azimuth == 22;
    case SpeakerSet::wide:
        return azimuth == 60;
    case SpeakerSet::surroundSide:
        return azimuth == 90;
    case SpeakerSet::surround:
        return azimuth == 110;
    case SpeakerSet::surroundRear:
        return azimuth == 135;
    case SpeakerSet::centerSurround:
        return center && azimuth == 180;
    case SpeakerSet::topFront:
        return top && azimuth == 45;
    case SpeakerSet::topSide:
        return top && azimuth == 90;
    case SpeakerSet::topRear:
        return top && azimuth == 135;
    }
    return false;
}

bool layoutHasSet(Layout layout, SpeakerSet set) noexcept REALTIME {
    return anyChannel(layout, [set](SpeakerCode code) { return speakerInSet(code, set); });
}

bool layoutHasSpeakerBits(Layout layout, SpeakerCode mask) noexcept REALTIME {
    return anyChannel(layout, [mask](SpeakerCode code) { return (code & mask) != 0; });
}

std::size_t speakerCounts(Layout layout, int& centers, int& lfes, int& tops) noexcept {
    centers = lfes = tops = 0;
    const std::size_t channels = channelCount(layout);
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const SpeakerCode code = speakerCode(layout, channel);
        centers += (code & centerBit) != 0 ? 1 : 0;
        lfes += (code & lfeBit) != 0 ? 1 : 0;
        tops += (code & topBit) != 0 ? 1 : 0;
    }
    if (layout == Layout::lcrs) // shown as four equal channels, like quadraphonic
        centers = 0;
    return channels;
}

std::size_t displayChannel(Layout layout, std::size_t position) noexcept {
    return position < channelCount(layout) ? row(layout)->displayOrder[position] : position;
}

std::size_t displayGroup(Layout layout, std::size_t position) noexcept {
    return position < channelCount(layout) ? row(layout)->displayGroups[position] : 0;
}

} // namespace chl
