#include "platform/windows/WindowsText.h"

#include "platform/windows/Windows.h"

namespace {

// Folders must stay 12 characters below the limit of files, and a replacement's name is longer than its file's.
constexpr std::size_t longestPlainPath = 220;

bool isNamespacePath(std::wstring_view path) noexcept {
    return path.starts_with(LR"(\\?\)") || path.starts_with(LR"(\\.\)");
}

} // namespace

std::wstring wideText(std::string_view text) {
    const int length = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0)),
                      L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string utf8Text(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), needed, nullptr, nullptr);
    return narrow;
}

std::wstring widePath(std::string_view path) {
    std::wstring wide = wideText(path);
    if (wide.size() <= longestPlainPath || isNamespacePath(wide))
        return wide;
    // The unlimited form takes neither "/" nor "." nor a relative path.
    std::wstring whole(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
    whole.resize(GetFullPathNameW(wide.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
    if (whole.empty() || isNamespacePath(whole))
        return whole.empty() ? wide : whole;
    return whole.starts_with(LR"(\\)") ? LR"(\\?\UNC)" + whole.substr(1) : LR"(\\?\)" + whole;
}
