// What tests need of the system beyond platform/; the bodies stand in posix/ and windows/.
// Threads: main.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

// A new and empty folder in the system's place for what is temporary; no separator at the end.
std::string makeTestFolder(std::string_view purpose);

std::string nativePath(std::string_view path); // "/" becomes the system's separator

// While it lives, the questions for folders and settings of the user lead below this home, and to the same names there
// on every system: ".local/share" and "Documents".
class HomeRedirection {
public:
    explicit HomeRedirection(const std::string& home);
    ~HomeRedirection();
    HomeRedirection(const HomeRedirection&) = delete;
    HomeRedirection& operator=(const HomeRedirection&) = delete;

private:
    struct Former;
    std::unique_ptr<Former> former;
};

class TestModule {
public:
    explicit TestModule(const char* path); // throws std::runtime_error with the loader's reason
    ~TestModule();
    TestModule(const TestModule&) = delete;
    TestModule& operator=(const TestModule&) = delete;

    const void* symbol(const char* name) const; // null: not exported

private:
    void* handle;
};

// While it lives, no more than these bytes of this file can be written anew, whoever the user is: a disk that is full,
// or where a system cannot play that, a file that is protected.
class SavingFails {
public:
    SavingFails(const std::string& file, std::size_t bytes);
    ~SavingFails();
    SavingFails(const SavingFails&) = delete;
    SavingFails& operator=(const SavingFails&) = delete;

private:
    struct Former;
    std::unique_ptr<Former> former;
};

// False: this system, or this user, has no such thing.
[[nodiscard]] bool makePipe(const std::string& path);
[[nodiscard]] bool linkFolder(const std::string& folder, const std::string& link);

extern const bool fileNamesAreBytes; // else they are UTF-16
