#include "platform/Files.h"
#include "platform/windows/FileHandle.h"
#include "platform/windows/FileTimes.h"
#include "platform/windows/Windows.h"
#include "platform/windows/WindowsText.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <vector>

namespace {

constexpr std::size_t largestWrite = std::size_t{1} << 30;
constexpr int moveTries = 40; // a reader, an indexer or a virus scanner has the file open for a moment
constexpr DWORD movePauseMs = 5;

// A name that no other thread and no other process uses for the same file.
std::wstring temporaryNameFor(const std::wstring& path) {
    static std::atomic<unsigned> count{0};
    return path + L"." + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(count.fetch_add(1)) + L".tmp";
}

bool writeAll(HANDLE file, std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto piece = static_cast<DWORD>(std::min(bytes.size(), largestWrite));
        if (!WriteFile(file, bytes.data(), piece, &written, nullptr) || written == 0)
            return false;
        bytes.remove_prefix(written);
    }
    return true;
}

std::wstring withoutLinks(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return path;
    const FileHandle file(CreateFileW(path.c_str(), 0, FileHandle::shareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    std::wstring resolved(32768, L'\0'); // the longest path of the system
    if (file)
        resolved.resize(GetFinalPathNameByHandleW(file.get(), resolved.data(), static_cast<DWORD>(resolved.size()), 0));
    return file && !resolved.empty() ? resolved : path;
}

// Who may do what with a file. Not ours to insist on: the content is what counts.
void copyRights(const std::wstring& from, const std::wstring& to) {
    DWORD size = 0;
    GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<unsigned char> rights(size);
    if (size != 0 && GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size))
        SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, rights.data());
}

// What the user has protected stays, also where the system would let it go.
bool isProtected(const std::wstring& path) noexcept {
    constexpr DWORD protecting = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & protecting) != 0;
}

bool moveOver(const std::wstring& from, const std::wstring& to, DWORD flags) noexcept {
    for (int tries = 0; tries < moveTries && !isProtected(to); ++tries) {
        if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | flags))
            return true;
        const DWORD reason = GetLastError();
        if (reason != ERROR_SHARING_VIOLATION && reason != ERROR_ACCESS_DENIED)
            return false;
        Sleep(movePauseMs);
    }
    return false;
}

bool factsOf(const std::string& path, WIN32_FILE_ATTRIBUTE_DATA& facts) {
    return GetFileAttributesExW(widePath(path).c_str(), GetFileExInfoStandard, &facts) != 0;
}

} // namespace

std::unique_ptr<std::fstream> openFile(const std::string& path, std::ios::openmode mode) {
    return std::make_unique<std::fstream>(std::filesystem::path(widePath(path)), mode);
}

bool fileExists(const std::string& path) noexcept {
    const DWORD attributes = GetFileAttributesW(widePath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::int64_t regularFileSize(const std::string& path) noexcept {
    const FileHandle file(CreateFileW(widePath(path).c_str(), FILE_READ_ATTRIBUTES, FileHandle::shareAll, nullptr,
                                      OPEN_EXISTING, 0, nullptr)); // fails for folders
    LARGE_INTEGER size{};
    const bool regular = file && GetFileType(file.get()) == FILE_TYPE_DISK && GetFileSizeEx(file.get(), &size);
    return regular ? std::int64_t{size.QuadPart} : -1;
}

std::int64_t fileTimeOf(const std::string& path) noexcept {
    WIN32_FILE_ATTRIBUTE_DATA facts{};
    return factsOf(path, facts) ? secondsSince1970(facts.ftLastWriteTime) : -1;
}

bool replaceFile(const std::string& path, std::string_view bytes, FileSafety safety) {
    const std::wstring target = withoutLinks(widePath(path));
    const std::wstring temporary = temporaryNameFor(target);
    FileHandle file(
        CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        return false;
    const bool forCrashes = safety == FileSafety::againstCrashes;
    // Without the flush a crash of the system could leave the new name with no content behind it.
    bool whole = writeAll(file.get(), bytes) && (!forCrashes || FlushFileBuffers(file.get()));
    file.close();
    if (whole)
        copyRights(target, temporary);
    whole = whole && moveOver(temporary, target, forCrashes ? MOVEFILE_WRITE_THROUGH : 0);
    if (!whole)
        DeleteFileW(temporary.c_str());
    return whole;
}

bool renameFile(const std::string& from, const std::string& to) noexcept {
    return moveOver(widePath(from), widePath(to), 0);
}

bool removeFile(const std::string& path) noexcept {
    return DeleteFileW(widePath(path).c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND ||
           GetLastError() == ERROR_PATH_NOT_FOUND;
}
