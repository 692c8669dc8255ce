// A home folder of the test's own, empty at first, and the environment that leads there. Both go with the object.
// Threads: main, while no other thread reads the environment.
#pragma once

#include <map>
#include <optional>
#include <string>

class TemporaryHome {
public:
    TemporaryHome();
    ~TemporaryHome();
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;

    const std::string& path() const noexcept { return folder; }                         // ends in a separator
    void setVariable(const std::string& name, const std::optional<std::string>& value); // nothing: unset
    void write(const std::string& file, const std::string& content) const; // below the home, with its folders
    std::string read(const std::string& file) const;                       // empty when there is none

private:
    std::string folder;
    std::map<std::string, std::optional<std::string>> before; // what the variables held
};
