// Drives the built zelk-host as a user does: a command line in a folder of its own, what it printed, the files it left.
// Threads: main.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

using Sound = std::vector<std::vector<float>>; // one vector a channel

class HostProgram {
public:
    struct Result {
        int status = -1;
        std::string output;
        std::string errors;
    };

    HostProgram();
    ~HostProgram();
    HostProgram(const HostProgram&) = delete;
    HostProgram& operator=(const HostProgram&) = delete;

    Result run(const std::vector<std::string>& words) const;
    Result runProgram(const std::string& program,
                      const std::vector<std::string>& words) const; // another than zelk-host
    // The same with files limited to so many blocks of 512 bytes: a disk that is full.
    Result runWithFullDisk(const std::vector<std::string>& words, int blocks) const;

    std::string path(const std::string& name) const { return (folder / name).string(); }
    std::vector<std::string> files() const; // sorted names of all that lies in the folder

    std::string writeText(const std::string& name, const std::string& text) const; // gives the path
    std::string writeSound(const std::string& name, const Sound& sound, int sampleRate) const;
    std::string readText(const std::string& name) const;
    Sound readSound(const std::string& name) const; // empty: there is none

private:
    Result runLine(const std::string& line) const;

    std::filesystem::path folder;
};

Sound noise(std::size_t channels, std::size_t frames);
