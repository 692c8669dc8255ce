#include "platform/Files.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t rightsOfNewFile = 0666; // less the user's mask

// A name that no other thread and no other process uses for the same file.
std::string temporaryNameFor(const std::string& path) {
    static std::atomic<unsigned> count{0};
    return path + "." + std::to_string(getpid()) + "-" + std::to_string(count.fetch_add(1)) + ".tmp";
}

bool writeAll(int file, std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::string withoutLinks(const std::string& path) {
    char* const resolved = realpath(path.c_str(), nullptr);
    std::string result = resolved != nullptr ? resolved : path;
    std::free(resolved);
    return result;
}

} // namespace

std::unique_ptr<std::fstream> openFile(const std::string& path, std::ios::openmode mode) {
    return std::make_unique<std::fstream>(path, mode);
}

bool fileExists(const std::string& path) noexcept {
    struct stat facts;
    return stat(path.c_str(), &facts) == 0 && !S_ISDIR(facts.st_mode);
}

std::int64_t regularFileSize(const std::string& path) noexcept {
    struct stat facts;
    return stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) ? std::int64_t{facts.st_size} : -1;
}

std::int64_t fileTimeOf(const std::string& path) noexcept {
    struct stat facts;
    return stat(path.c_str(), &facts) == 0 ? std::int64_t{facts.st_mtime} : -1;
}

bool replaceFile(const std::string& path, std::string_view bytes, FileSafety safety) {
    const std::string target = withoutLinks(path);
    const std::string temporary = temporaryNameFor(target);
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, rightsOfNewFile);
    if (file < 0)
        return false;
    bool whole = writeAll(file, bytes);
    struct stat former;
    if (whole && stat(target.c_str(), &former) == 0)
        static_cast<void>(fchmod(file, former.st_mode & 07777)); // not ours to refuse: the content is what counts
    // Without this a crash of the system could leave the new name with no content behind it.
    whole = whole && (safety == FileSafety::againstOthers || fsync(file) == 0);
    whole = close(file) == 0 && whole;
    whole = whole && rename(temporary.c_str(), target.c_str()) == 0;
    if (!whole)
        unlink(temporary.c_str());
    return whole;
}

bool renameFile(const std::string& from, const std::string& to) noexcept {
    return rename(from.c_str(), to.c_str()) == 0;
}

bool removeFile(const std::string& path) noexcept {
    return unlink(path.c_str()) == 0 || errno == ENOENT;
}
