// What one analog section and a whole analog design answer alike. Frequencies are in radians per sample.
// Threads: any, one at a time for each object.
#pragma once

#include "base/Realtime.h"

#include <complex>
#include <cstddef>

class AnalogFilterPrototypeBase {
public:
    virtual ~AnalogFilterPrototypeBase() = default;

    // The arrays of the two plural questions are padded: count is rounded up to groups of 4.
    virtual std::complex<double> response(double w) const noexcept REALTIME = 0;
    virtual void squaredMagnitudes(const float* w, float* out, std::size_t count) const noexcept REALTIME = 0;
    virtual double squaredMagnitude(double w) noexcept REALTIME = 0; // may renew a cache, hence not const
    virtual void phases(const float* w, float* out, std::size_t count) const noexcept REALTIME = 0; // within +-pi
    virtual void setFrequency(double w0, double invW0) noexcept REALTIME = 0;

    double invFrequency = 1.0;
    double frequency = 1.0;

protected:
    static constexpr std::size_t wholeGroups(std::size_t count) noexcept REALTIME;
    // Brings each sum of phases to one turn; those at half a turn stay on their side of it.
    static void wrapPhases(float* inOut, std::size_t count) noexcept REALTIME;

    AnalogFilterPrototypeBase() = default;
    AnalogFilterPrototypeBase(const AnalogFilterPrototypeBase&) = default;
    AnalogFilterPrototypeBase& operator=(const AnalogFilterPrototypeBase&) = default;
};

constexpr std::size_t AnalogFilterPrototypeBase::wholeGroups(std::size_t count) noexcept REALTIME {
    return (count + 3) / 4 * 4;
}
