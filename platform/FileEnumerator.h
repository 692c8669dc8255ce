// Walks over the entries of one folder, in no order.
// Threads: the one that made it.
#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

class FileEnumerator {
public:
    enum class Filter { directories, files };

    FileEnumerator(const FileEnumerator&) = delete;
    FileEnumerator& operator=(const FileEnumerator&) = delete;
    virtual ~FileEnumerator() = default;

    virtual bool next() = 0; // false: no more. "." and ".." never come

    const std::string& name() const noexcept { return entryName; }    // the exact bytes
    std::int64_t fileTime() const noexcept { return entryTime; }      // of a file: seconds since 1970
    std::string_view ending() const noexcept { return wantedEnding; } // without regard to case; empty: all

protected:
    explicit FileEnumerator(std::string_view ending) : wantedEnding(ending) {}

    bool hasEnding(std::string_view candidate) const noexcept;

    std::string entryName;
    std::int64_t entryTime = 0;

private:
    const std::string wantedEnding;
};

// Links are followed. A folder that cannot be read has no entries.
std::unique_ptr<FileEnumerator> enumerateFolder(const std::string& folder, FileEnumerator::Filter filter,
                                                std::string_view ending = {});

// Tells one folder from another, whatever links lead there.
struct FolderIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    auto operator<=>(const FolderIdentity&) const = default;
};
[[nodiscard]] bool identifyFolder(const std::string& path, FolderIdentity& identity) noexcept;
