// The course of an EQ Match: two averages grow, their difference becomes bands, the user takes as many as help.
// Threads: the interface's.
#pragma once

#include "analysis/EQMatchEngine.h"
#include "analysis/EQMatchPlacement.h"
#include "analysis/SpectrumPresenter.h"
#include "base/NotifyEvent.h"
#include "base/Property.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class BinaryDataReader;

class EQMatchSession final : private PropertyOwner {
public:
    enum class Mode : std::int32_t { off, analyzing, matched };

    // Where the reference comes from.
    enum class Reference : std::int32_t {
        none,
        input,    // the same signal as the input, so only one of the two listens at a time
        external, // another instance, or the side chain
        file,
    };

    // Neither the presenters nor the bands are owned. Whoever owns them gives the presenters their sources.
    EQMatchSession(SpectrumPresenter& inputSpectrum, SpectrumPresenter& referenceSpectrum,
                   EQMatchPlacement::Bands& allBands);

    NotifyEvent modeChanged;
    Property<bool> recordInput;     // while analyzing: the input's average grows
    Property<bool> recordReference; // the reference's

    void analyze();                               // from off: begins; from matched: goes back, the bands go
    bool canMatch() const noexcept;               // both averages are worth comparing
    void match();                                 // places the significant bands
    void setBandCount(std::size_t count);         // how many of the found bands stand in the plug-in
    void cancel();                                // off, the bands go
    void finish();                                // off, the bands stay
    void chooseReference(Reference wanted);       // its average begins anew; not for files
    bool loadReference(BinaryDataReader& reader); // false: the present reference stays

    Mode mode() const noexcept { return presentMode; }
    Reference reference() const noexcept { return referenceKind; }
    std::size_t bandCount() const noexcept { return wantedBands; } // the slider
    EQMatchPlacement::Verdict verdict() const noexcept { return lastVerdict; }
    std::span<const AnalogFilterPrototype> found() const noexcept { return engine.bands(); }

    // What the input lacks to the reference, in dB for each column; 0 while an average is not worth comparing.
    std::vector<float> difference() const;

private:
    void propertyChanged(AbstractProperty& changed) override;
    void enter(Mode wanted);
    void leave();
    void followButtons();

    SpectrumPresenter& input;
    SpectrumPresenter& referencePresenter;
    EQMatchPlacement::Bands& bands;
    EQMatchPlacement placement;
    EQMatchEngine engine;
    Mode presentMode = Mode::off;
    Reference referenceKind = Reference::none;
    std::size_t wantedBands = 0;
    EQMatchPlacement::Verdict lastVerdict = EQMatchPlacement::Verdict::placed;
};
