// The CLAP 1.1.10 binary interface, declared by ourselves: published names, nothing but layout, ids and values.
// For host/ and for tools that load plug-ins. Callbacks are noexcept here: no exception crosses the boundary.
// An argument belongs to the caller and is good during the call only, unless a comment says otherwise.
#pragma once

#include "host/clap/ClapBase.h"         // IWYU pragma: export
#include "host/clap/ClapEvents.h"       // IWYU pragma: export
#include "host/clap/ClapFeatures.h"     // IWYU pragma: export
#include "host/clap/ClapHostServices.h" // IWYU pragma: export
#include "host/clap/ClapParams.h"       // IWYU pragma: export
#include "host/clap/ClapPlugin.h"       // IWYU pragma: export
#include "host/clap/ClapPorts.h"        // IWYU pragma: export
#include "host/clap/ClapPresets.h"      // IWYU pragma: export
#include "host/clap/ClapWindow.h"       // IWYU pragma: export

static_assert(sizeof(void*) == 8 && sizeof(bool) == 1 && alignof(double) == 8, "64-bit systems only");
