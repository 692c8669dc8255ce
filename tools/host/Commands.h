// The subcommands. Each stands in a file of its own, takes the words behind its name and returns the exit status;
// what goes wrong is thrown as Failure.
// Threads: main.
#pragma once

#include <string>
#include <vector>

int infoCommand(const std::vector<std::string>& words);
int presetsCommand(const std::vector<std::string>& words);
int renderCommand(const std::vector<std::string>& words);
int responseCommand(const std::vector<std::string>& words);

// These two are zelk-lab's, which stands beside this program and takes it over.
int spectrumCommand(const std::vector<std::string>& words);
int matchCommand(const std::vector<std::string>& words);
