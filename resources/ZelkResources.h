// The data that the library carries: the archive of the factory presets and the maps of older preset versions.
// Threads: any.
#pragma once

#include "platform/Resources.h"

#include <span>

std::span<const EmbeddedResource> zelkResources();
