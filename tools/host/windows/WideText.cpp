#include "tools/host/windows/WideText.h"

#include "tools/host/FilePath.h"
#include "tools/host/TextTools.h"

#include <windows.h>

std::wstring wideText(std::string_view text) {
    return filePath(text).native();
}

std::string utf8Text(std::wstring_view text) {
    return pathText(std::filesystem::path(text));
}

std::string lastErrorText() {
    const DWORD code = GetLastError();
    wchar_t text[512] = {};
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                                        text, 512, nullptr);
    return length == 0 ? "error " + std::to_string(code) : trimmed(utf8Text(std::wstring_view(text, length)));
}
