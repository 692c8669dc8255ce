// zelk-lab: spectra and EQ Match around a plug-in, for zelk-host.
#include "tools/host/Failure.h"
#include "tools/host/System.h"
#include "tools/host/TextTools.h"
#include "tools/lab/LabCommands.h"

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

int main(int argumentCount, char** arguments) {
    try {
        prepareOutput();
        const std::vector<std::string> words = commandLine(argumentCount, arguments);
        int status = 2;
        if (!words.empty() && words[0] == "spectrum")
            status = spectrumCommand({words.begin() + 1, words.end()});
        else if (!words.empty() && words[0] == "match")
            status = matchCommand({words.begin() + 1, words.end()});
        else
            throw Failure("say \"spectrum\" or \"match\"");
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
            throw Failure("cannot write to standard output: " + systemReason());
        return status;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "zelk-host: %s\n", onOneLine(failure.what()).c_str());
        return 2;
    }
}
