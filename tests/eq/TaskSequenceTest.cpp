#include "eq/TaskSequence.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class LoggedTask final : public GranularTask {
public:
    LoggedTask(std::string& target, std::int32_t count, std::int32_t cost) : GranularTask(cost), log(target) {
        units = count;
    }
    void begin() noexcept override { log += 'b'; }
    void run(std::int32_t position, std::int32_t count) noexcept override {
        EXPECT_EQ(position, done);
        done += count;
    }
    void finish() noexcept override {
        EXPECT_EQ(done, units);
        log += 'f';
    }

    std::string& log;
    std::int32_t done = 0;
};

TEST(TaskSequence, WorkFollowsTheSamplesAndEndsExactlyWithThePeriod) {
    std::string log;
    LoggedTask light(log, 1'000'000'000, 1); // the product with the samples needs 64 bits
    LoggedTask off(log, 5, 1);
    LoggedTask empty(log, 0, 1);
    LoggedTask heavy(log, 7, 100'000'000);
    off.enabled = false;
    TaskSequence sequence;
    for (LoggedTask* task : {&light, &off, &empty, &heavy})
        sequence.add(*task);
    sequence.setPeriod(1000);
    EXPECT_FALSE(sequence.advance(100)) << "nothing is left before the first start";
    sequence.reset();
    for (int call = 1; call <= 10; ++call) {
        EXPECT_EQ(sequence.advance(100), call == 10);
        if (call < 6)
            EXPECT_EQ(light.done, call * 170'000'000);
        else
            EXPECT_EQ(heavy.done, (call * 170'000'000 - 1'000'000'000) / 100'000'000) << "whole units only";
    }
    EXPECT_EQ(log, "bfbfbf");
    EXPECT_EQ(off.done, 0);
    EXPECT_FALSE(sequence.advance(100));
}

} // namespace
