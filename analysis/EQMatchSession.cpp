#include "analysis/EQMatchSession.h"

#include <algorithm>

EQMatchSession::EQMatchSession(SpectrumPresenter& inputSpectrum, SpectrumPresenter& referenceSpectrum,
                               EQMatchPlacement::Bands& allBands)
    : recordInput(this, false)
    , recordReference(this, false)
    , input(inputSpectrum)
    , referencePresenter(referenceSpectrum)
    , bands(allBands)
    , placement(allBands) {}

void EQMatchSession::propertyChanged(AbstractProperty& changed) {
    if (referenceKind == Reference::input) {
        if (&changed == &recordInput && recordInput)
            recordReference = false;
        else if (&changed == &recordReference && recordReference)
            recordInput = false;
    } else if (referenceKind == Reference::file && recordReference) {
        recordReference = false; // what is loaded does not grow
    }
    followButtons();
}

void EQMatchSession::followButtons() {
    if (presentMode != Mode::analyzing)
        return;
    input.running = recordInput.get();
    referencePresenter.running = recordReference.get();
}

void EQMatchSession::enter(Mode wanted) {
    for (SpectrumPresenter* each : {&input, &referencePresenter}) {
        each->accumulate = wanted != Mode::off;
        each->running = wanted != Mode::matched;
    }
    presentMode = wanted;
    followButtons();
    modeChanged.fire(nullptr);
}

void EQMatchSession::analyze() {
    if (presentMode == Mode::off) {
        referenceKind = Reference::none;
        recordInput = true;
        recordReference = true;
        enter(Mode::analyzing);
    } else if (presentMode == Mode::matched) {
        enter(Mode::analyzing);
        lastVerdict = placement.apply({}, 0);
        if (recordInput)
            input.reset();
        if (recordReference)
            referencePresenter.reset();
    }
}

bool EQMatchSession::canMatch() const noexcept {
    return std::min(input.frameCount(), referencePresenter.frameCount()) >= SpectrumPresenter::framesForMatch;
}

std::vector<float> EQMatchSession::difference() const {
    const std::span<const float> from = input.columns();
    const std::span<const float> to = referencePresenter.columns();
    std::vector<float> curve(from.size(), 0.0f);
    if (!canMatch())
        return curve;
    const std::size_t count = std::min(from.size(), to.size());
    std::transform(from.begin(), from.begin() + static_cast<std::ptrdiff_t>(count), to.begin(), curve.begin(),
                   [](float present, float wanted) { return wanted - present; });
    return curve;
}

void EQMatchSession::match() {
    if (presentMode != Mode::analyzing || !canMatch())
        return;
    placement.forget();
    // Bands may lie outside of what is shown.
    engine.minFrequency = 10.0f;
    engine.maxFrequency = 30000.0f;
    engine.minLog2Frequency = input.minLog2Frequency.get();
    engine.maxLog2Frequency = input.maxLog2Frequency.get();
    engine.prepare(difference(), input.sampleRate);
    engine.run();
    enter(Mode::matched);
    setBandCount(static_cast<std::size_t>(engine.significantBandCount()));
}

void EQMatchSession::setBandCount(std::size_t count) {
    wantedBands = std::min(count, EQMatchPlacement::bandCount);
    lastVerdict = placement.apply(engine.bands(), presentMode == Mode::matched ? wantedBands : 0);
}

void EQMatchSession::cancel() {
    setBandCount(0);
    leave();
}

void EQMatchSession::finish() {
    leave();
}

void EQMatchSession::leave() {
    if (presentMode == Mode::off)
        return;
    enter(Mode::off);
    if (!placement.empty())
        bands.pushUndo();
    placement.forget();
}

void EQMatchSession::chooseReference(Reference wanted) {
    referenceKind = wanted;
    recordReference = false;
    if (wanted == Reference::input)
        recordInput = false;
    if (wanted == Reference::input || wanted == Reference::external) {
        referencePresenter.reset();
        recordReference = true;
    }
}

bool EQMatchSession::loadReference(BinaryDataReader& reader) {
    if (!referencePresenter.loadSpectrum(reader))
        return false;
    referenceKind = Reference::file;
    recordReference = false;
    referencePresenter.running = false;
    return true;
}
