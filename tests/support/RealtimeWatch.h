// Watches the thread that is inside a RealtimeScope: memory and locks are forbidden there, in the program and in every
// library that it loads. The first offence prints its stack and aborts, unless a Count is alive on that thread.
// Threads: any; each is watched by itself.
#pragma once

// Makes the linker take the watch, and readies what a stack trace needs. False: this build has no watch.
bool startRealtimeWatch() noexcept; // [main] before the first test

#ifdef ZELK_REALTIME_WATCH

class RealtimeWatch {
public:
    struct Offences {
        int allocations = 0;
        int frees = 0;
        int locks = 0; // and waits
    };

    // While it lives, this thread's offences are counted and not punished.
    class Count {
    public:
        Count() noexcept;
        ~Count();
        Count(const Count&) = delete;
        Count& operator=(const Count&) = delete;

        Offences offences() const noexcept; // so far
    };

    static int scopesEntered() noexcept; // [any] by this thread, ever: proof that the scope under test is watched
};

#endif
