// Plays a host that has no habits: one instance after the other, in every layout, at every rate, with its audio on a
// thread of its own and everything that a host may ask meanwhile. All of it follows from a seed.
// Threads: main; it starts the audio thread itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class Soak {
public:
    struct Plan {
        double seconds = 60.0; // of audio
        std::uint32_t seed = 1;
        bool twoThreads = true; // else the main thread's work comes between blocks: the same at every run
    };

    struct Result {
        double seconds = 0.0;
        std::size_t instances = 0;
        std::size_t activations = 0;
        std::uint64_t blocks = 0;
        std::uint64_t events = 0;
        std::size_t statesLoaded = 0;
        std::size_t presetsLoaded = 0;
        std::string fault; // empty: none
    };

    static Result run(const char* libraryPath, const Plan& plan); // in a home folder of its own
};
