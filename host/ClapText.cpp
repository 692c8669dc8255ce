#include "host/ClapText.h"

#include <algorithm>

void copyClapText(std::string_view text, char* buffer, std::size_t capacity) noexcept {
    if (buffer == nullptr || capacity == 0)
        return;
    std::size_t length = std::min(text.size(), capacity - 1);
    // A continuation byte behind the cut means that the cut stands inside a character.
    while (length > 0 && length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        --length;
    std::copy_n(text.data(), length, buffer);
    buffer[length] = '\0';
}
