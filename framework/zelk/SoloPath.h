// What is heard of a soloed band on one channel: a filter that lets through where the band acts, and its volume.
// Threads: audio, except construction (main).
#pragma once

#include "base/Realtime.h"
#include "eq/EQFilter.h"
#include "wave/VolumeFilter.h"

class EQParameterSet;

class SoloPath {
public:
    explicit SoloPath(wave::Environment& environment);
    SoloPath(const SoloPath&) = delete;
    SoloPath& operator=(const SoloPath&) = delete;

    void setInput(wave::Producer* producer) noexcept REALTIME { preFilter.input = producer; } // not owned
    void follow(const EQParameterSet& band) noexcept REALTIME; // shape, slope, frequency, Q and gain
    void open(wave::Producer& gain) noexcept REALTIME;         // not owned; a linear gain, 1 and below
    void close() noexcept REALTIME;                            // fades to silence

    wave::Producer& filtered() noexcept REALTIME { return filter; }
    wave::Producer& output() noexcept REALTIME { return volume; }

private:
    EQFilter preFilter; // narrows the band once more for shapes that act on a narrow region
    EQFilter filter;
    VolumeFilter volume;
};
