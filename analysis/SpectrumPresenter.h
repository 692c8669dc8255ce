// A spectrum as it is shown: one level for each column of pixels, with attack, release, tilt and freeze, or as a
// long-term average.
// Threads: the interface's.
#pragma once

#include "analysis/ColumnSmoother.h"
#include "base/IntervalTimer.h"
#include "base/Property.h"
#include "wave/SpectrumSource.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

class BinaryDataReader;

class SpectrumPresenter final : public PropertyOwner {
public:
    // A curve that is taken out of what is shown, such as that of a band which pulls a peak down.
    class SubtractiveCurve {
    public:
        virtual float db(std::int32_t column) const = 0; // is added

    protected:
        ~SubtractiveCurve() = default;
    };

    static constexpr std::int32_t framesForMatch = 9; // that make an average worth comparing

    explicit SpectrumPresenter(std::unique_ptr<IntervalTimer> sinceSpectrum);

    Property<std::uint32_t> columnCount;  // below 2: nothing can be shown
    Property<float> attackFactor;         // seconds, for a window of 2048 samples at 44.1 kHz
    Property<bool> accumulate;            // a long-term average; a change starts over
    Property<bool> running;               // false: the picture holds
    Property<bool> freeze;                // falling levels come to rest
    LimitedProperty<float> attackFreeze;  // 0 to 1: slows what rises close to the focus
    Property<std::int32_t> focusColumn;   // below 0: none
    LimitedProperty<float> releaseFreeze; // 0 to 1: slows what falls close to the focus
    Property<float> maxLog2Frequency;     // Log2Hz at the last column
    Property<float> minLog2Frequency;     // Log2Hz at column 0
    Property<float> floorDb;
    Property<float> releaseTime;             // seconds for a fall to a tenth
    Property<float> sampleRate;              // Hz
    LimitedProperty<std::int32_t> smoothing; // columns, 1 to ColumnSmoother::maximumWidth
    Property<float> tilt;                    // dB per octave, around 1 kHz

    void setSource(SpectrumSource* wanted) noexcept; // not owned. What it offers now is not taken, only what follows
    void addCurve(const SubtractiveCurve& curve) { curves.push_back(&curve); } // not owned
    void removeCurve(const SubtractiveCurve& curve) { std::erase(curves, &curve); }
    void clearCurves() noexcept { curves.clear(); }

    void update(double elapsedMs); // since the last call
    void reset();                  // clears the picture, the average starts over

    // The average of many minutes as a file, at the resolution of the source. False: nothing was saved.
    [[nodiscard]] bool saveSpectrum(const std::string& path) const;
    // Stops `running` and shows the file's spectrum. False: nothing changed.
    [[nodiscard]] bool loadSpectrum(BinaryDataReader& reader);

    std::span<const float> columns() const noexcept { return shownColumns; } // dB
    std::int32_t frameCount() const noexcept { return frames; }              // spectra in the average
    std::size_t fftSize() const noexcept { return frame.fftSize; }           // of the picture, 0: not yet known

    void propertyChanged(AbstractProperty& changed) override;

private:
    // What the choice of entries depends on.
    struct Frame {
        std::size_t fftSize = 0;
        std::uint32_t columns = 0;
        float minLog2 = 0.0f;
        float maxLog2 = 0.0f;
        float rate = 0.0f;
        bool operator==(const Frame&) const = default;
    };

    // One for each bin that is the first of its columns.
    struct Entry {
        std::size_t column;
        std::size_t bin;
        float value; // the newest reading in dB; the sum of the magnitudes of an average
        float shown; // dB
    };

    void followFrame();
    void makeEntries();
    void carryOver(std::span<const Entry> old, std::size_t oldSize);
    bool takeSpectrum(); // false: there is no new one
    void average();
    void move(double elapsedMs);
    void moveFade(double elapsedMs);
    void fillColumns();
    float levelOf(const Entry& entry) const;
    float tiltAt(std::size_t column) const noexcept; // dB

    std::unique_ptr<IntervalTimer> timer; // since the last spectrum
    SpectrumSource* source = nullptr;
    std::vector<const SubtractiveCurve*> curves;
    Frame frame;
    std::vector<Entry> entries;
    float pictureFloor = -60.0f; // dB, the floor that the entries have fallen to
    float fade = 1.0f;           // of the release, 0 while frozen
    std::int32_t frames = 0;
    std::uint32_t lastFrame = 0;
    bool silent = false; // no spectrum has come for a while
    ColumnSmoother smoother;
    std::vector<float> levels; // of the entries
    std::vector<float> plain;  // of the columns, before smoothing
    std::vector<float> shownColumns;
};
