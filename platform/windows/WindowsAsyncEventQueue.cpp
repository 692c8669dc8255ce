#include "platform/windows/WindowsAsyncEventQueue.h"

#include "platform/AsyncEventQueues.h"
#include "platform/CriticalSections.h"
#include "platform/windows/WindowsModule.h"

namespace {

constexpr wchar_t className[] = L"TV_QueueWindow";
constexpr UINT eventMessage = WM_APP; // wParam: the id, lParam: the value

int classUsers = 0;             // guarded by processSection
HINSTANCE classOwner = nullptr; // likewise

} // namespace

std::unique_ptr<AsyncEventQueue> createAsyncEventQueue() {
    return std::make_unique<WindowsAsyncEventQueue>();
}

bool WindowsAsyncEventQueue::registerClass() noexcept {
    const ScopedLock lock(processSection());
    if (classUsers == 0) {
        classOwner = ownModule();
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.lpfnWndProc = handleMessage;
        description.hInstance = classOwner;
        description.lpszClassName = className;
        if (RegisterClassExW(&description) == 0)
            return false;
    }
    ++classUsers;
    return true;
}

// A class that outlived the library would send messages to where its code was.
void WindowsAsyncEventQueue::unregisterClass() noexcept {
    const ScopedLock lock(processSection());
    if (--classUsers == 0)
        UnregisterClassW(className, classOwner);
}

WindowsAsyncEventQueue::WindowsAsyncEventQueue() {
    if (!registerClass())
        return;
    window = CreateWindowExW(0, className, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, classOwner, nullptr);
    if (window == nullptr)
        unregisterClass();
    else
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

WindowsAsyncEventQueue::~WindowsAsyncEventQueue() {
    if (window == nullptr)
        return;
    DestroyWindow(window); // what is still in its queue goes with it
    unregisterClass();
}

bool WindowsAsyncEventQueue::post(std::int32_t id, std::intptr_t value) {
    return postRealtime(id, value);
}

bool WindowsAsyncEventQueue::postRealtime(std::int32_t id, std::intptr_t value) noexcept REALTIME {
    const bool posted = trustedRealtime([&] {
        const auto unsignedId = static_cast<WPARAM>(static_cast<std::uint32_t>(id));
        return window != nullptr && PostMessageW(window, eventMessage, unsignedId, value) != 0;
    });
    if (!posted)
        return false;
    postedCount.fetch_add(1);
    if (Carrier* const bound = carrier.load(); bound != nullptr)
        bound->requestDrain();
    return true;
}

void WindowsAsyncEventQueue::bindCarrier(Carrier* wanted) {
    carrier.store(wanted);
    if (wanted != nullptr && postedCount.load() != deliveredCount)
        wanted->requestDrain();
}

// The message loop may have taken a message that its poster has not counted yet, so that more were delivered than
// counted; the difference is read with its sign.
void WindowsAsyncEventQueue::drain() {
    const std::uint32_t stood = postedCount.load();
    MSG message{};
    while (window != nullptr && static_cast<std::int32_t>(stood - deliveredCount) > 0 &&
           PeekMessageW(&message, window, eventMessage, eventMessage, PM_REMOVE))
        take(message.wParam, message.lParam);
}

void WindowsAsyncEventQueue::take(WPARAM id, LPARAM value) noexcept {
    ++deliveredCount;
    try {
        deliver(static_cast<std::int32_t>(static_cast<std::uint32_t>(id)), value);
    } catch (...) { // it must not pass through the system's code, or the host's
    }
}

LRESULT CALLBACK WindowsAsyncEventQueue::handleMessage(HWND target, UINT message, WPARAM id, LPARAM value) {
    auto* const queue = reinterpret_cast<WindowsAsyncEventQueue*>(GetWindowLongPtrW(target, GWLP_USERDATA));
    if (message != eventMessage || queue == nullptr)
        return DefWindowProcW(target, message, id, value);
    queue->take(id, value);
    return 0;
}
