// How much louder pink noise becomes by a setting of the plug-in, as loudness is measured for broadcast.
// Threads: main.
#pragma once

#include "eq/BandDesign.h"
#include "framework/chl/Layouts.h"
#include "framework/zelk/ZelkParameters.h"

#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

// Of the analog designs. Dynamic bands stand still at a share of their range: 0 at rest, 1 at the end of it.
class PresetLoudness {
public:
    PresetLoudness(const ZelkParameters& wanted, chl::Layout wantedLayout) : parameters(wanted), layout(wantedLayout) {}

    double changeDb(double dynamicShare) const {
        std::vector<Designed> bands = designs(dynamicShare);
        double before = 0.0;
        double after = 0.0;
        for (double hz = 20.0; hz < 20000.0; hz *= 1.01) {
            for (std::size_t channel = 0; channel < channelCount(layout); ++channel) {
                const double noise = channelWeight(chl::speakerCode(layout, channel)) * ear(hz);
                before += noise;
                after += noise * power(bands, chl::speakerCode(layout, channel), hz);
            }
        }
        const FloatPluginParameter& level = parameters.outputLevel;
        return 10.0 * std::log10(after / before) + static_cast<double>(level.value()) * levelDbPerValue;
    }

private:
    struct Designed {
        AnalogFilterPrototype prototype;
        StereoPlacement placement;
        chl::SpeakerSet speakers;
    };

    static constexpr double levelDbPerValue = 36.0; // in the upper part of the level's scale
    static constexpr double sampleRate = 48000.0;
    static constexpr double sideShare = 0.2; // of the power: the sides of usual music lie 6 dB below its middle

    static double radians(double hz) { return 2.0 * std::numbers::pi * hz / sampleRate; }

    std::vector<Designed> designs(double dynamicShare) const {
        std::vector<Designed> result;
        for (std::int32_t i = 0; i < bandCount; ++i) {
            const EQParameterSet& band = parameters.bands.set(i);
            if (!band.used.get() || !band.enabled.get())
                continue;
            const double range = band.dynamicsEnabled.get() ? static_cast<double>(band.dynamicRange.get()) : 0.0;
            const double gain = (static_cast<double>(band.gain.get()) + range * dynamicShare) *
                                static_cast<double>(parameters.gainScale.get());
            Designed& one = result.emplace_back();
            one.placement = band.stereoPlacement.get();
            one.speakers = band.speakers.get();
            designBand(band.shape.get(), band.slope.get(), static_cast<float>(gain),
                       static_cast<float>(band.q.unitFromValue(band.q.get())),
                       radians(std::exp2(static_cast<double>(band.frequency.get()))), one.prototype,
                       radians(flatTiltHz));
        }
        return result;
    }

    // The two filters of the loudness standards (ITU-R BS.1770), as analog ones; pink noise has equal power in each
    // step of a fixed ratio.
    static double ear(double hz) {
        const std::complex<double> low(0.0, hz / 38.13547);
        const std::complex<double> high(0.0, hz / 1681.9745);
        const std::complex<double> cut = low * low / (low * low + low / 0.5003270 + 1.0);
        const std::complex<double> shelf =
            (1.584865 * high * high + 1.258721 * high / 0.7071752 + 1.0) / (high * high + high / 0.7071752 + 1.0);
        return std::norm(cut * shelf);
    }

    static double channelWeight(chl::SpeakerCode code) {
        const chl::SpeakerCode azimuth = code & chl::azimuthBits;
        return (code & chl::lfeBit) != 0 ? 0.0 : azimuth >= 60 && azimuth <= 120 ? 1.41 : 1.0;
    }

    double power(std::vector<Designed>& bands, chl::SpeakerCode code, double hz) const {
        double own = 1.0;
        double middle = 1.0;
        double side = 1.0;
        for (Designed& band : bands) {
            if (!chl::speakerInSet(code, band.speakers))
                continue;
            const double squared = band.prototype.squaredMagnitude(radians(hz));
            const bool inMiddle = (code & chl::middleBit) != 0;
            if (band.placement == StereoPlacement::stereo ||
                (band.placement == StereoPlacement::left && (code & chl::leftBit) != 0) ||
                (band.placement == StereoPlacement::right && (code & chl::rightBit) != 0))
                own *= squared;
            else if (band.placement == StereoPlacement::mid && !inMiddle)
                middle *= squared;
            else if (band.placement == StereoPlacement::side && !inMiddle)
                side *= squared;
        }
        return own * (middle * (1.0 - sideShare) + side * sideShare);
    }

    const ZelkParameters& parameters;
    const chl::Layout layout;
};
