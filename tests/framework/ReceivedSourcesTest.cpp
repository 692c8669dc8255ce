#include "framework/ReceivedSources.h"

#include "framework/ExchangeStream.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

// Blocks whose samples tell their number and channel: 100 * number + 10 * channel + sample.
void writeBlocks(ExchangeStream& stream, std::int32_t channels, std::int32_t first, std::int32_t count,
                 std::int32_t size) {
    for (const std::int32_t number : {channels, count, size})
        stream.write(number);
    for (std::int32_t block = 0; block < count; ++block)
        for (std::int32_t channel = 0; channel < channels; ++channel)
            for (std::int32_t sample = 0; sample < size; ++sample)
                stream.write(static_cast<float>(100 * (first + block) + 10 * channel + sample));
}

void receive(AudioSourceProxy& proxy, std::int32_t first, std::int32_t count, std::int32_t channels = 2,
             std::int32_t size = 4) {
    ExchangeStream stream;
    writeBlocks(stream, channels, first, count, size);
    proxy.receive(stream);
    EXPECT_TRUE(stream.good());
}

TEST(AudioSourceProxy, TheLocalReaderGetsEachBlockOnceInOrderAcrossTheEndOfTheRing) {
    AudioSourceProxy proxy;
    EXPECT_EQ(proxy.blockCount(), 0u) << "there is no ring yet";
    proxy.setSampleRate(800.0f); // 200 samples: 50 blocks
    std::int32_t next = 0;
    for (const std::int32_t count : {30, 0, 15, 49, 7, 33}) {
        receive(proxy, next, count);
        const LockedSource::Lock held(proxy);
        ASSERT_EQ(proxy.blockCount(), static_cast<std::size_t>(count));
        for (std::int32_t block = 0; block < count; ++block)
            for (std::size_t channel = 0; channel < 2; ++channel)
                ASSERT_EQ(proxy.blockData(static_cast<std::size_t>(block), channel)[3],
                          static_cast<float>(100 * (next + block)) + 10.0f * static_cast<float>(channel) + 3.0f);
        next += count;
    }
    EXPECT_EQ(proxy.ringBlocks(), 50u);
    receive(proxy, next, 53); // three more than there is room for
    EXPECT_EQ(proxy.blockCount(), 3u);
    EXPECT_EQ(proxy.blockData(0, 0)[0], static_cast<float>(100 * (next + 50))) << "the newest are there";
    EXPECT_EQ(proxy.heldBlocks(), 50u);
}

TEST(AudioSourceProxy, TheRingHoldsAQuarterSecondAndFollowsRateAndShape) {
    struct Case {
        float rate;
        std::size_t blocks;
    };
    for (const Case& each : {Case{44100.0f, 44}, Case{192000.0f, 188}, Case{8000.0f, 37}}) {
        AudioSourceProxy proxy;
        receive(proxy, 0, 5, 1, 256);
        proxy.setSampleRate(each.rate);
        EXPECT_EQ(proxy.ringBlocks(), each.blocks) << each.rate;
        EXPECT_EQ(proxy.blockCount(), 0u) << "begins anew";
        receive(proxy, 0, 36, 1, 256);
        EXPECT_EQ(proxy.blockCount(), 36u) << "all that the graph can send at once";
        receive(proxy, 36, 2, 6, 256); // another layout
        EXPECT_EQ(proxy.blockCount(), 2u);
        EXPECT_EQ(proxy.channelCount(), 6u);
        EXPECT_EQ(proxy.receivedBlocks(), 43);
        EXPECT_EQ(proxy.heldBlocks(), 2u) << "no reader may get those from before";
    }
}

TEST(ReceivedSources, AStreamThatBreaksOffAnywhereLeavesWholeItemsBehind) {
    ReceivedSources sources({.audio = 1, .spectra = 1, .levelsPerChannel = 1, .furtherLevels = 1}, 2, true);
    const auto whole = [] {
        std::vector<std::uint8_t> bytes;
        const auto add = [&bytes](const auto& value) {
            const auto* const first = reinterpret_cast<const std::uint8_t*>(&value);
            bytes.insert(bytes.end(), first, first + sizeof(value));
        };
        for (const std::int32_t number : {1, 2, 2})
            add(number);
        for (const float sample : {1.0f, 2.0f, 3.0f, 4.0f})
            add(sample);
        for (int level = 0; level < 3; ++level) {
            for (int i = 0; i < 5; ++i)
                add(-3.0f);
            add(std::int32_t{0});
        }
        add(std::uint32_t{1});
        add(std::int32_t{2});
        add(0.5f);
        add(0.25f);
        add(90.0f);
        for (const std::uint8_t byte : std::initializer_list<std::uint8_t>{1, 0xB0, 7, 100, 0})
            add(byte);
        return bytes;
    }();
    std::int64_t audioBefore = 0;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        ExchangeStream stream;
        for (std::size_t i = 0; i < length; ++i)
            stream.write(whole[i]);
        sources.read(stream, true);
        const std::int64_t audio = sources.audio(0).receivedBlocks();
        EXPECT_EQ(audio - audioBefore, length >= 28 ? 2 : 0) << length;
        audioBefore = audio;
        EXPECT_EQ(sources.spectrum(0).data().size(), length >= 116 ? 2u : 0u) << length;
        EXPECT_EQ(sources.tempo(), length >= 120 ? 90.0f : 120.0f) << length;
    }
    MidiMessage message;
    ASSERT_TRUE(sources.takeLearnMessage(message));
    EXPECT_EQ(message.data1, 7);
    EXPECT_EQ(sources.level(2).level(LevelSource::Info::extreme), -3.0f);
    EXPECT_EQ(sources.level(2).getDetection(), LevelSource::Detection::smallest);
}

TEST(ReceivedSources, WhatIsAskedOfAMeterTravelsOnceAndMetersBeginAnewWithALayout) {
    ReceivedSources sources({.audio = 0, .levelsPerChannel = 1, .furtherLevels = 2}, 2, false);
    EXPECT_EQ(&sources.channelLevel(1), &sources.level(3));
    LevelSourceProxy& last = sources.level(3);
    last.resetPeak();
    last.resetPeak();
    sources.level(1).releaseHold();
    for (const std::vector<std::uint8_t>& expected : {std::vector<std::uint8_t>{0, 2, 0, 1}, {0, 0, 0, 0}}) {
        ExchangeStream stream;
        sources.writeRequests(stream);
        for (const std::uint8_t byte : expected)
            EXPECT_EQ(stream.read<std::uint8_t>(), byte);
        EXPECT_TRUE(stream.good());
    }
    ExchangeStream stream;
    for (int level = 0; level < 4; ++level) {
        for (int i = 0; i < 5; ++i)
            stream.write(-6.0f);
        stream.write(std::int32_t{1});
    }
    stream.write(120.0f);
    sources.read(stream, true);
    EXPECT_EQ(last.level(LevelSource::Info::level), -6.0f);
    sources.setChannelCount(1);
    EXPECT_EQ(sources.levelCount(), 3u);
    EXPECT_EQ(last.level(LevelSource::Info::level), -180.0f) << "a display may still hold it";
    EXPECT_EQ(sources.level(1).level(LevelSource::Info::level), -6.0f) << "the bands' meters are no channel's";
}

TEST(SpectrumSourceProxy, APeakThatNobodyReadStaysAndGoesWithTheReadThatSawIt) {
    SpectrumSourceProxy proxy;
    const auto receive = [&proxy](std::vector<float> bins, std::uint32_t frame) {
        ExchangeStream stream;
        stream.write(frame);
        stream.write(static_cast<std::int32_t>(bins.size()));
        stream.writeSamples(bins);
        proxy.receive(stream);
        return std::vector<float>(proxy.data().begin(), proxy.data().end());
    };
    EXPECT_EQ(proxy.size(), 0u);
    receive({0.9f, 0.1f, 0.2f}, 1);
    EXPECT_EQ(receive({0.1f, 0.5f, 0.1f}, 2), (std::vector<float>{0.9f, 0.5f, 0.2f}));
    EXPECT_EQ(proxy.frameCounter(), 2u);
    EXPECT_EQ(proxy.size(), 4u) << "of the transform";
    proxy.lock();
    proxy.unlock();
    EXPECT_EQ(receive({0.1f, 0.2f, 0.3f}, 3), (std::vector<float>{0.1f, 0.2f, 0.3f}));
    EXPECT_EQ(receive({0.1f, 0.2f}, 4), (std::vector<float>{0.1f, 0.2f})) << "another size begins anew";
}

} // namespace
