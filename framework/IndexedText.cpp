#include "framework/IndexedText.h"

#include "base/NumberText.h"
#include "framework/ShortenName.h"
#include "framework/TextHelpers.h"

IndexedTextKind parseIndexedText(std::string_view text, const ValueNames& names, std::int64_t& result) {
    const std::string_view wanted = withoutBlanks(text);
    const std::int32_t count = names.count();
    // Exactly first: names may differ in nothing but case.
    for (std::int32_t i = 0; i < count; ++i) {
        if (names[i] == wanted) {
            result = i;
            return IndexedTextKind::name;
        }
    }
    for (std::int32_t i = 0; i < count; ++i) {
        if (compareText(names[i], wanted)) {
            result = i;
            return IndexedTextKind::name;
        }
    }
    const std::size_t taken = readWhole(wanted, result);
    return taken > 0 && taken == wanted.size() ? IndexedTextKind::number : IndexedTextKind::neither;
}

std::string indexedText(std::int32_t index, std::int32_t position, const ValueNames& names) {
    return names.empty() ? wholeText(index) : std::string(names[position]);
}

std::string shortIndexedText(const std::string& text, std::size_t maxLength) {
    return shortenName(text, maxLength);
}
