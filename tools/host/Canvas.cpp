#include "tools/host/Canvas.h"

#include "tools/host/StrokeFont.h"

#include <algorithm>
#include <cmath>

namespace {

double distanceToSegment(Point p, Point a, Point b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double squared = dx * dx + dy * dy;
    const double along = squared > 0.0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / squared, 0.0, 1.0) : 0.0;
    return std::hypot(p.x - a.x - along * dx, p.y - a.y - along * dy);
}

std::size_t pixelAt(double position, std::size_t most) {
    return static_cast<std::size_t>(std::clamp(position, 0.0, static_cast<double>(most)));
}

std::uint8_t mixed(std::uint8_t below, std::uint8_t above, float part) {
    const float from = below;
    const float to = above;
    return static_cast<std::uint8_t>(std::lround(from + part * (to - from)));
}

} // namespace

Canvas::Canvas(std::size_t wide, std::size_t high, Colour background)
    : width(wide), height(high), pixels(wide * high, background), coverage(wide * high) {}

void Canvas::fill(const Box& box, Colour colour) {
    for (std::size_t y = pixelAt(box.top, height); y < pixelAt(box.bottom, height); ++y)
        std::fill(pixels.begin() + static_cast<std::ptrdiff_t>(y * width + pixelAt(box.left, width)),
                  pixels.begin() + static_cast<std::ptrdiff_t>(y * width + pixelAt(box.right, width)), colour);
}

void Canvas::cover(Point from, Point to, double thickness, const Box& clip) {
    const double reach = thickness / 2.0 + 1.0;
    const std::size_t left = pixelAt(std::max(std::min(from.x, to.x) - reach, clip.left), width);
    const std::size_t right = pixelAt(std::min(std::max(from.x, to.x) + reach + 1.0, clip.right), width);
    const std::size_t top = pixelAt(std::max(std::min(from.y, to.y) - reach, clip.top), height);
    const std::size_t bottom = pixelAt(std::min(std::max(from.y, to.y) + reach + 1.0, clip.bottom), height);
    for (std::size_t y = top; y < bottom; ++y) {
        for (std::size_t x = left; x < right; ++x) {
            const Point centre{static_cast<double>(x) + 0.5, static_cast<double>(y) + 0.5};
            const double inside = thickness / 2.0 + 0.5 - distanceToSegment(centre, from, to);
            float& covered = coverage[y * width + x];
            covered = std::max(covered, static_cast<float>(std::clamp(inside, 0.0, 1.0)));
        }
    }
}

void Canvas::layOn(Colour colour) {
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (coverage[i] == 0.0f)
            continue;
        Colour& pixel = pixels[i];
        pixel = {mixed(pixel.red, colour.red, coverage[i]), mixed(pixel.green, colour.green, coverage[i]),
                 mixed(pixel.blue, colour.blue, coverage[i])};
        coverage[i] = 0.0f;
    }
}

void Canvas::stroke(std::span<const std::vector<Point>> pieces, double thickness, Colour colour, const Box& clip) {
    for (const std::vector<Point>& piece : pieces) {
        for (std::size_t i = 0; i + 1 < piece.size(); ++i)
            cover(piece[i], piece[i + 1], thickness, clip);
        if (piece.size() == 1)
            cover(piece[0], piece[0], thickness, clip);
    }
    layOn(colour);
}

void Canvas::write(std::string_view text, Point at, double letterHeight, Colour colour, Align align) {
    std::vector<std::vector<Point>> pieces = strokesOf(text);
    const double scale = letterHeight / strokeCapHeight;
    const double length = strokeLength(text) * scale;
    const double start = at.x - (align == Align::left ? 0.0 : align == Align::centre ? length / 2.0 : length);
    for (std::vector<Point>& piece : pieces) {
        for (Point& point : piece)
            point = {start + point.x * scale, at.y - point.y * scale};
    }
    const Box everywhere{0.0, 0.0, static_cast<double>(width), static_cast<double>(height)};
    stroke(pieces, std::max(1.2, letterHeight * 0.115), colour, everywhere);
}
