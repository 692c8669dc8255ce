#include "tests/support/TestSystem.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <stdexcept>
#include <utility>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace {

std::wstring wide(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end())).native();
}

std::string uniqueName(std::string_view purpose) {
    static std::atomic<DWORD> count{0};
    std::string name(purpose);
    for (const unsigned long part : {GetCurrentProcessId(), GetTickCount(), count.fetch_add(1)})
        name.append("-").append(std::to_string(part));
    return name;
}

void setText(HKEY key, const wchar_t* name, const std::wstring& text) {
    const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    if (RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), size) != ERROR_SUCCESS)
        throw std::runtime_error("the test's registry takes nothing");
}

} // namespace

std::string makeTestFolder(std::string_view purpose) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / uniqueName(purpose);
    if (!std::filesystem::create_directory(folder))
        throw std::runtime_error("no temporary folder");
    return folder.string();
}

std::string nativePath(std::string_view path) {
    std::string native(path);
    std::replace(native.begin(), native.end(), '/', '\\');
    return native;
}

// The user's whole registry is one key of the test's own, and names the folders.
struct HomeRedirection::Former {
    std::wstring path;
    HKEY key = nullptr;
    static inline HKEY current = nullptr; // of the innermost redirection; null: the user's own
    HKEY before = nullptr;
};

HomeRedirection::HomeRedirection(const std::string& home) : former(std::make_unique<Former>()) {
    former->before = std::exchange(Former::current, nullptr);
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    former->path = L"Software\\" + wide(uniqueName("zelk-test"));
    if (RegCreateKeyExW(HKEY_CURRENT_USER, former->path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                        nullptr, &former->key, nullptr) != ERROR_SUCCESS)
        throw std::runtime_error("no key for the test");
    HKEY folders = nullptr;
    RegCreateKeyExW(former->key, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders", 0,
                    nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &folders, nullptr);
    std::filesystem::create_directories(home + ".local/share");
    std::filesystem::create_directories(home + "Documents");
    setText(folders, L"AppData", wide(nativePath(home + ".local/share")));
    setText(folders, L"Personal", wide(nativePath(home + "Documents")));
    RegCloseKey(folders);
    Former::current = former->key;
    RegOverridePredefKey(HKEY_CURRENT_USER, former->key);
}

HomeRedirection::~HomeRedirection() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(former->key);
    RegDeleteTreeW(HKEY_CURRENT_USER, former->path.c_str());
    Former::current = former->before;
    if (former->before != nullptr)
        RegOverridePredefKey(HKEY_CURRENT_USER, former->before);
}

TestModule::TestModule(const char* path) : handle(LoadLibraryW(wide(path).c_str())) {
    if (handle == nullptr)
        throw std::runtime_error("cannot load " + std::string(path) + ": error " + std::to_string(GetLastError()));
}

TestModule::~TestModule() {
    FreeLibrary(static_cast<HMODULE>(handle));
}

const void* TestModule::symbol(const char* name) const {
    return reinterpret_cast<const void*>(GetProcAddress(static_cast<HMODULE>(handle), name));
}

struct SavingFails::Former {
    std::wstring file;
};

SavingFails::SavingFails(const std::string& file, std::size_t) : former(std::make_unique<Former>(Former{wide(file)})) {
    if (!SetFileAttributesW(former->file.c_str(), FILE_ATTRIBUTE_READONLY))
        throw std::runtime_error("no file to protect");
}

SavingFails::~SavingFails() {
    SetFileAttributesW(former->file.c_str(), FILE_ATTRIBUTE_NORMAL);
}

bool makePipe(const std::string&) {
    return false;
}

bool linkFolder(const std::string& folder, const std::string& link) {
    constexpr DWORD flags = SYMBOLIC_LINK_FLAG_DIRECTORY | 2; // 2: without special rights, where the user allows it
    return CreateSymbolicLinkW(wide(link).c_str(), wide(folder).c_str(), flags) != 0 &&
           std::filesystem::exists(std::filesystem::path(wide(link)));
}

const bool fileNamesAreBytes = false;
