// Text into the fixed fields and buffers of the host interface.
// Threads: any.
#pragma once

#include <cstddef>
#include <string_view>

// Copies as much as fits and always ends with a null, never inside a character of several bytes. capacity 0: nothing.
void copyClapText(std::string_view text, char* buffer, std::size_t capacity) noexcept;

template <std::size_t capacity>
void copyClapText(std::string_view text, char (&buffer)[capacity]) noexcept {
    copyClapText(text, buffer, capacity);
}
