// Keeps exceptions on our side of the host's callbacks.
// Threads: any.
#pragma once

// The work's result, or the fallback when it throws.
template <typename Result, typename Work>
Result clapGuard(Result fallback, Work&& work) noexcept {
    try {
        return work();
    } catch (...) {
        return fallback;
    }
}
