#include "eq/BiquadSections.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

struct StateVariableRow {
    double g = 0.0, damping = 0.0, m0 = 0.0, m1 = 0.0, m2 = 0.0;
};

StateVariableRow fromDirect(const double* row) noexcept {
    const double b0 = row[0], b1 = row[1], b2 = row[2], a1 = row[3], a2 = row[4];
    const double atZero = 1.0 + a1 + a2; // the denominator at z = 1
    const double atHalf = 1.0 - a1 + a2; // and at z = -1
    StateVariableRow result;
    result.m2 = atHalf != 0.0 ? (b0 - b1 + b2) / atHalf : 0.0;
    if (atZero * atHalf > 0.0) {
        const double root = std::sqrt(atZero * atHalf);
        result.g = std::sqrt(atZero / atHalf);
        result.damping = 2.0 * (1.0 - a2) / root + result.g;
        result.m0 = (b0 + b1 + b2) / atZero;
        result.m1 = 2.0 * (b0 - b2) / root;
    }
    return result;
}

// The state-variable section as s' = A s + B x, y = C s + D x. A12 is -B1, A21 is B1.
struct StateSpace {
    explicit StateSpace(const StateVariableRow& row) noexcept {
        const double d = 1.0 / (row.damping * row.g + 1.0);
        through = (row.g * row.g * row.m0 + row.g * row.m1 + row.m2) * d;
        b1 = 2.0 * row.g * d;
        b2 = 2.0 * row.g * row.g * d;
        a11 = 1.0 - b1 * row.damping;
        a22 = 1.0 - b2;
        c1 = row.m0 * row.g + row.m1 - through * row.damping;
        c2 = row.m0 - through;
    }

    double a11, a22, b1, b2, c1, c2, through;
};

} // namespace

void convertSectionMemory(SectionForm oldForm, const double* row, double* memory) noexcept REALTIME {
    const double x1 = memory[0], x2 = memory[1];
    if (oldForm == SectionForm::direct) {
        const StateSpace space(fromDirect(row));
        // Two past outputs determine the state two samples back: y2 = C s + D x2, y1 = C A s + C B x2 + D x1.
        const double ca1 = space.c1 * space.a11 + space.c2 * space.b1;
        const double ca2 = space.c2 * space.a22 - space.c1 * space.b1;
        const double cb = space.c1 * space.b1 + space.c2 * space.b2;
        const double determinant = space.c1 * ca2 - space.c2 * ca1;
        double s1 = 0.0, s2 = 0.0;
        if (determinant != 0.0 && space.c1 != 0.0) {
            const double earlier = memory[3] - space.through * x2;
            const double later = memory[2] - space.through * x1 - cb * x2;
            s2 = (space.c1 * later - ca1 * earlier) / determinant;
            s1 = (earlier - space.c2 * s2) / space.c1;
        }
        for (const double x : {x2, x1}) {
            const double next1 = space.a11 * s1 - space.b1 * s2 + space.b1 * x;
            s2 = space.b1 * s1 + space.a22 * s2 + space.b2 * x;
            s1 = next1;
        }
        memory[2] = s1;
        memory[3] = s2;
        return;
    }
    const StateSpace space({row[0], row[1], row[2], row[3], row[4]});
    const double determinant = space.a11 * space.a22 + space.b1 * space.b1;
    double s1 = memory[2], s2 = memory[3];
    memory[2] = memory[3] = 0.0;
    if (determinant == 0.0 || space.a11 == 0.0)
        return;
    for (int past = 0; past < 2; ++past) {
        const double x = memory[past];
        const double rest1 = s1 - space.b1 * x;
        const double rest2 = s2 - space.b2 * x;
        s1 = (space.a22 * rest1 + space.b1 * rest2) / determinant;
        s2 = (space.a11 * rest2 - space.b1 * rest1) / determinant;
        memory[2 + past] = space.c1 * s1 + space.c2 * s2 + space.through * x;
    }
}

void convertSectionRow(SectionForm newForm, double* row) noexcept REALTIME {
    if (newForm == SectionForm::stateVariable) {
        const StateVariableRow to = fromDirect(row);
        const double values[] = {to.g, to.damping, to.m0, to.m1, to.m2};
        std::copy_n(values, sectionLength, row);
        return;
    }
    const double g = row[0], damping = row[1], m0 = row[2], m1 = row[3], m2 = row[4];
    const double d = 1.0 / (damping * g + 1.0);
    row[0] = (g * g * m0 + g * m1 + m2) * d;
    row[1] = 2.0 * (g * g * m0 - m2) * d;
    row[2] = (g * g * m0 - g * m1 + m2) * d;
    row[3] = 2.0 * (g * g - 1.0) * d;
    row[4] = (g * g - (damping - g) * g + 1.0) * d;
}

std::complex<double> cascadeResponse(const double* rows, std::size_t sectionCount, double w) noexcept REALTIME {
    ResponseProduct product(1);
    multiplyCascade(product, rows, sectionCount, {&w, 1});
    return product.value(0);
}

void multiplyCascade(ResponseProduct& product, const double* rows, std::size_t sectionCount,
                     std::span<const double> frequencies) noexcept REALTIME {
    std::array<double, ResponseProduct::most> re1, im1, re2, im2; // of the delay by a sample and by two
    for (std::size_t i = 0; i < frequencies.size(); ++i) {
        re1[i] = std::cos(frequencies[i]);
        im1[i] = -std::sin(frequencies[i]);
        re2[i] = re1[i] * re1[i] - im1[i] * im1[i];
        im2[i] = 2.0 * re1[i] * im1[i];
    }
    for (std::size_t s = 0; s < sectionCount; ++s, rows += sectionLength) {
        const double b0 = rows[0], b1 = rows[1], b2 = rows[2], a1 = rows[3], a2 = rows[4];
        product.multiply([&](std::size_t i) {
            return ResponseProduct::Factor{b0 + b1 * re1[i] + b2 * re2[i], b1 * im1[i] + b2 * im2[i],
                                           1.0 + a1 * re1[i] + a2 * re2[i], a1 * im1[i] + a2 * im2[i]};
        });
    }
}
