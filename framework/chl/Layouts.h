// What is known of surround formats: the channel layouts, which loudspeaker each channel feeds, and the named sets of
// loudspeakers on which a band can be placed. Constant data and look-ups; an index outside a table is answered as told,
// so that a display or a host may ask anything.
// Threads: any; nothing allocates.
#pragma once

#include "base/Realtime.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace chl {

// The order is that of the host's configuration ids and of saved settings.
enum class Layout : std::int32_t {
    none = -1, // a display that is not yet bound
    mono,
    stereo,
    lcr,
    quadraphonic,
    lcrs,
    surround50,
    surround51,
    surround60,
    surround61,
    sdss70,
    dts70,
    sdss71,
    dts71,
    itu904,
    itu914,
    itu906,
    itu916,
    atmos512,
    atmos514,
    atmos702,
    atmos712,
    atmos704,
    atmos714,
    atmos706,
    atmos716,
    atmos904,
    atmos914,
    atmos906,
    atmos916,
};

inline constexpr std::int32_t layoutCount = 29;
inline constexpr std::size_t maxChannels = 16;

// The order is that of saved parameters of the engine, not of any menu.
enum class SpeakerSet : std::int32_t {
    all,
    allButLfe,
    tops,
    front, // centre and the main pair, without tops
    lfe,
    center,
    leftRight,
    frontCenter, // Lc, Rc
    wide,
    surroundSide,
    surround,
    surroundRear,
    centerSurround,
    topFront,
    topSide,
    topRear,
};

inline constexpr std::int32_t speakerSetCount = 16;

// One loudspeaker. The lowest eight bits are the azimuth in degrees without its sign.
using SpeakerCode = std::uint32_t;
inline constexpr SpeakerCode azimuthBits = 0xFF;
inline constexpr SpeakerCode middleBit = 0x100; // neither left nor right
inline constexpr SpeakerCode leftBit = 0x200;
inline constexpr SpeakerCode rightBit = 0x400; // the signed azimuth is negative
inline constexpr SpeakerCode centerBit = 0x800;
inline constexpr SpeakerCode lfeBit = 0x1000;
inline constexpr SpeakerCode topBit = 0x2000;

std::size_t channelCount(Layout layout) noexcept REALTIME;                     // 0 without a layout
std::string_view layoutName(Layout layout) noexcept;                           // empty without a layout
SpeakerCode speakerCode(Layout layout, std::size_t channel) noexcept REALTIME; // 0 beyond the last channel
[[nodiscard]] bool speakerInSet(SpeakerCode code, SpeakerSet set) noexcept REALTIME;
[[nodiscard]] bool layoutHasSet(Layout layout, SpeakerSet set) noexcept REALTIME; // any channel is a member
[[nodiscard]] bool layoutHasSpeakerBits(Layout layout, SpeakerCode mask) noexcept REALTIME;

// As formats are counted by their names; the result is the channel count.
std::size_t speakerCounts(Layout layout, int& centers, int& lfes, int& tops) noexcept;

// On a row of meters, from left to right: the channel shown at a position, and the group of meters that it stands in.
// Without a layout each channel keeps its place, in one group.
std::size_t displayChannel(Layout layout, std::size_t position) noexcept;
std::size_t displayGroup(Layout layout, std::size_t position) noexcept;

} // namespace chl
