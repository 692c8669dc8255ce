// Output files of POSIX systems: written beside their place, then renamed.
#include "tools/host/Failure.h"
#include "tools/host/System.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Paths that a signal handler removes. It may only read plain memory that never goes away.
struct Place {
    std::atomic<bool> used; // pairs with the handler: set when the path is complete
    std::array<char, 4096> path;
};
std::array<Place, 8> unfinished;
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void removeUnfinished(int signalNumber) {
    for (const Place& place : unfinished) {
        if (place.used.load())
            unlink(place.path.data());
    }
    _exit(128 + signalNumber);
}

void remember(const std::string& path) {
    static const bool installed = [] {
        for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP})
            std::signal(signalNumber, removeUnfinished);
        return true;
    }();
    static_cast<void>(installed);
    for (Place& place : unfinished) {
        if (!place.used.load() && path.size() < place.path.size()) {
            path.copy(place.path.data(), path.size());
            place.path[path.size()] = '\0';
            place.used.store(true);
            return;
        }
    }
}

void forget(const std::string& path) {
    for (Place& place : unfinished) {
        if (place.used.load() && path == place.path.data())
            place.used.store(false);
    }
}

// The file that a path means in the end, also when the last link points to nothing yet.
std::string resolved(const std::string& path) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target.string();
}

} // namespace

OutputFile::OutputFile(std::string wantedPath) : shownPath(std::move(wantedPath)), finalPath(resolved(shownPath)) {
    struct stat status {};
    if (stat(finalPath.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode))
            throw Failure("cannot write " + shownPath + ": it is a folder");
        if (!S_ISREG(status.st_mode)) {
            file = open(finalPath.c_str(), O_WRONLY | O_CLOEXEC);
            if (file < 0)
                throw Failure("cannot write " + shownPath + ": " + systemReason());
            return;
        }
        // The folder's rights alone would let a write-protected file be replaced.
        if (access(finalPath.c_str(), W_OK) != 0)
            throw Failure("cannot write " + shownPath + ": " + systemReason());
    }
    const std::filesystem::path place(finalPath);
    std::string name = ".";
    name += place.filename().string() + "." + std::to_string(getpid()) + ".part";
    temporaryPath = (place.parent_path() / name).string();
    file = open(temporaryPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0)
        throw Failure("cannot write " + shownPath + ": " + systemReason());
    remember(temporaryPath);
}

OutputFile::~OutputFile() {
    if (file >= 0)
        close(file);
    if (!temporaryPath.empty()) {
        unlink(temporaryPath.c_str());
        forget(temporaryPath);
    }
}

void OutputFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            throw Failure("cannot write " + shownPath + ": " + systemReason());
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void OutputFile::rewriteStart(std::string_view bytes) {
    if (lseek(file, 0, SEEK_SET) != 0)
        throw Failure("cannot write " + shownPath + ": " + systemReason());
    write(bytes);
}

void OutputFile::commit() {
    // Some file systems tell only here that the disk is full. Pipes and devices know no fsync.
    const bool flushed = fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS;
    const std::string flushReason = flushed ? "" : systemReason();
    const bool closed = close(std::exchange(file, -1)) == 0;
    if (!flushed || !closed)
        throw Failure("cannot write " + shownPath + ": " + (flushed ? systemReason() : flushReason));
    if (temporaryPath.empty())
        return;
    if (rename(temporaryPath.c_str(), finalPath.c_str()) != 0)
        throw Failure("cannot write " + shownPath + ": " + systemReason());
    forget(temporaryPath);
    temporaryPath.clear();
}
