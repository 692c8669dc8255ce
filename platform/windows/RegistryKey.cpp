#include "platform/windows/RegistryKey.h"

#include "platform/windows/WindowsText.h"

#include <cstring>

namespace {

constexpr DWORD longestName = 16383;    // characters, of the system
constexpr DWORD largestValue = 1 << 20; // bytes; ours stay below a few thousand
constexpr int sizeTries = 8;            // another process may make a value longer between two calls

std::optional<SettingValue> typedValue(DWORD kind, const SettingBytes& bytes) {
    if (kind == REG_BINARY)
        return bytes;
    if (kind == REG_DWORD && bytes.size() == sizeof(std::int32_t)) {
        std::int32_t number = 0;
        std::memcpy(&number, bytes.data(), sizeof number);
        return number;
    }
    if (kind == REG_SZ) {
        std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
        if (text.ends_with(L'\0')) // programs leave it out
            text.pop_back();
        return utf8Text(text);
    }
    return std::nullopt;
}

const BYTE* asBytes(const void* data) noexcept {
    return static_cast<const BYTE*>(data);
}

} // namespace

RegistryKey::RegistryKey(HKEY root, std::string_view path, Access access) {
    const std::wstring wide = wideText(path);
    HKEY opened = nullptr;
    const LSTATUS status = access == Access::read
                               ? RegOpenKeyExW(root, wide.c_str(), 0, KEY_READ, &opened)
                               : RegCreateKeyExW(root, wide.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                                 KEY_ALL_ACCESS, nullptr, &opened, nullptr);
    if (status == ERROR_SUCCESS)
        key = opened;
}

RegistryKey::~RegistryKey() {
    if (isOpen())
        RegCloseKey(key);
}

std::optional<SettingValue> RegistryKey::valueOf(const wchar_t* name) const {
    SettingBytes bytes(256);
    for (int tries = 0; isOpen() && tries < sizeTries; ++tries) {
        DWORD kind = REG_NONE;
        auto size = static_cast<DWORD>(bytes.size());
        const LSTATUS status = RegQueryValueExW(key, name, nullptr, &kind, bytes.data(), &size);
        if (size > largestValue)
            return std::nullopt;
        if (status == ERROR_MORE_DATA) {
            bytes.resize(size);
            continue;
        }
        bytes.resize(size);
        return status == ERROR_SUCCESS ? typedValue(kind, bytes) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<SettingValue> RegistryKey::value(std::string_view name) const {
    return valueOf(wideText(name).c_str());
}

SettingValues RegistryKey::values() const {
    SettingValues found;
    std::wstring name(longestName + 1, L'\0');
    for (DWORD index = 0; isOpen(); ++index) {
        auto length = static_cast<DWORD>(name.size());
        const LSTATUS status = RegEnumValueW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (status != ERROR_SUCCESS)
            break;
        if (auto stored = valueOf(name.c_str()))
            found.insert_or_assign(utf8Text(std::wstring_view(name).substr(0, length)), *std::move(stored));
    }
    return found;
}

bool RegistryKey::setValue(std::string_view name, const SettingValue& value) const {
    const std::wstring wide = wideText(name);
    const auto store = [&](DWORD kind, const void* data, std::size_t size) {
        return isOpen() && size <= largestValue &&
               RegSetValueExW(key, wide.c_str(), 0, kind, asBytes(data), static_cast<DWORD>(size)) == ERROR_SUCCESS;
    };
    if (const auto* const number = std::get_if<std::int32_t>(&value))
        return store(REG_DWORD, number, sizeof *number);
    if (const auto* const bytes = std::get_if<SettingBytes>(&value))
        return store(REG_BINARY, bytes->data(), bytes->size());
    const std::wstring text = wideText(std::get<std::string>(value));
    return store(REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t)); // with its closing zero
}
