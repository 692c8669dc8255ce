#include "analysis/RealTimeFrequencyAnalyzer.h"

#include "analysis/AnalysisTiming.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace {

constexpr std::int32_t largestSize = 1 << 16;

std::int32_t powerOfTwo(std::int32_t size) noexcept {
    const auto wanted = static_cast<std::uint32_t>(std::clamp(size, FFTPlan::smallestSize, largestSize));
    return static_cast<std::int32_t>(std::bit_ceil(wanted));
}

// Samples from `begin` on, of all blocks as one stream. Silence behind their end and for a channel that is not there.
void copySamples(const AudioSource& source, std::size_t channel, std::size_t begin, std::span<float> out) {
    const std::size_t size = source.blockSize();
    const std::size_t total = channel < source.channelCount() ? source.blockCount() * size : 0;
    std::size_t done = 0;
    while (done < out.size() && begin + done < total) {
        const std::size_t position = begin + done;
        const std::span<const float> rest = source.blockData(position / size, channel).subspan(position % size);
        const std::size_t count = std::min(rest.size(), out.size() - done);
        std::copy_n(rest.begin(), count, out.begin() + static_cast<std::ptrdiff_t>(done));
        done += count;
    }
    std::fill(out.begin() + static_cast<std::ptrdiff_t>(done), out.end(), 0.0f);
}

void applyWindow(const float* __restrict samples, const float* __restrict window, float* __restrict out,
                 std::size_t count) noexcept {
    for (std::size_t index = 0; index < count; ++index)
        out[index] = samples[index] * window[index];
}

} // namespace

RealTimeFrequencyAnalyzer::RealTimeFrequencyAnalyzer(std::size_t sourceCount, std::int32_t sizeA, std::int32_t sizeB,
                                                     float sidelobeDb, std::unique_ptr<IntervalTimer> sinceAudio)
    : fftSize(nullptr, std::max(sizeA, sizeB))
    , maxSize(powerOfTwo(std::max(sizeA, sizeB)))
    , sidelobes(sidelobeDb)
    , idleTimer(std::move(sinceAudio)) {
    for (std::size_t index = 0; index < sourceCount; ++index)
        measurements.push_back(std::make_unique<SpectrumMeasurement>(*this));
    preparePlan();
}

RealTimeFrequencyAnalyzer::RealTimeFrequencyAnalyzer(const AnalyzerLayout& layout,
                                                     std::unique_ptr<IntervalTimer> sinceAudio)
    : RealTimeFrequencyAnalyzer(layout.sourceCount, layout.largestSize, layout.largestSize, layout.sidelobeDb,
                                std::move(sinceAudio)) {}

RealTimeFrequencyAnalyzer::~RealTimeFrequencyAnalyzer() = default;

void RealTimeFrequencyAnalyzer::lockSources() {
    if (++lockCount == 1)
        analyse();
}

void RealTimeFrequencyAnalyzer::unlockSources() {
    --lockCount;
}

std::int32_t RealTimeFrequencyAnalyzer::wantedSize() const noexcept {
    return std::min(powerOfTwo(fftSize), maxSize);
}

void RealTimeFrequencyAnalyzer::preparePlan() {
    if (plan != nullptr && plan->getSize() == wantedSize())
        return;
    transform.reset();
    plan = std::make_unique<FFTPlan>(wantedSize());
    plan->windowParameter = sidelobes;
    plan->windowType = FFTWindow::kaiser;
    transform = std::make_unique<FFTBlock>(*plan);
    const auto bins = static_cast<std::size_t>(plan->getSize()) / 2 + 1;
    for (const auto& each : measurements)
        each->magnitudes.assign(bins, 0.0f);
}

void RealTimeFrequencyAnalyzer::analyse() {
    const bool connected =
        std::all_of(measurements.begin(), measurements.end(), [](const auto& each) { return each->source != nullptr; });
    if (!connected || measurements.empty())
        return;
    for (const auto& each : measurements) {
        each->source->lock();
        while (each->rings.size() < std::min(each->source->channelCount(), maximumChannels))
            each->rings.emplace_back(maxSize);
    }
    preparePlan();
    const AudioSource& first = *measurements.front()->source;
    const std::size_t available = first.blockCount() * first.blockSize();
    if (available > 0 && idleTimer->elapsed() > windowTimeout(static_cast<std::size_t>(plan->getSize()))) {
        writePosition = 0;
        wrapped = false;
        idleTimer->reset();
    }
    const auto hop = static_cast<std::size_t>(plan->getSize()) / 4;
    stepIsNew = true;
    for (std::size_t begin = 0; begin < available;) {
        const std::size_t count = std::min(hop - writePosition % hop, available - begin);
        record(begin, count);
        begin += count;
        if (writePosition % hop == 0)
            finishHop();
    }
    for (const auto& each : measurements)
        each->source->unlock();
}

// Stays within the ring: its length is a multiple of every hop.
void RealTimeFrequencyAnalyzer::record(std::size_t begin, std::size_t count) {
    for (const auto& each : measurements)
        for (std::size_t channel = 0; channel < each->rings.size(); ++channel)
            copySamples(*each->source, channel, begin, {each->rings[channel].data() + writePosition, count});
    writePosition += count;
}

void RealTimeFrequencyAnalyzer::finishHop() {
    for (const auto& each : measurements) {
        ++each->frames;
        const std::size_t channels = std::min(each->source->channelCount(), each->rings.size());
        if (channels == 0)
            std::fill(each->magnitudes.begin(), each->magnitudes.end(), 0.0f);
        for (std::size_t channel = 0; channel < channels; ++channel)
            takeMagnitudes(each->rings[channel], each->magnitudes, stepIsNew && channel == 0);
    }
    stepIsNew = false;
    if (writePosition == static_cast<std::size_t>(maxSize)) {
        writePosition = 0;
        wrapped = true;
    }
    idleTimer->reset();
}

void RealTimeFrequencyAnalyzer::takeMagnitudes(const AlignedBuffer<float>& ring, std::span<float> largest, bool first) {
    const auto size = static_cast<std::size_t>(plan->getSize());
    const std::size_t recent = std::min(size, writePosition); // samples that lie before the write position
    const std::size_t head = size - recent;                   // and those that lie at the end of the ring
    float* const samples = transform->data();
    const float* const window = plan->getWindow().data();
    if (wrapped)
        applyWindow(ring.data() + static_cast<std::size_t>(maxSize) - head, window, samples, head);
    else
        std::fill_n(samples, head, 0.0f);
    applyWindow(ring.data() + writePosition - recent, window + head, samples + head, recent);
    transform->transform();

    const std::size_t half = size / 2;
    const float scale = plan->getWindowScale();
    const float* __restrict re = transform->data();
    const float* __restrict im = transform->data() + half;
    float* __restrict out = largest.data();
    if (first)
        std::fill(largest.begin(), largest.end(), 0.0f);
    const auto take = [&](std::size_t bin, float magnitude) { out[bin] = magnitude > out[bin] ? magnitude : out[bin]; };
    take(0, std::fabs(re[0]) * scale);
    take(half, std::fabs(im[0]) * scale);
    for (std::size_t bin = 1; bin < half; ++bin)
        take(bin, std::sqrt(re[bin] * re[bin] + im[bin] * im[bin]) * scale);
}
