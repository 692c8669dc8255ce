// A folder of the test's own, gone with all its content at the end.
// Threads: the one that made it.
#pragma once

#include "tests/support/TestSystem.h"

#include <filesystem>
#include <string>
#include <string_view>

class TestFolder {
public:
    TestFolder() : root(makeTestFolder("zelk")) {}
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::string path(std::string_view inside) const { return root + nativePath("/") + nativePath(inside); }

private:
    std::string root;
};
