#include "platform/Folders.h"
#include "platform/windows/RegistryKey.h"
#include "platform/windows/Windows.h"
#include "platform/windows/WindowsText.h"

#include <objbase.h>
#include <shlobj.h>

#include <variant>

namespace {

std::string specialFolder(int which) {
    PIDLIST_ABSOLUTE place = nullptr;
    if (SHGetSpecialFolderLocation(nullptr, which, &place) != S_OK)
        return {};
    wchar_t path[MAX_PATH] = {};
    const bool found = SHGetPathFromIDListW(place, path);
    CoTaskMemFree(place);
    return found && path[0] != L'\0' ? withTrailingSeparator(utf8Text(path)) : std::string();
}

std::string programsFolder() {
    const RegistryKey key(HKEY_LOCAL_MACHINE, R"(Software\Microsoft\Windows\CurrentVersion)");
    const auto stored = key.value("ProgramFilesDir");
    const auto* const folder = stored ? std::get_if<std::string>(&*stored) : nullptr;
    return withTrailingSeparator(folder != nullptr && !folder->empty() ? *folder : R"(C:\Program Files)");
}

} // namespace

std::string userDataFolder() {
    std::string folder = specialFolder(CSIDL_APPDATA);
    return folder.empty() ? programsFolder() : folder;
}

std::string documentsFolder() {
    std::string folder = specialFolder(CSIDL_PERSONAL);
    return folder.empty() ? R"(C:\My Documents\)" : folder;
}

bool directoryExists(const std::string& path) {
    const DWORD attributes = GetFileAttributesW(widePath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool createDirectories(const std::string& path) {
    if (path.empty())
        return false;
    if (directoryExists(path))
        return true;
    const std::string_view own = std::string_view(path).substr(0, path.find_last_not_of(pathSeparators) + 1);
    const std::string_view parent = folderOf(own);
    if (own.empty() || (!parent.empty() && !createDirectories(std::string(parent))))
        return false;
    // Another thread or process may make the same one meanwhile.
    return CreateDirectoryW(widePath(own).c_str(), nullptr) || directoryExists(path);
}
