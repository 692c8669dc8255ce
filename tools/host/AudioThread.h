// The thread that plays the audio role: it runs one job at a time while its caller waits.
// Threads: main calls, the jobs run on the thread of this object.
#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

class AudioThread {
public:
    AudioThread();
    ~AudioThread();
    AudioThread(const AudioThread&) = delete;
    AudioThread& operator=(const AudioThread&) = delete;

    // [main] Returns when the job is done; what it threw is thrown here.
    void run(const std::function<void()>& wanted);

    std::thread::id id() const { return thread.get_id(); }

private:
    void loop();

    std::mutex lock; // guards what follows but the thread
    std::condition_variable changed;
    const std::function<void()>* job = nullptr; // null: idle
    std::exception_ptr thrown;
    bool ending = false;
    std::thread thread;
};
