// Puts the bands of a match where bands are free, and takes them back.
// Threads: the interface's.
#pragma once

#include "eq/AnalogFilterPrototype.h"
#include "eq/FilterTypes.h"
#include "eq/ProcessingTypes.h"
#include "framework/chl/Layouts.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Every value that a placed band gets, in the order in which they are set; what is not named here stays.
struct EQMatchBand {
    explicit EQMatchBand(const AnalogFilterPrototype& found); // with its frequency in Hz

    bool used = true;
    bool enabled = true;
    FilterShape shape;
    FilterSlope slope;
    float log2Frequency; // Log2Hz
    float gainDb;
    float dynamicRangeDb = 0.0f;
    float q; // plain
    StereoPlacement stereoPlacement = StereoPlacement::stereo;
    chl::SpeakerSet speakers = chl::SpeakerSet::allButLfe;
    bool solo = false;
};

class EQMatchPlacement {
public:
    static constexpr std::size_t bandCount = 24;

    // The bands of the plug-in.
    class Bands {
    public:
        virtual bool isUsed(std::size_t band) const = 0;
        virtual void beginChange() = 0;
        virtual void setBand(std::size_t band, const EQMatchBand& values) = 0;
        virtual void releaseBand(std::size_t band) = 0; // is not used any more
        virtual void endChange() = 0;
        virtual void pushUndo() = 0;

    protected:
        ~Bands() = default;
    };

    // What the label of the slider tells by its colour.
    enum class Verdict {
        placed,   // as many as were asked for
        allFound, // more were asked for than there are
        noneFree, // the plug-in has no band left
    };

    explicit EQMatchPlacement(Bands& all) : bands(all) {}

    // Makes the first `count` of the found bands stand in the plug-in, each where it stood before, and no more.
    Verdict apply(std::span<const AnalogFilterPrototype> found, std::size_t count);

    void forget() noexcept { placed.clear(); } // the bands stay where they are
    bool empty() const noexcept { return placed.empty(); }

private:
    std::size_t firstFree() const; // bandCount: none

    Bands& bands;
    std::vector<std::size_t> placed; // in the order of the found bands
};
