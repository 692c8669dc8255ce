// Stands before the C library: the program's own malloc, pthread_mutex_lock and so on are found first by everything
// that the program loads. They look whether this thread is inside a scope, and hand the work on.
#include "tests/support/RealtimeWatch.h"

#ifndef ZELK_REALTIME_WATCH

bool startRealtimeWatch() noexcept {
    return false;
}

#else

#include "base/Realtime.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <execinfo.h>
#include <pthread.h>
#include <semaphore.h>
#include <time.h>
#include <unistd.h>

namespace {

struct Watched {
    int scopes = 0;
    int permits = 0;
    int entered = 0;
    int counts = 0;
    RealtimeWatch::Offences offences;
};

// In the program itself, so that reading it never allocates.
constinit thread_local Watched watched;

void write(const char* text) noexcept {
    // Nothing better is left to do when standard error takes nothing.
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, std::strlen(text));
}

void note(int RealtimeWatch::Offences::*kind, const char* what) noexcept {
    Watched& thread = watched;
    if (thread.scopes == 0 || thread.permits > 0)
        return;
    if (thread.counts > 0) {
        ++(thread.offences.*kind);
        return;
    }
    thread.scopes = 0; // what follows is not watched
    write("\nOn the audio thread: ");
    write(what);
    write("\n");
    std::array<void*, 64> frames{};
    backtrace_symbols_fd(frames.data(), backtrace(frames.data(), static_cast<int>(frames.size())), STDERR_FILENO);
    std::abort();
}

void allocated(const char* what) noexcept {
    note(&RealtimeWatch::Offences::allocations, what);
}

void waited(const char* what) noexcept {
    note(&RealtimeWatch::Offences::locks, what);
}

} // namespace

bool startRealtimeWatch() noexcept {
    std::array<void*, 4> frames{};
    backtrace(frames.data(), static_cast<int>(frames.size())); // the first one loads the unwinder
    return true;
}

RealtimeWatch::Count::Count() noexcept {
    watched.offences = {};
    ++watched.counts;
}

RealtimeWatch::Count::~Count() {
    --watched.counts;
}

RealtimeWatch::Offences RealtimeWatch::Count::offences() const noexcept {
    return watched.offences;
}

int RealtimeWatch::scopesEntered() noexcept {
    return watched.entered;
}

#pragma GCC visibility push(default)

extern "C" {

void zelkRealtimeEnter() noexcept {
    ++watched.scopes;
    ++watched.entered;
}

void zelkRealtimeLeave() noexcept {
    --watched.scopes;
}

void zelkRealtimePermit(const char*) noexcept {
    ++watched.permits;
}

void zelkRealtimeRevoke() noexcept {
    --watched.permits;
}

// Memory. The C library's own entries behind it are its contract with allocators that wrap it.
void* __libc_malloc(std::size_t size) noexcept;
void* __libc_calloc(std::size_t count, std::size_t size) noexcept;
void* __libc_realloc(void* memory, std::size_t size) noexcept;
void* __libc_memalign(std::size_t alignment, std::size_t size) noexcept;
void __libc_free(void* memory) noexcept;

void* malloc(std::size_t size) noexcept {
    allocated("malloc");
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    allocated("calloc");
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) noexcept {
    allocated("realloc");
    return __libc_realloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    allocated("aligned_alloc");
    return __libc_memalign(alignment, size);
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    allocated("memalign");
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
    allocated("posix_memalign");
    if (alignment % sizeof(void*) != 0 || (alignment & (alignment - 1)) != 0 || alignment == 0)
        return EINVAL;
    void* const found = __libc_memalign(alignment, size);
    if (found == nullptr)
        return ENOMEM;
    *memory = found;
    return 0;
}

void free(void* memory) noexcept {
    note(&RealtimeWatch::Offences::frees, "free");
    __libc_free(memory);
}

// Locks and waits, and what wakes others. The C library's function is found on the first call; two threads may find it
// at once, and find the same.
#define ZELK_WATCHED_CALL(name, parameters, arguments)                                                                 \
    int name parameters noexcept(noexcept(name arguments)) {                                                           \
        using Function = int(*) parameters;                                                                            \
        static constinit std::atomic<Function> behind{nullptr};                                                        \
        waited(#name);                                                                                                 \
        if (behind.load(std::memory_order_relaxed) == nullptr)                                                         \
            behind.store(reinterpret_cast<Function>(dlsym(RTLD_NEXT, #name)), std::memory_order_relaxed);              \
        return behind.load(std::memory_order_relaxed) arguments;                                                       \
    }

ZELK_WATCHED_CALL(pthread_mutex_lock, (pthread_mutex_t * mutex), (mutex))
ZELK_WATCHED_CALL(pthread_mutex_trylock, (pthread_mutex_t * mutex), (mutex))
ZELK_WATCHED_CALL(pthread_mutex_unlock, (pthread_mutex_t * mutex), (mutex))
ZELK_WATCHED_CALL(pthread_rwlock_rdlock, (pthread_rwlock_t * lock), (lock))
ZELK_WATCHED_CALL(pthread_rwlock_wrlock, (pthread_rwlock_t * lock), (lock))
ZELK_WATCHED_CALL(pthread_cond_signal, (pthread_cond_t * condition), (condition))
ZELK_WATCHED_CALL(pthread_cond_broadcast, (pthread_cond_t * condition), (condition))
ZELK_WATCHED_CALL(pthread_join, (pthread_t thread, void** result), (thread, result))
ZELK_WATCHED_CALL(sem_wait, (sem_t * semaphore), (semaphore))
ZELK_WATCHED_CALL(sem_post, (sem_t * semaphore), (semaphore))
ZELK_WATCHED_CALL(nanosleep, (const timespec* time, timespec* left), (time, left))
#undef ZELK_WATCHED_CALL

} // extern "C"

#pragma GCC visibility pop

#endif
