#include "platform/FileEnumerator.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/windows/FileHandle.h"
#include "platform/windows/FileTimes.h"
#include "platform/windows/Windows.h"
#include "platform/windows/WindowsText.h"

namespace {

class WindowsFileEnumerator final : public FileEnumerator {
public:
    WindowsFileEnumerator(const std::string& wantedFolder, Filter wanted, std::string_view ending)
        : FileEnumerator(ending)
        , folder(wantedFolder)
        , filter(wanted)
        , search(FindFirstFileW(widePath(appendPath(folder, "*")).c_str(), &found))
        , standsOnEntry(search != INVALID_HANDLE_VALUE) {}
    ~WindowsFileEnumerator() override {
        if (search != INVALID_HANDLE_VALUE)
            FindClose(search);
    }

    bool next() override {
        for (; standsOnEntry; standsOnEntry = FindNextFileW(search, &found)) {
            std::string name = utf8Text(found.cFileName);
            if (name == "." || name == ".." || !hasEnding(name) || !isWanted(name))
                continue;
            entryName.swap(name);
            standsOnEntry = FindNextFileW(search, &found);
            return true;
        }
        return false;
    }

private:
    bool isWanted(const std::string& name) {
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (isFolder != (filter == Filter::directories))
            return false;
        entryTime = secondsSince1970(found.ftLastWriteTime);
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) // a link has the time of its own making
            entryTime = fileTimeOf(appendPath(folder, name));
        return isFolder || entryTime != -1;
    }

    const std::string folder;
    const Filter filter;
    WIN32_FIND_DATAW found{};
    const HANDLE search;
    bool standsOnEntry;
};

} // namespace

std::unique_ptr<FileEnumerator> enumerateFolder(const std::string& folder, FileEnumerator::Filter filter,
                                                std::string_view ending) {
    return std::make_unique<WindowsFileEnumerator>(folder, filter, ending);
}

bool identifyFolder(const std::string& path, FolderIdentity& identity) noexcept {
    const FileHandle folder(CreateFileW(widePath(path).c_str(), FILE_READ_ATTRIBUTES, FileHandle::shareAll, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION facts{};
    if (!folder || !GetFileInformationByHandle(folder.get(), &facts) ||
        (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        return false;
    identity = {facts.dwVolumeSerialNumber, std::uint64_t{facts.nFileIndexHigh} << 32 | facts.nFileIndexLow};
    return true;
}
