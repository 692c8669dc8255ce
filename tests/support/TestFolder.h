// A folder of the test's own, gone with all its content at the end.
// Threads: the one that made it.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <string_view>

class TestFolder {
public:
    TestFolder() : root((std::filesystem::temp_directory_path() / "zelk-XXXXXX").string()) {
        if (mkdtemp(root.data()) == nullptr)
            throw std::runtime_error("no folder for the test");
    }
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::string path(std::string_view inside) const { return root + "/" + std::string(inside); }

private:
    std::string root;
};
