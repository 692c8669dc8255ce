#include "wave/Environment.h"

#include "base/Realtime.h"
#include "tests/wave/GraphTestObjects.h"
#include "wave/VolumeFilter.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using Schedule = wave::Producer::Schedule;

TEST(Environment, AProducerRunsOnceACycleForAllWhoPullIt) {
    wave::Environment environment;
    TestSource source(environment);
    EXPECT_EQ(source.firstValue(), 0.0f) << "no output yet";
    VolumeFilter filters[] = {VolumeFilter(environment), VolumeFilter(environment), VolumeFilter(environment)};
    for (VolumeFilter& filter : filters)
        filter.input = &source;
    for (int cycle = 1; cycle <= 3; ++cycle) {
        runCycle(environment, 17, {&filters[0], &filters[1], &filters[2], &source});
        EXPECT_EQ(source.runs, cycle);
        for (VolumeFilter& filter : filters)
            EXPECT_EQ(filter.getOutput(), source.getOutput()) << "a stage that does nothing hands on its input";
    }
    EXPECT_EQ(filters[2].firstValue(), 1.0f);
    EXPECT_EQ(environment.position, 51u);
}

// Producers that write their names into one log when they run.
class Scheduling : public testing::Test {
protected:
    TestSource* make(char name, Schedule schedule) {
        producers.push_back(std::make_unique<TestSource>(environment));
        producers.back()->whenRun = [this, name] { log += name; };
        producers.back()->setSchedule(schedule);
        return producers.back().get();
    }
    std::string logOfCycle(const std::vector<wave::Producer*>& pulled = {}) {
        log.clear();
        runCycle(environment, 8, pulled);
        return log;
    }

    wave::Environment environment;
    std::vector<std::unique_ptr<TestSource>> producers;
    std::string log;
};

TEST_F(Scheduling, HeadsRunFirstAndAlwaysTheOthersOnlyIfNoPullReachedThem) {
    TestSource* const tail = make('T', Schedule::tail);
    TestSource* const middle = make('M', Schedule::middle);
    TestSource* const head = make('H', Schedule::head);
    make('m', Schedule::middle);
    make('h', Schedule::head);
    EXPECT_EQ(logOfCycle(), "hHmMT");
    EXPECT_EQ(head->lastMode, wave::Producer::modeHead);
    EXPECT_EQ(middle->lastMode, wave::Producer::modeScheduled);
    EXPECT_EQ(logOfCycle({tail, middle, head}), "TMHhHm");
    EXPECT_EQ(tail->lastMode, wave::Producer::modePulled);

    head->setActive(false);
    make('n', Schedule::middle);
    EXPECT_EQ(logOfCycle(), "hnmMT") << "behind the heads that remain";
    head->setActive(true);
    EXPECT_EQ(logOfCycle(), "HhnmMT");
    producers.erase(producers.begin() + 1);
    EXPECT_EQ(logOfCycle(), "HhnmT") << "a dead producer has left";

    environment.beginCycle();
    log.clear();
    environment.runCycle(8, true);
    EXPECT_EQ(log, "");
}

TEST_F(Scheduling, TheListMayChangeWhileItIsWalked) {
    TestSource* const late = make('L', Schedule::tail);
    late->unschedule();
    make('c', Schedule::middle);
    TestSource* const changer = make('b', Schedule::middle);
    make('a', Schedule::head);
    changer->whenRun = [&] {
        const RealtimePermit permit{"a producer that the test makes in mid-walk"};
        log += 'b';
        changer->unschedule();
        late->setSchedule(Schedule::tail);
        make('H', Schedule::head); // in front of the walk: waits for the next cycle, and nobody runs twice
    };
    EXPECT_EQ(logOfCycle(), "abcL");
    EXPECT_EQ(logOfCycle(), "HacL");
}

TEST(Environment, AResetReachesActiveMembersAndBreaksTheStreamForOneBlock) {
    wave::Environment environment;
    TestSource member(environment);
    TestSource sleeper(environment);
    TestSource stranger(environment);
    for (TestSource* each : {&member, &sleeper})
        each->setResettable(true);
    sleeper.setActive(false);
    const auto continues = [&] {
        runCycle(environment, 16, {&member});
        return member.continued;
    };
    EXPECT_FALSE(continues()) << "the first block follows on nothing";
    EXPECT_TRUE(continues());
    environment.resetAll();
    EXPECT_EQ(member.resets, 1);
    EXPECT_EQ(sleeper.resets + stranger.resets, 0);
    EXPECT_FALSE(continues());
    EXPECT_TRUE(continues());
    runCycle(environment, 16); // nobody pulls
    EXPECT_FALSE(continues());
    environment.jump();
    EXPECT_TRUE(continues()) << "values jump, the sound goes on";

    int heard = 0;
    const auto listener = [&] { heard += environment.lastRestartPosition == environment.position ? 1 : 100; };
    environment.sampleRateChanged.add(std::make_unique<NotifyEvent::HandlerImplFunc<decltype(listener)>>(listener));
    for (const float same : {44100.0f, 0.0f, -1.0f})
        environment.setSampleRate(same);
    EXPECT_TRUE(continues());
    environment.setSampleRate(48000.0f);
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(member.resets, 2);
    EXPECT_EQ(sleeper.resets, 1) << "a new rate concerns those too that sleep";
    EXPECT_FALSE(continues());
    sleeper.setActive(true);
    EXPECT_EQ(sleeper.resets, 2);

    EXPECT_TRUE(environment.allAtRest());
    stranger.rests = false;
    EXPECT_TRUE(environment.allAtRest());
    sleeper.rests = false;
    EXPECT_FALSE(environment.allAtRest());
}

} // namespace
