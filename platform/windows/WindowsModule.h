// The module that holds this code: the library in a host, or a program that links it.
// Threads: any but audio.
#pragma once

#include "platform/windows/Windows.h"

// As found by findOwnModule; before that, or in a program, what holds this code.
HMODULE ownModule() noexcept;
