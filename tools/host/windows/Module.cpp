// Dynamic libraries, command line and terminal of Windows.
#include "tools/host/Failure.h"
#include "tools/host/System.h"
#include "tools/host/windows/WideText.h"

#include <cerrno>
#include <cstring>
#include <memory>

#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <windows.h>

#include <shellapi.h>

LoadedModule::LoadedModule(const std::string& path) : handle(LoadLibraryW(wideText(path).c_str())) {
    if (handle == nullptr)
        throw Failure("cannot load " + path + ": " + lastErrorText());
}

LoadedModule::~LoadedModule() {
    FreeLibrary(static_cast<HMODULE>(handle));
}

const void* LoadedModule::symbol(const char* name) const {
    return reinterpret_cast<const void*>(GetProcAddress(static_cast<HMODULE>(handle), name));
}

// What main is given is in the code page of the system, which does not hold every name.
std::vector<std::string> commandLine(int, char**) {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                LocalFree);
    std::vector<std::string> line;
    for (int i = 1; words != nullptr && i < count; ++i)
        line.push_back(utf8Text(words.get()[i]));
    return line;
}

std::string systemReason() {
    return std::strerror(errno);
}

bool errorsGoToTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

void prepareOutput() {
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdout), _O_BINARY); // what is written to a file is the same on every system
}
