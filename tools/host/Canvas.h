// A picture in memory: rectangles, smooth lines, text in strokes, and its form as a PNG file. Origin top left.
// Threads: any, one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct Colour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

struct Point {
    double x = 0.0;
    double y = 0.0;
};

struct Box {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
};

class Canvas {
public:
    enum class Align { left, centre, right };

    Canvas(std::size_t wide, std::size_t high, Colour background);

    void fill(const Box& box, Colour colour);

    // Lines through the points, cut at the box. Where several pieces overlap, colour is laid on once.
    void stroke(std::span<const std::vector<Point>> pieces, double thickness, Colour colour, const Box& clip);

    // The text stands on y; its capitals are `height` high.
    void write(std::string_view text, Point at, double height, Colour colour, Align align);

    std::string png() const;

private:
    void cover(Point from, Point to, double thickness, const Box& clip);
    void layOn(Colour colour);

    std::size_t width;
    std::size_t height;
    std::vector<Colour> pixels;
    std::vector<float> coverage; // of the drawing under way, all 0 between calls
};
