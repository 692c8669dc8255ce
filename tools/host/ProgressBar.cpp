#include "tools/host/ProgressBar.h"

#include "tools/host/System.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

constexpr int cells = 30;
constexpr std::chrono::milliseconds patience(300); // before the first drawing
constexpr std::chrono::milliseconds pace(100);

} // namespace

ProgressBar::ProgressBar(std::string whatIsDone)
    : work(std::move(whatIsDone)), visible(errorsGoToTerminal()), start(Clock::now()), last(start) {}

ProgressBar::~ProgressBar() {
    if (drawn)
        std::fputs("\r\033[K", stderr);
}

void ProgressBar::show(double fraction) {
    const Clock::time_point now = Clock::now();
    if (!visible || now - start < patience || now - last < pace)
        return;
    last = now;
    drawn = true;
    const double part = std::clamp(fraction, 0.0, 1.0);
    const double spent = std::chrono::duration<double>(now - start).count();
    const int full = static_cast<int>(part * cells);
    std::string bar(static_cast<std::size_t>(full), '#');
    bar.resize(cells, '.');
    std::fprintf(stderr, "\r%s [%s] %3.0f %%, %.0f s left\033[K", work.c_str(), bar.c_str(), part * 100.0,
                 part > 0.0 ? spent * (1.0 - part) / part : 0.0);
    std::fflush(stderr);
}
