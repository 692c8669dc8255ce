#include "platform/CriticalSections.h"
#include "platform/windows/Windows.h"

#include <new>

namespace {

class WindowsCriticalSection final : public CriticalSection {
public:
    explicit WindowsCriticalSection(LockRank wanted) : rank(wanted) { InitializeCriticalSection(&section); }
    ~WindowsCriticalSection() override { DeleteCriticalSection(&section); }
    WindowsCriticalSection(const WindowsCriticalSection&) = delete;
    WindowsCriticalSection& operator=(const WindowsCriticalSection&) = delete;

    void enter() override {
        EnterCriticalSection(&section);
        lockTaken(rank);
    }

    void leave() override {
        lockReleased(rank);
        LeaveCriticalSection(&section);
    }

private:
    CRITICAL_SECTION section;
    const LockRank rank;
};

} // namespace

std::unique_ptr<CriticalSection> createCriticalSection(LockRank rank) {
    return std::make_unique<WindowsCriticalSection>(rank);
}

CriticalSection& processSection() {
    // Never destroyed: an instance that a host forgets may still lock it while the process ends. It needs no memory
    // that the library would leak when it is unloaded.
    alignas(WindowsCriticalSection) static unsigned char storage[sizeof(WindowsCriticalSection)];
    static WindowsCriticalSection& section = *new (storage) WindowsCriticalSection(LockRank::processWide);
    return section;
}
