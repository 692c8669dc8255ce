// An instance's state as the host keeps it: bytes in and out.
// Threads: main.
#pragma once

#include "host/clap/Clap.h"

#include <string>
#include <string_view>

extern const clap_plugin_state clapState;

// The whole text, in as many calls as the host's stream wants.
[[nodiscard]] bool writeClapStream(const clap_ostream& stream, std::string_view bytes);

// All that comes. False: the stream failed, or gives more than any state of ours could hold.
[[nodiscard]] bool readClapStream(const clap_istream& stream, std::string& bytes);
