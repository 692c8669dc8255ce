// Dynamic libraries, terminal and signals of POSIX systems.
#include "tools/host/Failure.h"
#include "tools/host/System.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>

#include <dlfcn.h>
#include <unistd.h>

LoadedModule::LoadedModule(const std::string& path) : handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle == nullptr) {
        const char* reason = dlerror();
        throw Failure("cannot load " + std::string(reason != nullptr ? reason : path));
    }
}

LoadedModule::~LoadedModule() {
    dlclose(handle);
}

const void* LoadedModule::symbol(const char* name) const {
    return dlsym(handle, name);
}

std::vector<std::string> commandLine(int argumentCount, char** arguments) {
    return {arguments + 1, arguments + argumentCount};
}

int runNeighbour(const std::string& name, const std::vector<std::string>& words) {
    std::error_code error;
    const std::filesystem::path own = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::string path = own.parent_path() / name;
    std::vector<std::string> owned{path};
    owned.insert(owned.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : owned)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(path.c_str(), arguments.data());
    throw Failure("cannot start " + path + ": " + systemReason());
}

std::string systemReason() {
    return std::strerror(errno);
}

bool errorsGoToTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

void prepareOutput() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}
