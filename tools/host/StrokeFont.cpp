#include "tools/host/StrokeFont.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

// A point is a digit for x and a letter for y ('e' is the base line, 'm' the height of small letters, 'q' that of
// capitals); a blank lifts the pen. From the space up to '~', then the degree sign.
constexpr std::array<std::string_view, 96> glyphs{
    "",
    "1q1i 1f1e",
    "0q0n 3q3n",
    "2e3q 5e6q 0i8i 0m8m",
    "8o6p2p0n2k6k8h6f2f0g 4r4d",
    "0e8q 1q3q3n1n1q 5h7h7e5e5h",
    "8e2n2p3q5q6p6o0h0g2e5e8i",
    "0q0n",
    "3r1p0m0h1e3c",
    "0r2p3m3h2e0c",
    "3q3k 0o6l 6o0l",
    "4g4m 1j7j",
    "1f1e0c",
    "0j5j",
    "0e0f",
    "0c6r",
    "2e6e8g8o6q2q0o0g2e",
    "1n4q4e",
    "0o2q6q8o8m0e8e",
    "0o2q6q8o8m6k3k 6k8i8g6e2e0g",
    "6e6q0i8i",
    "8q1q0k2l6l8j8g6e2e0g",
    "7q3q0m0g2e6e8g8i6k2k0i",
    "0q8q3e",
    "2k0m0o2q6q8o8m6k2k0i0g2e6e8g8i6k",
    "1e5e8i8o6q2q0o0m2k6k8m",
    "0e0f 0l0m",
    "1f1e0c 1l1m",
    "6n0j6f",
    "0l7l 0h7h",
    "0n6j0f",
    "0o2q5q7o7m4k4i 4f4e",
    "8g6e2e0g0o2q6q8o8i6i6m4n3m3j4i6i",
    "0e4q8e 1i7i",
    "0e0q6q8o8m6k0k 6k8i8g6e0e",
    "8o6q2q0o0g2e6e8g",
    "0e0q5q8n8h5e0e",
    "8e0e0q8q 0k6k",
    "0e0q8q 0k6k",
    "8o6q2q0o0g2e6e8g8k5k",
    "0e0q 8e8q 0k8k",
    "1e1q",
    "0g2e4e6g6q",
    "0e0q 8q0j 3l8e",
    "0q0e7e",
    "0e0q4i8q8e",
    "0e0q8e8q",
    "2e6e8g8o6q2q0o0g2e",
    "0e0q6q8o8l6j0j",
    "2e6e8g8o6q2q0o0g2e 5h8d",
    "0e0q6q8o8l6j0j 4j8e",
    "8o6q2q0o0m2k6k8i8g6e2e0g",
    "4e4q 0q8q",
    "0q0g2e6e8g8q",
    "0q4e8q",
    "0q2e4m6e8q",
    "0e8q 0q8e",
    "0q4k8q 4k4e",
    "0q8q0e8e",
    "3r0r0c3c",
    "0r6c",
    "0r3r3c0c",
    "0m3q6m",
    "0d8d",
    "0q2o",
    "6m6e 6k4m2m0k0g2e4e6g",
    "0q0e 0k2m4m6k6g4e2e0g",
    "6k4m2m0k0g2e4e6g",
    "6q6e 6k4m2m0k0g2e4e6g",
    "0i6i6k4m2m0k0g2e4e6f",
    "1e1o3q4q 0m4m",
    "6m6c4a2a0b 6k4m2m0k0g2e4e6g",
    "0q0e 0k2m4m6k6e",
    "1e1m 1p1q",
    "2m2b0a 2p2q",
    "0q0e 5m0h 2j6e",
    "0q0f1e2e",
    "0m0e 0l1m3m4l4e 4l5m7m8l8e",
    "0m0e 0k2m4m6k6e",
    "2e4e6g6k4m2m0k0g2e",
    "0m0a 0k2m4m6k6g4e2e0g",
    "6m6a 6k4m2m0k0g2e4e6g",
    "0m0e 0k2m4m",
    "6l4m2m0l0j6h6f4e2e0f",
    "1q1g3e4e 0m4m",
    "0m0g2e4e6g 6m6e",
    "0m3e6m",
    "0m2e4k6e8m",
    "0m6e 0e6m",
    "0m3e 6m2a",
    "0m6m0e6e",
    "4r2q2l0j2i2d4c",
    "1r1c",
    "0r2q2l4j2i2d0c",
    "0i2k5i7k",
    "1q3q4p4n3m1m0n0p1q",
};

constexpr double gap = 3.5; // between letters
constexpr double blank = 3.0;

// Takes one character from the front of the text.
std::string_view nextGlyph(std::string_view& text) {
    constexpr std::string_view degree = "\xc2\xb0";
    if (text.starts_with(degree)) {
        text.remove_prefix(degree.size());
        return glyphs.back();
    }
    const auto code = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    while (code >= 0xc0 && !text.empty() && (static_cast<unsigned char>(text.front()) & 0xc0) == 0x80)
        text.remove_prefix(1);
    return glyphs[code >= ' ' && code <= '~' ? code - ' ' : '?' - ' '];
}

double glyphWidth(std::string_view glyph) {
    double width = glyph.empty() ? blank : 0.0;
    for (const char c : glyph) {
        if (c >= '0' && c <= '9')
            width = std::max(width, static_cast<double>(c - '0'));
    }
    return width;
}

} // namespace

std::vector<std::vector<Point>> strokesOf(std::string_view text) {
    std::vector<std::vector<Point>> pieces;
    double start = 0.0;
    while (!text.empty()) {
        const std::string_view glyph = nextGlyph(text);
        bool penDown = false;
        for (std::size_t i = 0; i < glyph.size();) {
            if (glyph[i] == ' ') {
                penDown = false;
                ++i;
                continue;
            }
            if (!penDown)
                pieces.emplace_back();
            penDown = true;
            pieces.back().push_back({start + (glyph[i] - '0'), static_cast<double>(glyph[i + 1] - 'e')});
            i += 2;
        }
        start += glyphWidth(glyph) + gap;
    }
    return pieces;
}

double strokeLength(std::string_view text) {
    double length = 0.0;
    while (!text.empty())
        length += glyphWidth(nextGlyph(text)) + gap;
    return std::max(0.0, length - gap);
}
