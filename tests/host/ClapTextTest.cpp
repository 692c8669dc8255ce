#include "host/ClapText.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

TEST(ClapText, NeverWritesPastItsBufferAndNeverCutsACharacter) {
    const std::string text = "Zelk \xC3\xA9\xE2\x82\xAC 3"; // two characters of several bytes
    for (std::size_t capacity = 0; capacity <= 24; ++capacity) {
        std::array<char, 40> buffer;
        buffer.fill('#');
        copyClapText(text, buffer.data(), capacity);
        for (std::size_t i = capacity; i < buffer.size(); ++i)
            ASSERT_EQ(buffer[i], '#') << "capacity " << capacity;
        if (capacity == 0)
            continue;
        const std::string written = buffer.data();
        EXPECT_EQ(text.substr(0, written.size()), written);
        const std::size_t end = written.size();
        EXPECT_TRUE(end == text.size() || (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80)
            << "capacity " << capacity << " cuts a character";
        EXPECT_GE(end + 4, std::min(capacity, text.size()));
    }
}

} // namespace
