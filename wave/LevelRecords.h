// How a meter moves: what it shows of the levels it gets, how long it holds them, how fast it falls.
// Threads: the reader of the meter.
#pragma once

#include "base/Realtime.h"
#include "wave/LevelSource.h"

#include <array>
#include <cstddef>
#include <cstdint>

enum class LevelDomain : std::int32_t { linear = 0, decibels = 1, power = 2 };

class LevelRecords {
public:
    // 4 bytes each, so that the whole can be handed over word by word.
    struct Settings {
        LevelSource::Detection detection = LevelSource::Detection::largest;
        std::int32_t holdOverload = 1; // a peak above 0 stays until resetPeak
        float levelHold = 0.05f;       // seconds before the present level falls
        float staleTime = 100.0f;      // ms without data before the reader lets the meter fall
        LevelDomain inputDomain = LevelDomain::linear;
        float maximum = 6.0f;
        float minimum = -90.0f;
        LevelDomain outputDomain = LevelDomain::decibels;
        float peakHold = 2.0f;    // seconds
        float peakFall = 15.0f;   // dB per second
        float levelFall = 150.0f; // dB per second
        float sampleRate = 44100.0f;

        bool largest() const noexcept REALTIME { return detection == LevelSource::Detection::largest; }
        float floor() const noexcept REALTIME {
            return largest() ? minimum : maximum;
        }                                           // what the meter shows of nothing
        float inputFloor() const noexcept REALTIME; // the same in the input domain
    };

    explicit LevelRecords(const Settings& initial) {
        configure(initial);
        reset();
    }

    void configure(const Settings& wanted); // limits what is shown; times and speeds wait for reset()
    void reset();                           // a held overload stays
    void resetPeak();

    void apply(float level, double count); // the extreme of so many samples, in the input domain

    float value(LevelSource::Info info) const; // unknown information: the extreme
    bool isAboveFloor() const;                 // the present level or the peak can still fall
    const Settings& getSettings() const { return settings; }

private:
    struct Record {
        float value = 0.0f;
        double age = 0.0; // samples since the value was reached
        double holdSamples = 0.0;
        double fallPerSample = 0.0; // towards the floor
    };

    static constexpr std::size_t present = 0;
    static constexpr std::size_t peak = 1;
    static constexpr std::size_t extreme = 2;

    bool above(float a, float b) const { return settings.largest() ? a > b : a < b; }
    float limited(float level) const;
    void updateRecord(std::size_t index, float level, double count);

    Settings settings;
    std::array<Record, 3> records;
    float pendingPeak = 0.0f; // highest level of the second half of the peak's hold time
    bool overload = false;
};
