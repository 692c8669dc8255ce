// zelk-host spectrum, zelk-host match: they need classes of the plug-in, which this program does not link.
#include "tools/host/Commands.h"
#include "tools/host/System.h"

namespace {

int handOver(const char* command, std::vector<std::string> words) {
    words.insert(words.begin(), command);
    return runNeighbour("zelk-lab", words);
}

} // namespace

int spectrumCommand(const std::vector<std::string>& words) {
    return handOver("spectrum", words);
}

int matchCommand(const std::vector<std::string>& words) {
    return handOver("match", words);
}
