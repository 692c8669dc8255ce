// What this product is, told to the framework.
// Threads: main.
#pragma once

#include "framework/GenericPluginInfo.h"

void fillZelkInfo(GenericPluginInfo& info);
