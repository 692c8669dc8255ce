// The file in which a user's controller map is kept, and the factory map of the library's resources.
// Threads: main.
#pragma once

#include <string>

class ControllerMapping;

class ControllerMapFile {
public:
    explicit ControllerMapFile(const std::string& folder); // empty: there is no place for files, and nothing works

    // False: there is no map of ours in the file, and the table is as it was.
    [[nodiscard]] bool load(ControllerMapping& mapping) const;
    // The old file stays when the new one cannot be written as a whole.
    [[nodiscard]] bool save(ControllerMapping& mapping) const;
    static void loadFactory(ControllerMapping& mapping); // empty unless the library carries one

private:
    std::string path; // empty: none
};
