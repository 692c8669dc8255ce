#include "tools/host/ResponsePlot.h"

#include "base/NumberText.h"
#include "tools/host/Canvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <utility>

namespace {

constexpr std::size_t pictureWidth = 1600;
constexpr std::size_t pictureHeight = 1000;
constexpr Colour paper{255, 255, 255};
constexpr Colour ground{250, 251, 252};
constexpr Colour thinGrid{236, 239, 243};
constexpr Colour grid{216, 221, 228};
constexpr Colour axis{150, 158, 170};
constexpr Colour ink{58, 65, 77};
constexpr Colour paleInk{105, 113, 126};
constexpr std::array<Colour, 6> curveColours{
    {{22, 101, 216}, {214, 84, 36}, {18, 140, 90}, {142, 68, 173}, {190, 140, 10}, {20, 150, 170}}};

constexpr Box magnitudeBox{120.0, 110.0, 1560.0, 650.0};
constexpr Box phaseBox{120.0, 680.0, 1560.0, 900.0};
constexpr double leastHz = 10.0;
constexpr double mostHz = 30000.0;
constexpr double deepestDb = 60.0; // below the peak; what is deeper leaves the picture

struct Scale {
    double least = 0.0;
    double most = 0.0;
    double step = 0.0; // of labelled lines
};

double yOf(const Box& box, const Scale& scale, double value) {
    return box.bottom - (value - scale.least) / (scale.most - scale.least) * (box.bottom - box.top);
}

struct FrequencyAxis {
    double most = 0.0;

    double xOf(double hz) const {
        const double part = std::log(hz / leastHz) / std::log(most / leastHz);
        return magnitudeBox.left + part * (magnitudeBox.right - magnitudeBox.left);
    }
    bool shows(double hz) const { return hz >= leastHz && hz <= most; }
};

Scale decibelScale(std::span<const Response> responses, const FrequencyAxis& frequencies) {
    double most = -1000.0;
    double least = 1000.0;
    for (const Response& response : responses) {
        for (std::size_t bin = 0; bin < response.bins.size(); ++bin) {
            const double value = response.magnitudeDb(bin);
            if (!frequencies.shows(response.hz(bin)) || !std::isfinite(value))
                continue;
            most = std::max(most, value);
            least = std::min(least, value);
        }
    }
    if (most < least) // nothing comes through at all
        return {-12.0, 12.0, 3.0};
    least = std::max(least, most - deepestDb);
    const double middle = (least + most) / 2.0;
    const double half = std::max(3.0, (most - least) / 2.0);
    Scale scale;
    for (const double step : {1.0, 2.0, 3.0, 6.0, 12.0}) {
        scale.step = step;
        if (2.0 * half <= 9.0 * step)
            break;
    }
    scale.least = scale.step * std::floor((middle - half) / scale.step - 0.2);
    scale.most = scale.step * std::ceil((middle + half) / scale.step + 0.2);
    return scale;
}

// Grid lines lie on whole pixels, so that all look the same.
void gridLine(Canvas& canvas, const Box& box, bool upright, double position, Colour colour) {
    const double pixel = std::floor(position);
    canvas.fill(upright ? Box{pixel, box.top, pixel + 1.0, box.bottom} : Box{box.left, pixel, box.right, pixel + 1.0},
                colour);
}

std::string frequencyText(double hz) {
    const bool kilo = hz >= 1000.0;
    return wholeText(std::llround(kilo ? hz / 1000.0 : hz)).append(kilo ? "k" : "");
}

void drawFrequencyGrid(Canvas& canvas, const FrequencyAxis& frequencies) {
    for (double decade = 10.0; decade <= frequencies.most; decade *= 10.0) {
        for (int digit = 1; digit <= 9; ++digit) {
            const double hz = decade * digit;
            if (!frequencies.shows(hz))
                continue;
            const bool labelled = digit == 1 || digit == 2 || digit == 5 || hz == 30000.0;
            const double x = frequencies.xOf(hz);
            gridLine(canvas, magnitudeBox, true, x, labelled ? grid : thinGrid);
            gridLine(canvas, phaseBox, true, x, labelled ? grid : thinGrid);
            if (labelled)
                canvas.write(frequencyText(hz), {x, phaseBox.bottom + 28.0}, 13.0, ink, Canvas::Align::centre);
        }
    }
    canvas.write("Frequency (Hz)", {(phaseBox.left + phaseBox.right) / 2.0, phaseBox.bottom + 64.0}, 14.0, ink,
                 Canvas::Align::centre);
}

void drawValueGrid(Canvas& canvas, const Box& box, const Scale& scale, const char* unit) {
    const auto lines = static_cast<int>(std::lround((scale.most - scale.least) / scale.step));
    for (int i = 0; i <= lines; ++i) {
        const double value = scale.least + i * scale.step;
        const double y = yOf(box, scale, value);
        gridLine(canvas, box, false, std::min(y, box.bottom - 1.0), value == 0.0 ? axis : grid);
        std::string text = value > 0.0 ? "+" : "";
        text.append(wholeText(std::llround(value))).append(unit);
        canvas.write(text, {box.left - 14.0, y + 6.0}, 13.0, ink, Canvas::Align::right);
    }
}

void drawFrame(Canvas& canvas, const Box& box) {
    gridLine(canvas, box, true, box.left, axis);
    gridLine(canvas, box, true, box.right - 1.0, axis);
    gridLine(canvas, box, false, box.top, axis);
    gridLine(canvas, box, false, box.bottom - 1.0, axis);
}

// The bins of one pixel column become at most four points: first, lowest, highest, last. The picture is the same.
class ColumnPoints {
public:
    explicit ColumnPoints(std::vector<Point>& curve) : target(curve) {}
    ~ColumnPoints() { flush(); }
    ColumnPoints(const ColumnPoints&) = delete;
    ColumnPoints& operator=(const ColumnPoints&) = delete;

    void add(Point point) {
        if (!column.empty() && std::floor(point.x) != std::floor(column.front().x))
            flush();
        column.push_back(point);
    }

private:
    void flush() {
        if (column.empty())
            return;
        const auto lower = [](const Point& a, const Point& b) { return a.y < b.y; };
        const auto [lowest, highest] = std::minmax_element(column.begin(), column.end(), lower);
        target.push_back(column.front());
        target.push_back(lowest < highest ? *lowest : *highest);
        target.push_back(lowest < highest ? *highest : *lowest);
        target.push_back(column.back());
        column.clear();
    }

    std::vector<Point>& target;
    std::vector<Point> column;
};

// One bin beyond each end of the axis keeps the curve up to the frame.
bool nearAxis(const Response& response, const FrequencyAxis& frequencies, std::size_t bin) {
    return bin > 0 && response.hz(bin + 1) >= leastHz && response.hz(bin - 1) <= frequencies.most;
}

void drawMagnitude(Canvas& canvas, const Response& response, const FrequencyAxis& frequencies, const Scale& scale,
                   Colour colour) {
    std::array<std::vector<Point>, 1> curve;
    {
        ColumnPoints points(curve[0]);
        for (std::size_t bin = 1; bin < response.bins.size(); ++bin) {
            const double value = std::max(response.magnitudeDb(bin), scale.least - 100.0);
            if (nearAxis(response, frequencies, bin))
                points.add({frequencies.xOf(response.hz(bin)), yOf(magnitudeBox, scale, value)});
        }
    }
    canvas.stroke(curve, 3.0, colour, magnitudeBox);
}

void drawPhase(Canvas& canvas, const Response& response, const FrequencyAxis& frequencies, const Scale& scale,
               double noiseDb, Colour colour) {
    std::vector<std::vector<Point>> pieces(1);
    double before = 0.0;
    for (std::size_t bin = 1; bin < response.bins.size(); ++bin) {
        const double value = response.phaseDegrees(bin);
        const bool drawn = nearAxis(response, frequencies, bin) && response.magnitudeDb(bin) > noiseDb;
        if ((!drawn || std::abs(value - before) > 180.0) && !pieces.back().empty())
            pieces.emplace_back();
        if (drawn)
            pieces.back().push_back({frequencies.xOf(response.hz(bin)), yOf(phaseBox, scale, value)});
        before = value;
    }
    canvas.stroke(pieces, 2.4, colour, phaseBox);
}

} // namespace

std::string responsePicture(std::span<const Response> responses, const std::string& title,
                            const std::string& subtitle) {
    Canvas canvas(pictureWidth, pictureHeight, paper);
    const FrequencyAxis frequencies{std::clamp(responses.front().sampleRate / 2.0, leastHz * 2.0, mostHz)};
    const Scale decibels = decibelScale(responses, frequencies);
    const Scale degrees{-180.0, 180.0, 90.0};
    canvas.fill(magnitudeBox, ground);
    canvas.fill(phaseBox, ground);
    drawFrequencyGrid(canvas, frequencies);
    drawValueGrid(canvas, magnitudeBox, decibels, " dB");
    drawValueGrid(canvas, phaseBox, degrees, "\xc2\xb0");
    for (std::size_t i = 0; i < responses.size(); ++i) {
        const Colour colour = curveColours[i % curveColours.size()];
        drawPhase(canvas, responses[i], frequencies, degrees, decibels.most - 130.0, colour);
        drawMagnitude(canvas, responses[i], frequencies, decibels, colour);
    }
    drawFrame(canvas, magnitudeBox);
    drawFrame(canvas, phaseBox);

    canvas.write(title, {magnitudeBox.left, 48.0}, 20.0, ink, Canvas::Align::left);
    canvas.write(subtitle, {magnitudeBox.left, 84.0}, 13.0, paleInk, Canvas::Align::left);
    if (responses.size() > 1) {
        double x = magnitudeBox.right;
        for (std::size_t i = responses.size(); i-- > 0;) {
            const std::string label = "channel " + wholeText(responses[i].input);
            canvas.write(label, {x, 84.0}, 13.0, curveColours[i % curveColours.size()], Canvas::Align::right);
            x -= 120.0;
        }
    }
    return canvas.png();
}
