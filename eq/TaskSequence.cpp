#include "eq/TaskSequence.h"

#include <algorithm>

void TaskSequence::insert(std::size_t place, GranularTask& task) {
    tasks.insert(tasks.begin() + static_cast<std::ptrdiff_t>(place), &task);
    stop();
}

std::size_t TaskSequence::firstEnabled(std::size_t from) const noexcept REALTIME {
    while (from < tasks.size() && !tasks[from]->enabled)
        ++from;
    return from;
}

void TaskSequence::reset() noexcept REALTIME {
    totalWork = 0;
    for (std::size_t each = firstEnabled(0); each < tasks.size(); each = firstEnabled(each + 1)) {
        tasks[each]->prepare();
        totalWork += static_cast<std::int64_t>(tasks[each]->units) * tasks[each]->weight;
    }
    current = firstEnabled(0);
    positionInTask = 0;
    elapsed = 0;
    workDone = 0;
}

void TaskSequence::stop() noexcept REALTIME {
    current = tasks.size();
    totalWork = 0;
    workDone = 0;
}

bool TaskSequence::advance(std::int32_t samples) noexcept REALTIME {
    if (period <= 0 || !isRunning())
        return false;
    elapsed = std::min(elapsed + samples, period);
    const std::int64_t target = totalWork * elapsed / period;
    std::int64_t budget = target - workDone;
    workDone = target;
    while (isRunning()) {
        GranularTask& task = *tasks[current];
        const std::int64_t left = task.units - positionInTask;
        const auto count = static_cast<std::int32_t>(std::min(budget / task.weight, left));
        if (count == 0 && left > 0) {
            workDone -= budget; // too little for one unit: it waits for the next samples
            return false;
        }
        if (positionInTask == 0)
            task.begin();
        if (count > 0)
            task.run(positionInTask, count);
        budget -= static_cast<std::int64_t>(count) * task.weight;
        workEverDone += static_cast<std::int64_t>(count) * task.weight;
        positionInTask += count;
        if (positionInTask < task.units)
            continue;
        task.finish();
        current = firstEnabled(current + 1);
        positionInTask = 0;
    }
    return true;
}
