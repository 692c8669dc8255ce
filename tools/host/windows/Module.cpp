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

namespace {

// As CommandLineToArgvW takes it apart again.
std::wstring quoted(const std::wstring& word) {
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : word) {
        if (c == L'"')
            text.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, L'\\') + L"\"";
}

} // namespace

int runNeighbour(const std::string& name, const std::vector<std::string>& words) {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    path.resize(path.find_last_of(L"\\/") + 1);
    path += wideText(name) + L".exe";
    std::wstring line = quoted(path);
    for (const std::string& word : words)
        line += L" " + quoted(wideText(word));
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION made{};
    if (!CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made))
        throw Failure("cannot start " + utf8Text(path) + ": " + lastErrorText());
    WaitForSingleObject(made.hProcess, INFINITE);
    DWORD status = 2;
    GetExitCodeProcess(made.hProcess, &status);
    CloseHandle(made.hThread);
    CloseHandle(made.hProcess);
    return static_cast<int>(status);
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
