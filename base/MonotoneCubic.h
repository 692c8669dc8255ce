// One piece of a smooth curve through points that never leaves the span between its two ends.
// Threads: any.
#pragma once

#include <algorithm>

// The piece from the second to the third of four points, as the cubic whose slope at an inner point is the weighted
// harmonic mean of the slopes beside it (F. N. Fritsch and J. Butland, 1984), and 0 where the point is an extreme.
class MonotoneCubic {
public:
    struct Point {
        double x;
        double y;
    };

    // By rising x. Where a neighbour is missing, repeat the end point.
    MonotoneCubic(Point before, Point begin, Point end, Point after) noexcept
        : origin(begin.x), span(std::max(end.x - begin.x, 1.0)), c0(begin.y) {
        // The inner control values of the piece in Bezier form.
        const double control1 = begin.y + step(before, begin, end);
        const double control2 = end.y - step({-after.x, -after.y}, {-end.x, -end.y}, {-begin.x, -begin.y});
        c1 = 3.0 * (control1 - begin.y);
        c2 = 3.0 * (control2 - 2.0 * control1 + begin.y);
        c3 = end.y - begin.y + 3.0 * (control1 - control2);
    }

    double operator()(double x) const noexcept {
        const double t = (x - origin) / span;
        return c0 + t * (c1 + t * (c2 + t * c3));
    }

private:
    // From the middle point's value to the control value behind it. Turned by half a turn, the same rule gives the one
    // before it.
    static double step(Point before, Point middle, Point after) noexcept {
        const double width = std::max(after.x - middle.x, 1.0);
        const double a = width / std::max(middle.x - before.x, 1.0) * (middle.y - before.y);
        const double b = after.y - middle.y;
        return a * b > 0.0 ? 2.0 / 3.0 * a * b / (a + b) : 0.0;
    }

    double origin;
    double span;
    double c0;
    double c1;
    double c2;
    double c3;
};
