// Files as bytes: opening, asking, and replacing one as a whole.
// Threads: any but audio.
#pragma once

#include <cstdint>
#include <ios>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

// A file that cannot be opened gives a stream in the failed state.
std::unique_ptr<std::fstream> openFile(const std::string& path, std::ios::openmode mode);

bool fileExists(const std::string& path) noexcept;              // and is no directory
std::int64_t regularFileSize(const std::string& path) noexcept; // bytes, -1: none, or a device, pipe or directory
std::int64_t fileTimeOf(const std::string& path) noexcept;      // seconds since 1970, -1: none

enum class FileSafety {
    againstOthers,  // other processes, a full disk, the end of this process
    againstCrashes, // of the system too: waits for the disk
};

// All of the new bytes or all of the old file, whatever stops it: they are written beside the file and renamed over it.
// A file that the path links to is replaced where it lies, and keeps its rights.
[[nodiscard]] bool replaceFile(const std::string& path, std::string_view bytes,
                               FileSafety safety = FileSafety::againstCrashes);

[[nodiscard]] bool renameFile(const std::string& from, const std::string& to) noexcept; // replaces
[[nodiscard]] bool removeFile(const std::string& path) noexcept;                        // true also when it is gone

// Reads a regular file that has at most so many bytes. False: it has more, or cannot be read.
[[nodiscard]] bool readFile(const std::string& path, std::int64_t mostBytes, std::string& bytes);
