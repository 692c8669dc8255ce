// The commands of the lab, as those of zelk-host: the words behind the name, the exit status, Failure when it goes
// wrong. Threads: main.
#pragma once

#include <string>
#include <vector>

int spectrumCommand(const std::vector<std::string>& words);
int matchCommand(const std::vector<std::string>& words);
