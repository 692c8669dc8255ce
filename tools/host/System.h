// The few operating-system calls of the tool; their bodies stand in posix/ and windows/.
// Threads: main.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// A dynamic library that was opened by path; closed when it dies.
class LoadedModule {
public:
    explicit LoadedModule(const std::string& path); // throws Failure with the loader's reason
    ~LoadedModule();
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    const void* symbol(const char* name) const; // null: not exported

private:
    void* handle;
};

// A file that appears under its name only when it is complete: it is written beside its place and renamed by commit.
// Until then the old file stays; without commit, or on an interrupt, nothing is left behind. Devices and pipes are
// written directly.
class OutputFile {
public:
    explicit OutputFile(std::string wantedPath); // throws Failure
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    int descriptor() const { return file; }
    const std::string& path() const { return shownPath; }

    void write(std::string_view bytes);        // throws Failure
    void rewriteStart(std::string_view bytes); // throws Failure; over the first bytes, and last before commit
    void commit();                             // throws Failure; flushes to the disk, then takes the name

private:
    std::string shownPath;     // as the user gave it
    std::string finalPath;     // links followed
    std::string temporaryPath; // empty: written directly
    int file = -1;
};

// The words behind the program's name, in UTF-8.
std::vector<std::string> commandLine(int argumentCount, char** arguments);

// Runs the program of that name beside this one with these words, in place of this one where the system can. Gives its
// exit status. Throws Failure when there is none.
int runNeighbour(const std::string& name, const std::vector<std::string>& words);

// The reason of the last failed call of the system, as text.
std::string systemReason();

bool errorsGoToTerminal();

// A closed pipe or a file at its size limit is an error of the write, not the end of the program. Text goes out as the
// bytes that it is.
void prepareOutput();
