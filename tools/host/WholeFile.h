// The bytes of a file that is read at once.
// Threads: main.
#pragma once

#include <string>

std::string wholeFile(const std::string& path); // throws Failure
