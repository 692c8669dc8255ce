#include "tests/tools/HostProgram.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <sndfile.h>
#include <stdexcept>
#include <sys/wait.h>

namespace {

std::string quoted(const std::string& word) {
    std::string text = "'";
    for (const char c : word) {
        if (c == '\'')
            text.append("'\\'");
        text += c;
    }
    return text.append("'");
}

std::string lineOf(const std::vector<std::string>& words, const std::string& program = ZELK_HOST_PROGRAM) {
    std::string line = quoted(program);
    for (const std::string& word : words)
        line.append(" ").append(quoted(word));
    return line;
}

} // namespace

HostProgram::HostProgram() {
    std::string name = (std::filesystem::temp_directory_path() / "zelk-host-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    folder = name;
}

HostProgram::~HostProgram() {
    std::error_code error;
    std::filesystem::remove_all(folder, error);
}

HostProgram::Result HostProgram::run(const std::vector<std::string>& words) const {
    return runLine(lineOf(words));
}

HostProgram::Result HostProgram::runProgram(const std::string& program, const std::vector<std::string>& words) const {
    return runLine(lineOf(words, program));
}

HostProgram::Result HostProgram::runWithFullDisk(const std::vector<std::string>& words, int blocks) const {
    return runLine("ulimit -f " + std::to_string(blocks) + "; " + lineOf(words));
}

HostProgram::Result HostProgram::runLine(const std::string& line) const {
    // Beside the folder, so that only what the program left is counted.
    const std::string out = folder.string() + ".out";
    const std::string errors = folder.string() + ".err";
    const int status = std::system(("(" + line + ") </dev/null >" + out + " 2>" + errors).c_str());
    Result result;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    const auto take = [](const std::string& from) {
        std::ifstream file(from);
        std::string text{std::istreambuf_iterator<char>(file), {}};
        std::filesystem::remove(from);
        return text;
    };
    result.output = take(out);
    result.errors = take(errors);
    return result;
}

std::vector<std::string> HostProgram::files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string HostProgram::writeText(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

std::string HostProgram::readText(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string HostProgram::writeSound(const std::string& name, const Sound& sound, int sampleRate) const {
    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = static_cast<int>(sound.size());
    info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    std::vector<float> interleaved;
    for (std::size_t frame = 0; frame < sound.front().size(); ++frame)
        for (const std::vector<float>& channel : sound)
            interleaved.push_back(channel[frame]);
    SNDFILE* const file = sf_open(path(name).c_str(), SFM_WRITE, &info);
    const auto count = static_cast<sf_count_t>(sound.front().size());
    if (file == nullptr || sf_writef_float(file, interleaved.data(), count) != count || sf_close(file) != 0)
        throw std::runtime_error("cannot write " + name);
    return path(name);
}

Sound HostProgram::readSound(const std::string& name) const {
    SF_INFO info{};
    SNDFILE* const file = sf_open(path(name).c_str(), SFM_READ, &info);
    if (file == nullptr)
        return {};
    std::vector<float> interleaved(static_cast<std::size_t>(info.frames * info.channels));
    sf_readf_float(file, interleaved.data(), info.frames);
    sf_close(file);
    Sound sound(static_cast<std::size_t>(info.channels));
    for (std::size_t i = 0; i < interleaved.size(); ++i)
        sound[i % sound.size()].push_back(interleaved[i]);
    return sound;
}

Sound noise(std::size_t channels, std::size_t frames) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> level(-0.5f, 0.5f);
    Sound sound(channels, std::vector<float>(frames));
    for (auto& channel : sound)
        std::generate(channel.begin(), channel.end(), [&] { return level(random); });
    return sound;
}
