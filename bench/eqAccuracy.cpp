// How closely the digital sections follow the analog designs, and whether any design anywhere is unstable.
//   eqAccuracy               the tables, as they stand in docs/filter-accuracy.md
//   eqAccuracy sweep [count] that many random designs of each shape, besides the grid
#include "tests/support/DesignSweep.h"

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Name {
    FilterShape shape;
    const char* text;
};

constexpr Name shapes[] = {
    {FilterShape::bell, "Bell"},          {FilterShape::lowShelf, "Low Shelf"},
    {FilterShape::lowPass, "High Cut"},   {FilterShape::highShelf, "High Shelf"},
    {FilterShape::highPass, "Low Cut"},   {FilterShape::notch, "Notch"},
    {FilterShape::bandPass, "Band Pass"}, {FilterShape::tiltShelf, "Tilt Shelf"},
    {FilterShape::flatTilt, "Flat Tilt"},
};
constexpr const char* slopes[] = {"6", "12", "18", "24", "30", "36", "48", "72", "96", "Brickwall"};
constexpr double rates[] = {44100.0, 48000.0, 96000.0};
constexpr float qs[] = {0.025f, 0.05f, 0.1f, 0.2f,  0.4f,  0.7f,  1.0f, 1.5f,
                        2.5f,   4.0f,  6.3f, 10.0f, 16.0f, 25.0f, 40.0f};
constexpr float gains[] = {-30.0f, -18.0f, -9.0f, -3.0f, 3.0f, 9.0f, 18.0f, 30.0f};
constexpr double topHz = 20000.0;
constexpr double floorPower = 1e-6; // what lies below -60 dB is not compared: nobody hears how deep it lies
constexpr double audibleDb = 0.1;

// A frequency at which curves are compared, as both kinds of section want it.
struct Place {
    double hz;
    double w;
    double squaredTangent;
};

struct Error {
    double db = 0.0;
    double atHz = 0.0;
};

struct Worst {
    Error error;
    Band band;

    void take(const Error& other, const Band& from) {
        if (!(other.db <= error.db)) { // not-a-number wins
            error = other;
            band = from;
        }
    }
    std::string text() const {
        char line[120];
        int length = std::snprintf(line, sizeof line, "%.3g at %.0f Hz (%.0f Hz, Q %g", error.db, error.atHz,
                                   band.frequencyHz, static_cast<double>(band.q));
        std::string whole(line, static_cast<std::size_t>(length));
        if (AnalogFilterPrototype::hasGain(band.shape)) {
            length = std::snprintf(line, sizeof line, ", %+g dB", static_cast<double>(band.gainDb));
            whole.append(line, static_cast<std::size_t>(length));
        }
        return whole + ")";
    }
};

struct Cell {
    Worst all;
    Worst everyday; // up to 10 kHz and a Q of 4
    long designs = 0;
    long audible = 0;
};

std::vector<Place> placesOf(const Band& band) {
    std::vector<double> hz;
    for (double f = 10.0; f < topHz; f *= 1.0645)
        hz.push_back(f);
    hz.push_back(topHz);
    for (const double octaves : {0.0, 0.001, 0.003, 0.006, 0.01, 0.02, 0.04, 0.1, 0.25, 0.6})
        for (const double sign : {-1.0, 1.0})
            hz.push_back(std::min(band.frequencyHz * std::exp2(sign * octaves), topHz));
    std::vector<Place> places;
    for (const double f : hz) {
        const double t = std::tan(0.5 * band.radians(f));
        places.push_back({f, band.radians(f), t * t});
    }
    return places;
}

// From the state-variable row, which keeps its digits near DC.
double digitalPower(std::span<const double> row, double squaredTangent) {
    const double g2 = row[0] * row[0];
    if (g2 == 0.0)
        return row[4] * row[4];
    const double numerator = row[2] * g2 - row[4] * squaredTangent;
    const double denominator = g2 - squaredTangent;
    const double damping = (row[1] - row[0]) * row[0];
    return (numerator * numerator + row[3] * row[3] * g2 * squaredTangent) /
           (denominator * denominator + damping * damping * squaredTangent);
}

Error errorOf(DesignedBand& designed, std::span<const Place> places) {
    Error worst;
    for (const Place& place : places) {
        const double wanted = designed.prototype.squaredMagnitude(place.w);
        if (wanted < floorPower)
            continue;
        double got = 1.0;
        for (std::size_t i = 0; i < designed.rows().size(); i += sectionLength)
            got *= digitalPower(designed.rows().subspan(i, sectionLength), place.squaredTangent);
        const double error = std::fabs(10.0 * std::log10(got / wanted));
        if (!(error <= worst.db))
            worst = {error, place.hz};
    }
    return worst;
}

template <typename Visit>
void overSettings(FilterShape shape, FilterSlope slope, double sampleRate, double step, Visit visit) {
    constexpr float noGain[] = {0.0f};
    constexpr float noQ[] = {1.0f};
    const std::span<const float> usedGains =
        AnalogFilterPrototype::hasGain(shape) ? std::span<const float>(gains) : noGain;
    const std::span<const float> usedQs =
        shape == FilterShape::flatTilt || isBrickwall(shape, slope) ? std::span<const float>(noQ) : qs;
    for (double hz = 10.0; hz < 30001.0; hz *= step)
        for (const float q : usedQs)
            for (const float gain : usedGains)
                visit(Band{shape, slope, hz, q, gain, sampleRate});
}

Cell measure(FilterShape shape, FilterSlope slope, double sampleRate) {
    Cell cell;
    std::vector<Place> places;
    double placesHz = 0.0;
    overSettings(shape, slope, sampleRate, 1.0905077, [&](const Band& band) { // an eighth of an octave
        if (placesHz != band.frequencyHz)
            places = placesOf(band);
        placesHz = band.frequencyHz;
        DesignedBand designed(band, SectionForm::stateVariable);
        const Error error = errorOf(designed, places);
        ++cell.designs;
        cell.audible += error.db > audibleDb;
        cell.all.take(error, band);
        if (band.frequencyHz <= 10000.0 && band.q <= 4.0f)
            cell.everyday.take(error, band);
    });
    return cell;
}

bool isOwnRow(FilterShape shape, FilterSlope slope) {
    if (shape == FilterShape::flatTilt)
        return slope == FilterSlope::db12;
    return isBrickwall(shape, slope) || (slope != FilterSlope::brickwall && slopeIsExact(shape, slope));
}

void printTables() {
    constexpr std::size_t rateCount = std::size(rates);
    std::string worst;
    std::string everyday;
    for (const Name& name : shapes) {
        for (std::size_t slope = 0; slope < std::size(slopes); ++slope) {
            if (!isOwnRow(name.shape, static_cast<FilterSlope>(slope)))
                continue;
            const std::string head =
                std::string("| ") + name.text + " | " + (name.shape == FilterShape::flatTilt ? "-" : slopes[slope]);
            worst += head;
            everyday += head;
            for (std::size_t rate = 0; rate < rateCount; ++rate) {
                const Cell cell = measure(name.shape, static_cast<FilterSlope>(slope), rates[rate]);
                char share[24];
                std::snprintf(share, sizeof share, " | %.2f %%",
                              100.0 * static_cast<double>(cell.audible) / static_cast<double>(cell.designs));
                worst += " | " + cell.all.text() + share;
                everyday += " | " + cell.everyday.text();
            }
            worst += " |\n";
            everyday += " |\n";
        }
    }
    std::printf("| Shape | Slope | 44.1 kHz | > 0.1 dB | 48 kHz | > 0.1 dB | 96 kHz | > 0.1 dB |\n"
                "|---|---|---|---|---|---|---|---|\n%s\n",
                worst.c_str());
    std::printf("| Shape | Slope | 44.1 kHz | 48 kHz | 96 kHz |\n|---|---|---|---|---|\n%s", everyday.c_str());
}

void printBand(const char* what, const Band& band) {
    std::printf("  %s: shape %d, slope %s, %.2f Hz, Q %g, %+g dB at %g Hz\n", what, static_cast<int>(band.shape),
                slopes[static_cast<std::size_t>(band.slope)], band.frequencyHz, static_cast<double>(band.q),
                static_cast<double>(band.gainDb), band.sampleRate);
}

bool sweep(long randomCount) {
    constexpr double sweepRates[] = {44100.0, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0};
    std::mt19937_64 random(1);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    bool good = true;
    for (const Name& name : shapes) {
        DesignSweep designs;
        for (std::size_t slope = 0; slope < std::size(slopes); ++slope)
            for (const double rate : sweepRates)
                overSettings(name.shape, static_cast<FilterSlope>(slope), rate, 1.1892071, // a quarter of an octave
                             [&](const Band& band) { designs.add(band); });
        for (long i = 0; i < randomCount; ++i)
            designs.add({name.shape, static_cast<FilterSlope>(random() % std::size(slopes)),
                         std::exp(between(std::log(10.0), std::log(30000.0))),
                         static_cast<float>(std::exp(between(std::log(0.025), std::log(40.0)))),
                         static_cast<float>(between(-30.0, 30.0)), sweepRates[random() % std::size(sweepRates)]});
        std::printf("%s: %ld designs, %ld sections, %ld constant, %ld held inside the circle, %ld not finite, "
                    "%ld unstable, largest pole radius 1 - %.3g, forms differ by %.3g dB at most\n",
                    name.text, designs.designs, designs.sections, designs.constantSections, designs.heldSections,
                    designs.notFinite, designs.unstable, 1.0 - designs.largestRadius, designs.worstFormDifferenceDb);
        if (designs.heldSections > 0)
            printBand("held", designs.lastHeld);
        if (designs.notFinite + designs.unstable > 0)
            printBand("broken", designs.lastBroken);
        good = good && designs.notFinite == 0 && designs.unstable == 0 && designs.worstFormDifferenceDb < 1e-6;
    }
    return good;
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount < 2) {
        printTables();
        return 0;
    }
    if (std::string_view(arguments[1]) != "sweep") {
        std::fputs("usage: eqAccuracy [sweep [count]]\n", stderr);
        return 2;
    }
    return sweep(argumentCount > 2 ? std::atol(arguments[2]) : 0) ? 0 : 1;
}
