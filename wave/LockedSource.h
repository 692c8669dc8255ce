// Something that is read between lock and unlock: while it is locked, what it offers stays as it is.
// Threads: one reader's, the same at all times.
#pragma once

class LockedSource {
public:
    // Holds the source for a scope.
    class Lock {
    public:
        explicit Lock(LockedSource& wanted) : source(wanted) { source.lock(); }
        ~Lock() { source.unlock(); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        LockedSource& source;
    };

    virtual ~LockedSource() = default;

    // They nest by a counter that is not atomic. The outermost pair acts.
    virtual void lock() = 0;
    virtual void unlock() = 0;
};
