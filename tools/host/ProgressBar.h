// One line on the terminal that grows while long work goes on. Says nothing where errors go to a file, or where the
// work is done before anyone looks.
// Threads: main.
#pragma once

#include <chrono>
#include <string>

class ProgressBar {
public:
    explicit ProgressBar(std::string whatIsDone);
    ~ProgressBar(); // clears the line
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void show(double fraction); // 0 to 1

private:
    using Clock = std::chrono::steady_clock;

    std::string work;
    const bool visible;
    const Clock::time_point start;
    Clock::time_point last;
    bool drawn = false;
};
