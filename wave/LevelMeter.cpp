#include "wave/LevelMeter.h"

#include "base/ReleaseAssert.h"
#include "wave/BlockMath.h"

#include <bit>
#include <utility>

LevelMeter::LevelMeter(wave::Environment& owner, std::unique_ptr<IntervalTimer> readerTimer)
    : FilterBase(owner)
    , detection(this, Detection::largest)
    , holdOverload(this, true)
    , levelHold(this, 0.05f)
    , staleTime(this, 100.0f)
    , inputDomain(this, LevelDomain::linear)
    , maximum(this, 6.0f)
    , minimum(this, -90.0f)
    , outputDomain(this, LevelDomain::decibels)
    , peakHold(this, 2.0f)
    , peakFall(this, 15.0f)
    , levelFall(this, 150.0f)
    , records(gathered())
    , timer(std::move(readerTimer)) {
    release_assert(timer != nullptr);
    publishSettings();
    followSettings();
    setResettable(true);
    setSchedule(Schedule::middle);
}

void LevelMeter::process(wave::BasicBlock<float>&, std::int32_t count, std::uint32_t) noexcept REALTIME {
    const wave::BasicBlock<float>& pulled = pullInput(count);
    output = &pulled;
    const float* const samples = pulled.data();
    const std::int32_t distinct = pulled.isConstant != 0 ? 1 : count;
    const float extreme = largest      ? magnitudes ? wave::extremeOf<true, true>(samples, distinct, inputFloor)
                                                    : wave::extremeOf<true, false>(samples, distinct, inputFloor)
                               : magnitudes ? wave::extremeOf<false, true>(samples, distinct, inputFloor)
                                       : wave::extremeOf<false, false>(samples, distinct, inputFloor);
    handOver.put({extreme, count, generation.load(std::memory_order_relaxed)}, largest);
}

// The records are the reader's: all it gets is word of the reset.
void LevelMeter::reset() noexcept REALTIME {
    publishSettings();
    generation.fetch_add(1, std::memory_order_release);
}

void LevelMeter::propertyChanged(AbstractProperty& changed) {
    if (&changed == &minimum || &changed == &maximum)
        publishSettings();
    else
        reset();
}

LevelSource::Detection LevelMeter::getDetection() {
    followSettings();
    return records.getSettings().detection;
}

float LevelMeter::level(Info info) {
    // The package first: a reset that it does not know is then seen for certain.
    LevelHandOver::Package package;
    const bool fresh = handOver.take(package);
    followSettings();
    if (fresh && package.generation == seenGeneration) {
        apply(package.extreme, static_cast<double>(package.count));
        readerDecaying = false;
        return records.value(info);
    }
    const LevelRecords::Settings& settings = records.getSettings();
    const double milliseconds = static_cast<double>(timer->elapsed());
    if (milliseconds > static_cast<double>(settings.staleTime) || (readerDecaying && milliseconds >= 1.0)) {
        if (records.isAboveFloor())
            apply(settings.inputFloor(), static_cast<double>(settings.sampleRate) * milliseconds * 0.001);
        readerDecaying = true;
    }
    return records.value(info);
}

void LevelMeter::resetPeak() {
    followSettings();
    records.resetPeak();
}

LevelRecords::Settings LevelMeter::gathered() const noexcept REALTIME {
    return {.detection = detection,
            .holdOverload = holdOverload ? 1 : 0,
            .levelHold = levelHold,
            .staleTime = staleTime,
            .inputDomain = inputDomain,
            .maximum = maximum,
            .minimum = minimum,
            .outputDomain = outputDomain,
            .peakHold = peakHold,
            .peakFall = peakFall,
            .levelFall = levelFall,
            .sampleRate = environment.sampleRate};
}

void LevelMeter::publishSettings() noexcept REALTIME {
    const LevelRecords::Settings settings = gathered();
    largest = settings.largest();
    magnitudes = settings.inputDomain == LevelDomain::linear;
    inputFloor = settings.inputFloor();
    const auto words = std::bit_cast<std::array<std::uint32_t, settingsWords>>(settings);
    for (std::size_t index = 0; index < settingsWords; ++index)
        sharedSettings[index].store(words[index], std::memory_order_relaxed);
    settingsVersion.fetch_add(1, std::memory_order_release); // pairs with the load in followSettings
}

void LevelMeter::followSettings() {
    const std::uint32_t presentGeneration = generation.load(std::memory_order_acquire);
    const std::uint32_t version = settingsVersion.load(std::memory_order_acquire);
    if (version != seenVersion) {
        std::array<std::uint32_t, settingsWords> words;
        for (std::size_t index = 0; index < settingsWords; ++index)
            words[index] = sharedSettings[index].load(std::memory_order_relaxed);
        records.configure(std::bit_cast<LevelRecords::Settings>(words));
        seenVersion = version;
    }
    if (presentGeneration != seenGeneration) {
        records.reset();
        seenGeneration = presentGeneration;
    }
}

void LevelMeter::apply(float extreme, double count) {
    records.apply(extreme, count);
    timer->reset();
}
