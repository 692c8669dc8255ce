// Marks for code that runs on the audio thread, and the scope in which test builds enforce them.
// Threads: any.
#pragma once

// Stands behind noexcept: void process() noexcept REALTIME;
#if defined(__clang__) && defined(__has_cpp_attribute)
#if __has_cpp_attribute(clang::nonblocking)
#define REALTIME [[clang::nonblocking]]
#endif
#endif
#ifndef REALTIME
#define REALTIME
#endif

#if defined(__has_feature)
#if __has_feature(realtime_sanitizer)
#define ZELK_REALTIME_SANITIZER 1
extern "C" {
void __rtsan_disable() noexcept; // the sanitizer's own pair, which nests
void __rtsan_enable() noexcept;
}
#endif
#endif

#ifdef ZELK_REALTIME_CHECKS
// Weak: a test program that watches the allocator defines them, also for the libraries that it loads; every other
// program leaves them null.
extern "C" {
[[gnu::weak, gnu::visibility("default")]] void zelkRealtimeEnter() noexcept;
[[gnu::weak, gnu::visibility("default")]] void zelkRealtimeLeave() noexcept;
[[gnu::weak, gnu::visibility("default")]] void zelkRealtimePermit(const char* reason) noexcept;
[[gnu::weak, gnu::visibility("default")]] void zelkRealtimeRevoke() noexcept;
}
#endif

// Work that belongs on the audio thread although the compiler cannot see it: a host's callback, a call through a table,
// a vector that has its room already, or what a permit allows. For the compiler alone: the checks at run time still
// hold.
template <typename Work>
decltype(auto) trustedRealtime(Work&& work) noexcept REALTIME {
#if defined(__clang__) && defined(__has_warning)
#if __has_warning("-Wfunction-effects")
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wfunction-effects"
#endif
#endif
    return work();
#if defined(__clang__) && defined(__has_warning)
#if __has_warning("-Wfunction-effects")
#pragma clang diagnostic pop
#endif
#endif
}

// While one lives, this thread neither allocates, frees nor locks. Scopes nest.
class RealtimeScope {
public:
#ifdef ZELK_REALTIME_CHECKS
    RealtimeScope() noexcept REALTIME {
        if (zelkRealtimeEnter != nullptr)
            zelkRealtimeEnter();
    }
    ~RealtimeScope() {
        if (zelkRealtimeLeave != nullptr)
            zelkRealtimeLeave();
    }
#else
    RealtimeScope() noexcept REALTIME {}
    ~RealtimeScope() {}
#endif
    RealtimeScope(const RealtimeScope&) = delete;
    RealtimeScope& operator=(const RealtimeScope&) = delete;
};

// One of the few named exceptions: inside it the rule is lifted. The reason is a literal, so that all can be listed.
class RealtimePermit {
public:
#if defined(ZELK_REALTIME_SANITIZER)
    explicit RealtimePermit(const char*) noexcept REALTIME {
        trustedRealtime([] { __rtsan_disable(); });
    }
    ~RealtimePermit() {
        trustedRealtime([] { __rtsan_enable(); });
    }
#elif defined(ZELK_REALTIME_CHECKS)
    explicit RealtimePermit(const char* reason) noexcept REALTIME {
        if (zelkRealtimePermit != nullptr)
            zelkRealtimePermit(reason);
    }
    ~RealtimePermit() {
        if (zelkRealtimeRevoke != nullptr)
            zelkRealtimeRevoke();
    }
#else
    explicit RealtimePermit(const char*) noexcept REALTIME {}
    ~RealtimePermit() {}
#endif
    RealtimePermit(const RealtimePermit&) = delete;
    RealtimePermit& operator=(const RealtimePermit&) = delete;
};
