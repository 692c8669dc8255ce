// Many instances in one process, each on the widest layout with every band at work: what each takes, and whether all
// go again.
// Threads: main.
#pragma once

#include <cstddef>

struct Crowd {
    double createMs = 0.0;    // each, create_plugin to activate
    double bytes = 0.0;       // each
    double nanoseconds = 0.0; // a frame of one instance, all taking turns block by block
    double bytesLeft = 0.0;   // of all, behind the last
    bool finite = true;

    static Crowd run(const char* libraryPath, std::size_t instances); // in a home folder of its own
};
