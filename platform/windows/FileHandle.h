// An open file of the system, closed when it goes.
// Threads: the one that made it.
#pragma once

#include "platform/windows/Windows.h"

class FileHandle {
public:
    static constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

    explicit FileHandle(HANDLE opened) noexcept : handle(opened) {}
    ~FileHandle() { close(); }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    void close() noexcept {
        if (*this)
            CloseHandle(handle);
        handle = INVALID_HANDLE_VALUE;
    }

    explicit operator bool() const noexcept { return handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const noexcept { return handle; }

private:
    HANDLE handle;
};
