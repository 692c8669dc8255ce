#include "platform/FileEnumerator.h"

#include <algorithm>

namespace {

char lowerCase(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

bool FileEnumerator::hasEnding(std::string_view candidate) const noexcept {
    return candidate.size() >= wantedEnding.size() &&
           std::equal(wantedEnding.begin(), wantedEnding.end(), candidate.end() - std::ssize(wantedEnding),
                      [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}
