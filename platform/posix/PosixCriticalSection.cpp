#include "platform/CriticalSections.h"

#include <mutex>

namespace {

class PosixCriticalSection final : public CriticalSection {
public:
    explicit PosixCriticalSection(LockRank wanted) : rank(wanted) {}

    void enter() override {
        mutex.lock();
        lockTaken(rank);
    }

    void leave() override {
        lockReleased(rank);
        mutex.unlock();
    }

private:
    std::recursive_mutex mutex;
    const LockRank rank;
};

} // namespace

std::unique_ptr<CriticalSection> createCriticalSection(LockRank rank) {
    return std::make_unique<PosixCriticalSection>(rank);
}

CriticalSection& processSection() {
    // Never destroyed: an instance that a host forgets may still lock it while the process ends. It needs no memory
    // that the library would leak when it is unloaded.
    alignas(PosixCriticalSection) static unsigned char storage[sizeof(PosixCriticalSection)];
    static PosixCriticalSection& section = *new (storage) PosixCriticalSection(LockRank::processWide);
    return section;
}
