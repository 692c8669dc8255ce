// Where files of this user belong, and folders themselves.
// Threads: any but audio. What the environment says is read at each call.
#pragma once

#include "platform/Paths.h"

#include <string>

// UTF-8 paths that end in a separator. Empty: this user has no such place, and whoever asked goes without files.
std::string userDataFolder();  // for files that a program keeps for itself
std::string documentsFolder(); // for files that the user is meant to see

[[nodiscard]] bool directoryExists(const std::string& path);
[[nodiscard]] bool createDirectories(const std::string& path); // with its parents; false: it does not exist afterwards
