// A home folder of the test's own, empty at first, and the environment that leads there. Both go with the object.
// Threads: main, while no other thread reads the environment.
#pragma once

#include "tests/support/TestSystem.h"

#include <string>
#include <string_view>

class TemporaryHome {
public:
    TemporaryHome();
    ~TemporaryHome();
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;

    // With the system's separators, however the name has them. Without a name it ends in one.
    std::string path(std::string_view inside = {}) const { return folder + nativePath(inside); }
    void write(const std::string& file, const std::string& content) const; // below the home, with its folders
    std::string read(const std::string& file) const;                       // empty when there is none

private:
    const std::string folder;
    const HomeRedirection redirection;
};
