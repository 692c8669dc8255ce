#include "platform/FileEnumerator.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

class PosixFileEnumerator final : public FileEnumerator {
public:
    PosixFileEnumerator(const std::string& folder, Filter wanted, std::string_view ending)
        : FileEnumerator(ending), handle(opendir(folder.c_str())), filter(wanted) {}
    ~PosixFileEnumerator() override {
        if (handle != nullptr)
            closedir(handle);
    }

    bool next() override {
        while (const dirent* const entry = handle != nullptr ? readdir(handle) : nullptr) {
            const std::string_view found = entry->d_name;
            if (found == "." || found == ".." || !hasEnding(found) || !isWanted(*entry))
                continue;
            entryName = found;
            return true;
        }
        return false;
    }

private:
    // The entry's own kind settles most without a second question to the file system.
    bool isWanted(const dirent& entry) {
        const bool wantsFolders = filter == Filter::directories;
        if (wantsFolders && entry.d_type == DT_DIR)
            return true;
        if (wantsFolders ? entry.d_type == DT_REG : entry.d_type == DT_DIR)
            return false;
        struct stat facts;
        if (fstatat(dirfd(handle), entry.d_name, &facts, 0) != 0)
            return false;
        entryTime = static_cast<std::int64_t>(facts.st_mtime);
        return wantsFolders ? S_ISDIR(facts.st_mode) : S_ISREG(facts.st_mode);
    }

    DIR* handle; // null: cannot be read
    const Filter filter;
};

} // namespace

std::unique_ptr<FileEnumerator> enumerateFolder(const std::string& folder, FileEnumerator::Filter filter,
                                                std::string_view ending) {
    return std::make_unique<PosixFileEnumerator>(folder, filter, ending);
}

bool identifyFolder(const std::string& path, FolderIdentity& identity) noexcept {
    struct stat facts;
    if (stat(path.c_str(), &facts) != 0 || !S_ISDIR(facts.st_mode))
        return false;
    identity = {static_cast<std::uint64_t>(facts.st_dev), static_cast<std::uint64_t>(facts.st_ino)};
    return true;
}
