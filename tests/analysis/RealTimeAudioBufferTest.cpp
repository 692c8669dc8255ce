#include "analysis/RealTimeAudioBuffer.h"
#include "base/Realtime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t poolSamples = RealTimeAudioBuffer::baseGroupCount * RealTimeAudioBuffer::blockSize;

// Counts samples from a start on, so that every sample tells where it belongs.
class Counter final : public wave::Producer {
public:
    Counter(wave::Environment& owner, float first) : Producer(owner), offset(first) {}

    void process(wave::BasicBlock<float>& block, std::int32_t count, std::uint32_t) noexcept REALTIME override {
        ++runs;
        for (std::int32_t i = 0; i < count; ++i)
            block[i] = offset + static_cast<float>((environment.position + static_cast<std::uint64_t>(i)) % period);
    }

    static constexpr std::uint64_t period = 1u << 22; // whole numbers that a float holds with room for the offset
    int runs = 0;

private:
    float offset;
};

struct Graph {
    explicit Graph(std::size_t channels = 2) : buffer(environment, channels) {
        buffer.setUp();
        buffer.measurement(0).setInput(0, &pre);
        buffer.measurement(1).setInput(channels - 1, &post);
    }

    void run(std::size_t samples, std::int32_t largest = 256) {
        while (samples > 0) {
            const auto count =
                static_cast<std::int32_t>(std::min<std::size_t>(samples, static_cast<std::size_t>(largest)));
            const RealtimeScope scope;
            environment.beginCycle();
            environment.runCycle(count, false);
            samples -= static_cast<std::size_t>(count);
        }
    }

    std::size_t readCount() {
        const LockedSource::Lock held(buffer.measurement(0));
        return buffer.measurement(0).blockCount();
    }

    wave::Environment environment;
    Counter pre{environment, 0.0f};
    Counter post{environment, 1000000.0f};
    RealTimeAudioBuffer buffer;
};

TEST(RealTimeAudioBuffer, HandsOnEverySampleInOrderHoweverTheBlocksAreCut) {
    for (const std::int32_t largest : {1, 7, 100, 256}) {
        Graph graph;
        float expected = 0.0f;
        for (const std::size_t samples : {255u, 1u, 700u, 4000u, 0u, 3000u}) {
            graph.run(samples, largest);
            const LockedSource::Lock outer(graph.buffer.measurement(0));
            const LockedSource::Lock inner(graph.buffer.measurement(1));
            for (std::size_t block = 0; block < graph.buffer.measurement(0).blockCount(); ++block)
                for (std::size_t i = 0; i < 256; ++i, expected += 1.0f) {
                    ASSERT_EQ(graph.buffer.measurement(0).blockData(block, 0)[i], expected);
                    ASSERT_EQ(graph.buffer.measurement(0).blockData(block, 1)[i], 0.0f) << "not connected";
                    ASSERT_EQ(graph.buffer.measurement(1).blockData(block, 1)[i], expected + 1000000.0f);
                    ASSERT_EQ(graph.buffer.measurement(2).blockData(block, 0)[i], 0.0f);
                }
        }
        EXPECT_EQ(expected, 31.0f * 256.0f);
    }
}

TEST(RealTimeAudioBuffer, StopsWhenFullAndStartsAfreshBehindTheGap) {
    Graph graph;
    graph.run(poolSamples + 1000);
    const int runs = graph.pre.runs;
    graph.run(10000);
    EXPECT_EQ(graph.pre.runs, runs) << "nothing but the test of a flag while nobody reads";
    EXPECT_EQ(graph.readCount(), 0u) << "what lies before the gap is thrown away";
    const auto begin = static_cast<float>(graph.environment.position);
    graph.run(1024);
    const LockedSource::Lock held(graph.buffer.measurement(0));
    ASSERT_EQ(graph.buffer.measurement(0).blockCount(), 4u);
    EXPECT_EQ(graph.buffer.measurement(0).blockData(0, 0)[0], begin);
}

TEST(RealTimeAudioBuffer, ThePoolGrowsWithTheRateAndForgetsAudioOfTheOldOne) {
    Graph graph;
    EXPECT_EQ(graph.buffer.groupCount(), 36u);
    graph.run(1000);
    for (const auto& [rate, groups] :
         {std::pair{96000.0f, 36u}, {192000.0f, 72u}, {768000.0f, 288u}, {44100.0f, 288u}}) {
        graph.run(1000);
        graph.environment.setSampleRate(rate);
        EXPECT_EQ(graph.buffer.groupCount(), groups);
        EXPECT_EQ(graph.readCount(), 0u);
    }
    const auto begin = static_cast<float>(graph.environment.position);
    graph.run(288 * 256);
    const LockedSource::Lock held(graph.buffer.measurement(0));
    EXPECT_EQ(graph.buffer.measurement(0).blockCount(), 288u) << "no group was lost";
    EXPECT_EQ(graph.buffer.measurement(0).blockData(0, 0)[0], begin) << "the half filled group began anew";
}

TEST(RealTimeAudioBuffer, AReaderThatStallsNeverSeesAGapInsideOneLockedTime) {
    Graph graph(1);
    std::atomic<bool> finished{false};
    std::atomic<std::size_t> played{0};
    std::jthread audio([&] {
        for (std::size_t block = 0; !finished; ++block) {
            graph.run(64 + block % 193);
            played += 64 + block % 193;
            if (block % 4 == 0)
                std::this_thread::yield();
        }
    });
    const auto after = [](float sample, std::size_t distance) {
        return std::fmod(sample + static_cast<float>(distance), static_cast<float>(Counter::period));
    };
    const auto& pre = graph.buffer.measurement(0);
    const auto& post = graph.buffer.measurement(1);
    std::size_t blocks = 0;
    std::size_t gaps = 0;
    bool whole = true;
    float next = 0.0f;
    for (int look = 0; whole && (blocks < 1000 || gaps < 3) && look < 1000000; ++look) {
        if (look % 64 == 0) // the stall: the pool runs over
            for (const std::size_t end = played + 2 * poolSamples; played < end;)
                std::this_thread::yield();
        std::this_thread::yield();
        const LockedSource::Lock held(graph.buffer.measurement(0));
        for (std::size_t block = 0; block < pre.blockCount(); ++block, ++blocks) {
            const float first = pre.blockData(block, 0)[0];
            gaps += first != next;
            whole = whole && (first == next || block == 0);
            for (std::size_t i = 0; i < 256; ++i)
                whole = whole && pre.blockData(block, 0)[i] == after(first, i) &&
                        post.blockData(block, 0)[i] == after(first, i) + 1000000.0f;
            next = after(first, 256);
        }
    }
    finished = true;
    EXPECT_TRUE(whole) << "a gap or a torn block";
    EXPECT_GE(blocks, 1000u);
    EXPECT_GE(gaps, 3u) << "the stalls were too short to test anything";
}

} // namespace
