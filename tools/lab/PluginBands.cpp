#include "tools/lab/PluginBands.h"

#include "base/NumberText.h"
#include "tools/host/Failure.h"

#include <algorithm>
#include <cmath>

namespace {

std::string nameOf(std::size_t band, const std::string& value) {
    return "Band " + std::to_string(band + 1) + " " + value;
}

const char* shapeText(FilterShape shape) {
    switch (shape) {
    case FilterShape::lowPass:
        return "High Cut";
    case FilterShape::highPass:
        return "Low Cut";
    case FilterShape::lowShelf:
        return "Low Shelf";
    case FilterShape::highShelf:
        return "High Shelf";
    case FilterShape::tiltShelf:
        return "Tilt Shelf";
    case FilterShape::bandPass:
        return "Band Pass";
    case FilterShape::notch:
        return "Notch";
    case FilterShape::flatTilt:
        return "Flat Tilt";
    default:
        return "Bell";
    }
}

const char* slopeText(FilterSlope slope) {
    constexpr const char* texts[] = {"6 dB/oct",  "12 dB/oct", "18 dB/oct", "24 dB/oct", "30 dB/oct",
                                     "36 dB/oct", "48 dB/oct", "72 dB/oct", "96 dB/oct", "Brickwall"};
    return texts[static_cast<std::size_t>(slope)];
}

} // namespace

PluginBands::PluginBands(PluginInstance& wanted) : instance(wanted), parameters(wanted) {
    for (const char* const value : {"Used", "Frequency", "Gain", "Q", "Shape", "Slope"})
        if (!parameters.knows(nameOf(0, value)))
            throw Failure("bands can be set in Zelk alone: this plug-in has no parameter \"" + nameOf(0, value) + "\"");
    for (std::size_t band = 0; band < used.size(); ++band)
        used[band] = parameters.current(parameters.find(nameOf(band, "Used"))) > 0.5;
}

void PluginBands::beginChange() {
    changes.emplace();
}

void PluginBands::set(std::size_t band, const std::string& name, const std::string& value) {
    const clap_param_info& parameter = parameters.find(nameOf(band, name));
    changes->addValue(0, parameter, parameters.valueOf(parameter, value));
}

void PluginBands::setBand(std::size_t band, const EQMatchBand& values) {
    used[band] = true;
    set(band, "Used", "Used");
    set(band, "Enabled", "Enabled");
    set(band, "Shape", shapeText(values.shape));
    set(band, "Slope", slopeText(values.slope));
    set(band, "Frequency", fixedText(std::exp2(static_cast<double>(values.log2Frequency)), 3) + " Hz");
    set(band, "Gain", fixedText(static_cast<double>(values.gainDb), 3) + " dB");
    set(band, "Dynamic Range", "0 dB");
    set(band, "Q", fixedText(static_cast<double>(values.q), 4));
}

void PluginBands::releaseBand(std::size_t band) {
    used[band] = false;
    set(band, "Used", "Unused");
}

void PluginBands::endChange() {
    changes->showBlock(0, 1);
    instance.flush(*changes->clap());
    instance.serve();
    changes.reset();
}

std::string PluginBands::text(const EQMatchBand& band) {
    const auto column = [](std::string words, std::size_t width) {
        words.insert(0, width - std::min(width, words.size()), ' ');
        return words;
    };
    const bool hasGain = AnalogFilterPrototype::hasGain(band.shape);
    return column(shapeText(band.shape), 10) + column(slopeText(band.slope), 11) +
           column(fixedText(std::exp2(static_cast<double>(band.log2Frequency)), 1) + " Hz", 12) +
           column(hasGain ? fixedText(static_cast<double>(band.gainDb), 2) + " dB" : "", 11) +
           column("Q " + fixedText(static_cast<double>(band.q), 3), 10);
}
