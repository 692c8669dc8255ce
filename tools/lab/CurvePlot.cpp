#include "tools/lab/CurvePlot.h"

#include "base/NumberText.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr Colour paper{255, 255, 255};
constexpr Colour ground{250, 251, 252};
constexpr Colour grid{216, 221, 228};
constexpr Colour axis{150, 158, 170};
constexpr Colour ink{58, 65, 77};
constexpr Colour paleInk{105, 113, 126};
constexpr Box plot{120.0, 110.0, 120.0 + static_cast<double>(CurvePlot::columnCount), 800.0};

struct Label {
    double hz;
    const char* text;
};
constexpr std::array<Label, 11> labels{{{10.0, "10"},
                                        {20.0, "20"},
                                        {50.0, "50"},
                                        {100.0, "100"},
                                        {200.0, "200"},
                                        {500.0, "500"},
                                        {1000.0, "1k"},
                                        {2000.0, "2k"},
                                        {5000.0, "5k"},
                                        {10000.0, "10k"},
                                        {20000.0, "20k"}}};

double xOf(double hz) {
    const double part = std::log(hz / CurvePlot::leastHz) / std::log(CurvePlot::mostHz / CurvePlot::leastHz);
    return plot.left + part * static_cast<double>(CurvePlot::columnCount - 1);
}

double yOf(double db, double least, double most) {
    return plot.bottom - (db - least) / (most - least) * (plot.bottom - plot.top);
}

void drawGrid(Canvas& canvas, double least, double most) {
    for (const Label& label : labels) {
        const double x = std::floor(xOf(label.hz));
        canvas.fill({x, plot.top, x + 1.0, plot.bottom}, grid);
        canvas.write(label.text, {x, plot.bottom + 28.0}, 13.0, ink, Canvas::Align::centre);
    }
    canvas.write("Frequency (Hz)", {(plot.left + plot.right) / 2.0, plot.bottom + 64.0}, 14.0, ink,
                 Canvas::Align::centre);
    const double step = most - least > 70.0 ? 12.0 : most - least > 30.0 ? 6.0 : 3.0;
    for (double db = std::ceil(least / step) * step; db <= most; db += step) {
        const double y = std::min(std::floor(yOf(db, least, most)), plot.bottom - 1.0);
        canvas.fill({plot.left, y, plot.right, y + 1.0}, db == 0.0 ? axis : grid);
        canvas.write(wholeText(std::llround(db)) + " dB", {plot.left - 14.0, y + 6.0}, 13.0, ink, Canvas::Align::right);
    }
}

} // namespace

double CurvePlot::hzOf(std::size_t column) {
    return leastHz * std::pow(mostHz / leastHz, static_cast<double>(column) / static_cast<double>(columnCount - 1));
}

std::string CurvePlot::picture(std::span<const PlotCurve> curves, const std::string& title, const std::string& subtitle,
                               double leastDb, double mostDb) {
    Canvas canvas(1600, 900, paper);
    canvas.fill(plot, ground);
    drawGrid(canvas, leastDb, mostDb);
    for (const PlotCurve& curve : curves) {
        std::array<std::vector<Point>, 1> line;
        for (std::size_t column = 0; column < curve.columns.size(); ++column) {
            const double db = std::clamp(static_cast<double>(curve.columns[column]), leastDb - 50.0, mostDb + 50.0);
            line[0].push_back({plot.left + static_cast<double>(column) + 0.5, yOf(db, leastDb, mostDb)});
        }
        canvas.stroke(line, 2.4, curve.colour, plot);
    }
    canvas.write(title, {plot.left, 48.0}, 20.0, ink, Canvas::Align::left);
    canvas.write(subtitle, {plot.left, 84.0}, 13.0, paleInk, Canvas::Align::left);
    double x = plot.right;
    for (std::size_t i = curves.size(); i-- > 0;) {
        canvas.write(curves[i].name, {x, 84.0}, 13.0, curves[i].colour, Canvas::Align::right);
        x -= 40.0 + 13.0 * static_cast<double>(curves[i].name.size());
    }
    return canvas.png();
}
