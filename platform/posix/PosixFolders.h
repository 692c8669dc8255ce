// Further places of this user and of the machine, that other systems have no files for.
// Threads: any but audio. What the environment says is read at each call.
#pragma once

#include <string>

// UTF-8 paths that end in a separator. Empty: this user has no such place.
std::string homeFolder();
std::string userConfigFolder();    // for settings
std::string machineConfigFolder(); // for settings that an administrator gives to all users
