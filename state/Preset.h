// One preset file, as the tree of presets knows it.
// Threads: a plain record.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct Preset {
    std::string name; // of the file, without folder and extension; always valid UTF-8
    std::string path; // the exact bytes
    std::int64_t fileTime = 0;
    std::string programText; // "(0/5) Name"
    std::int32_t bank = -1;  // until numbered
    std::int32_t program = 0;

    // Filled by the preset cache only.
    std::string author;
    std::string description;
    std::vector<std::string> tags;
};

class PresetListener {
public:
    virtual void presetChosen(const Preset& preset) = 0; // lives until the next scan

protected:
    ~PresetListener() = default;
};
