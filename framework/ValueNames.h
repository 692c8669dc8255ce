// The names of a stepped parameter's values: a comma-separated constant text, read in place. It costs no memory of its
// own, however many parameters share it.
// Threads: any.
#pragma once

#include <cstdint>
#include <string_view>

class ValueNames {
public:
    constexpr ValueNames() noexcept = default;
    // The text must outlive the object: a literal. Names hold no comma.
    explicit constexpr ValueNames(std::string_view commaText) noexcept : text(commaText) {}

    constexpr bool empty() const noexcept { return text.empty(); }
    constexpr std::int32_t count() const noexcept;
    constexpr std::string_view operator[](std::int32_t index) const noexcept; // empty outside

private:
    std::string_view text;
};

constexpr std::int32_t ValueNames::count() const noexcept {
    if (text.empty())
        return 0;
    std::int32_t names = 1;
    for (const char c : text)
        names += c == ',' ? 1 : 0;
    return names;
}

constexpr std::string_view ValueNames::operator[](std::int32_t index) const noexcept {
    std::string_view rest = text;
    for (; index > 0; --index) {
        const std::size_t comma = rest.find(',');
        if (comma == std::string_view::npos)
            return {};
        rest.remove_prefix(comma + 1);
    }
    return index < 0 ? std::string_view{} : rest.substr(0, rest.find(','));
}
