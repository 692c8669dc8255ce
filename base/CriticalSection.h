// Locks: the interface that the platform fills, a scoped guard, and a base for objects that own one.
// Threads: any but audio.
#pragma once

#include <memory>
#include <utility>

// Reentrant on one thread.
class CriticalSection {
public:
    virtual ~CriticalSection() = default;
    virtual void enter() = 0;
    virtual void leave() = 0;
};

class ScopedLock {
public:
    explicit ScopedLock(CriticalSection& guarded) : section(guarded) { section.enter(); }
    ~ScopedLock() { section.leave(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

private:
    CriticalSection& section;
};

class LockedObject {
public:
    void lock() { section->enter(); }
    void unlock() { section->leave(); }

protected:
    explicit LockedObject(std::unique_ptr<CriticalSection> own) : section(std::move(own)) {}
    LockedObject(const LockedObject&) = delete;
    LockedObject& operator=(const LockedObject&) = delete;
    ~LockedObject() = default;

private:
    std::unique_ptr<CriticalSection> section;
};
