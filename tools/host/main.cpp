// zelk-host: a small CLAP host for the command line.
#include "tools/host/Commands.h"
#include "tools/host/Failure.h"
#include "tools/host/System.h"
#include "tools/host/TextTools.h"

#include <array>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

struct Command {
    const char* name;
    const char* summary;
    int (*run)(const std::vector<std::string>& words);
};

constexpr std::array<Command, 6> commands{{
    {"info", "what a plug-in is and offers: ports, parameters, latency", infoCommand},
    {"presets", "list the presets that a plug-in tells hosts of", presetsCommand},
    {"render", "send a sound file through a plug-in", renderCommand},
    {"response", "measure magnitude and phase of a plug-in", responseCommand},
    {"spectrum", "draw what the analyzer of Zelk shows around a plug-in", spectrumCommand},
    {"match", "find the bands of Zelk that make one recording sound like another", matchCommand},
}};

void printHelp() {
    std::puts("zelk-host: a small CLAP host for the command line\n\nzelk-host COMMAND FILE.clap ...\n");
    for (const Command& command : commands)
        std::printf("  %-10s %s\n", command.name, command.summary);
    std::puts("\n\"zelk-host COMMAND --help\" tells the options of one; --version the version.\n"
              "Exit status: 0 done, 1 the plug-in broke a rule (with --strict), 2 it could not be done.");
}

int run(const std::vector<std::string>& words) {
    if (words.empty())
        throw Failure("say what to do; see \"zelk-host --help\"");
    if (words[0] == "--help" || words[0] == "-h") {
        printHelp();
        return 0;
    }
    if (words[0] == "--version") {
        std::puts("zelk-host " ZELK_HOST_VERSION " (CLAP 1.1.10)");
        return 0;
    }
    std::vector<std::string> names;
    for (const Command& command : commands) {
        if (words[0] == command.name)
            return command.run({words.begin() + 1, words.end()});
        names.emplace_back(command.name);
    }
    throw Failure("there is no command \"" + words[0] + "\"" + suggestion(words[0], names));
}

} // namespace

int main(int argumentCount, char** arguments) {
    int status = 2;
    try {
        prepareOutput();
        status = run(commandLine(argumentCount, arguments));
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
            throw Failure("cannot write to standard output: " + systemReason());
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "zelk-host: %s\n", onOneLine(failure.what()).c_str());
        status = 2;
    }
    return status;
}
