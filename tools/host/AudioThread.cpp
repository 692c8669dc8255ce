#include "tools/host/AudioThread.h"

#include <utility>

AudioThread::AudioThread() : thread([this] { loop(); }) {}

AudioThread::~AudioThread() {
    {
        const std::lock_guard guard(lock);
        ending = true;
    }
    changed.notify_all();
    thread.join();
}

void AudioThread::run(const std::function<void()>& wanted) {
    std::unique_lock guard(lock);
    job = &wanted;
    changed.notify_all();
    changed.wait(guard, [this] { return job == nullptr; });
    if (thrown != nullptr)
        std::rethrow_exception(std::exchange(thrown, nullptr));
}

void AudioThread::loop() {
    std::unique_lock guard(lock);
    while (true) {
        changed.wait(guard, [this] { return job != nullptr || ending; });
        if (ending)
            return;
        const std::function<void()>* current = job;
        guard.unlock();
        std::exception_ptr failure;
        try {
            (*current)();
        } catch (...) {
            failure = std::current_exception();
        }
        guard.lock();
        thrown = failure;
        job = nullptr;
        changed.notify_all();
    }
}
