#include "base/Utf8.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace {

// The point at the head of the bytes and how many it takes; 0: those bytes are no character.
std::size_t takePoint(std::string_view bytes, char32_t& point) noexcept {
    const auto byteAt = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    const std::uint8_t first = byteAt(0);
    if (first < 0x80) {
        point = first;
        return 1;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000}; // a longer form than needed is none
    if (first < 0xC2 || first > 0xF4 || bytes.size() < length)
        return 0;
    point = first & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80)
            return 0;
        point = point << 6 | (byteAt(i) & 0x3Fu);
    }
    const bool isSurrogate = point >= 0xD800 && point <= 0xDFFF;
    return point < least[length] || point > 0x10FFFF || isSurrogate ? 0 : length;
}

} // namespace

std::u32string codePoints(std::string_view bytes) {
    std::u32string result;
    result.reserve(bytes.size());
    while (!bytes.empty()) {
        char32_t point = replacementPoint;
        const std::size_t taken = takePoint(bytes, point);
        result.push_back(taken == 0 ? replacementPoint : point);
        bytes.remove_prefix(taken == 0 ? 1 : taken);
    }
    return result;
}

std::string utf8(std::u32string_view points) {
    std::string result;
    result.reserve(points.size());
    const auto add = [&](char32_t byte) { result.push_back(static_cast<char>(byte)); };
    for (const char32_t point : points) {
        if (point < 0x80) {
            add(point);
        } else if (point < 0x800) {
            add(0xC0 | point >> 6);
            add(0x80 | (point & 0x3F));
        } else if (point < 0x10000) {
            add(0xE0 | point >> 12);
            add(0x80 | (point >> 6 & 0x3F));
            add(0x80 | (point & 0x3F));
        } else {
            add(0xF0 | point >> 18);
            add(0x80 | (point >> 12 & 0x3F));
            add(0x80 | (point >> 6 & 0x3F));
            add(0x80 | (point & 0x3F));
        }
    }
    return result;
}

std::string validUtf8(std::string_view bytes) {
    return utf8(codePoints(bytes));
}

char32_t lowerCasePoint(char32_t point) noexcept {
    const auto within = [point](char32_t first, char32_t last) { return point >= first && point <= last; };
    const auto evenIsUpper = [point] { return point | 1u; };
    const auto oddIsUpper = [point] { return (point & 1u) != 0 ? point + 1 : point; };
    if (within('A', 'Z') || (within(0xC0, 0xDE) && point != 0xD7) || within(0x391, 0x3A1) || within(0x3A3, 0x3AB) ||
        within(0x410, 0x42F))
        return point + 0x20;
    if (within(0x400, 0x40F))
        return point + 0x50;
    if (within(0x531, 0x556))
        return point + 0x30;
    if (point == 0x130) // with its dot it has no lower case of one point but the plain letter
        return 'i';
    if (point == 0x178)
        return 0xFF;
    if (within(0x139, 0x148) || within(0x179, 0x17E))
        return oddIsUpper();
    if (within(0x100, 0x137) || within(0x14A, 0x177) || within(0x1E00, 0x1E95) || within(0x1EA0, 0x1EFF) ||
        within(0x460, 0x481) || within(0x48A, 0x4BF) || within(0x4D0, 0x52F))
        return evenIsUpper();
    return point;
}

std::u32string lowerCasePoints(std::string_view bytes) {
    std::u32string points = codePoints(bytes);
    for (char32_t& point : points)
        point = lowerCasePoint(point);
    return points;
}
