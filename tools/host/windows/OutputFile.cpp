// Output files of Windows: written beside their place, then renamed.
#include "tools/host/Failure.h"
#include "tools/host/FilePath.h"
#include "tools/host/System.h"
#include "tools/host/windows/WideText.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <utility>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

namespace {

constexpr std::size_t largestWrite = std::size_t{1} << 30;

// Paths that an interrupt removes. Its thread may only read plain memory that never goes away.
struct Place {
    std::atomic<bool> used; // pairs with the handler: set when the path is complete
    std::array<wchar_t, 4096> path;
};
std::array<Place, 8> unfinished;

BOOL WINAPI removeUnfinished(DWORD) {
    for (const Place& place : unfinished) {
        if (place.used.load())
            DeleteFileW(place.path.data());
    }
    return FALSE; // the program ends as it would have
}

void remember(const std::wstring& path) {
    static const bool installed = SetConsoleCtrlHandler(removeUnfinished, TRUE) != 0;
    static_cast<void>(installed);
    for (Place& place : unfinished) {
        if (!place.used.load() && path.size() < place.path.size()) {
            path.copy(place.path.data(), path.size());
            place.path[path.size()] = L'\0';
            place.used.store(true);
            return;
        }
    }
}

void forget(const std::wstring& path) {
    for (Place& place : unfinished) {
        if (place.used.load() && path == place.path.data())
            place.used.store(false);
    }
}

} // namespace

OutputFile::OutputFile(std::string wantedPath) : shownPath(std::move(wantedPath)), finalPath(shownPath) {
    const DWORD attributes = GetFileAttributesW(wideText(finalPath).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        throw Failure("cannot write " + shownPath + ": it is a folder");
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
        throw Failure("cannot write " + shownPath + ": it is read-only");
    const std::filesystem::path place = filePath(finalPath);
    std::string name = ".";
    name += pathText(place.filename()) + "." + std::to_string(GetCurrentProcessId()) + ".part";
    temporaryPath = pathText(place.parent_path() / filePath(name));
    file = _wopen(wideText(temporaryPath).c_str(), _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                  _S_IREAD | _S_IWRITE);
    if (file < 0)
        throw Failure("cannot write " + shownPath + ": " + systemReason());
    remember(wideText(temporaryPath));
}

OutputFile::~OutputFile() {
    if (file >= 0)
        _close(file);
    if (!temporaryPath.empty()) {
        DeleteFileW(wideText(temporaryPath).c_str());
        forget(wideText(temporaryPath));
    }
}

void OutputFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto piece = static_cast<unsigned>(std::min(bytes.size(), largestWrite));
        const int written = _write(file, bytes.data(), piece);
        if (written <= 0)
            throw Failure("cannot write " + shownPath + ": " + systemReason());
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void OutputFile::rewriteStart(std::string_view bytes) {
    if (_lseeki64(file, 0, SEEK_SET) != 0)
        throw Failure("cannot write " + shownPath + ": " + systemReason());
    write(bytes);
}

void OutputFile::commit() {
    const bool flushed = _commit(file) == 0;
    const bool closed = _close(std::exchange(file, -1)) == 0;
    if (!flushed || !closed)
        throw Failure("cannot write " + shownPath + ": " + systemReason());
    if (!MoveFileExW(wideText(temporaryPath).c_str(), wideText(finalPath).c_str(), MOVEFILE_REPLACE_EXISTING))
        throw Failure("cannot write " + shownPath + ": " + lastErrorText());
    forget(wideText(temporaryPath));
    temporaryPath.clear();
}
