#include "eq/BiquadKernels.h"

namespace {

template <std::size_t channels>
struct DirectForm {
    double x1[channels], x2[channels], y1[channels], y2[channels];

    void load(const BiquadSection& section) noexcept {
        for (std::size_t c = 0; c < channels; ++c) {
            const double* const memory = section.memory[c];
            x1[c] = memory[0];
            x2[c] = memory[1];
            y1[c] = memory[2];
            y2[c] = memory[3];
        }
    }

    void store(const BiquadSection& section) const noexcept {
        for (std::size_t c = 0; c < channels; ++c) {
            double* const memory = section.memory[c];
            memory[0] = x1[c];
            memory[1] = x2[c];
            memory[2] = y1[c];
            memory[3] = y2[c];
        }
    }

    void run(const double* row, const float* const* in, float* const* out, std::size_t begin,
             std::size_t end) noexcept {
        const double b0 = row[0], b1 = row[1], b2 = row[2], a1 = row[3], a2 = row[4];
        for (std::size_t i = begin; i < end; ++i) {
            for (std::size_t c = 0; c < channels; ++c) {
                const double x = static_cast<double>(in[c][i]);
                const double y = b0 * x + b1 * x1[c] + b2 * x2[c] - a1 * y1[c] - a2 * y2[c];
                x2[c] = x1[c];
                x1[c] = x;
                y2[c] = y1[c];
                y1[c] = y;
                out[c][i] = static_cast<float>(y);
            }
        }
    }
};

template <std::size_t channels>
struct StateVariableForm {
    double x1[channels], x2[channels], s1[channels], s2[channels];

    void load(const BiquadSection& section) noexcept {
        for (std::size_t c = 0; c < channels; ++c) {
            const double* const memory = section.memory[c];
            x1[c] = memory[0];
            x2[c] = memory[1];
            s1[c] = memory[2];
            s2[c] = memory[3];
        }
    }

    void store(const BiquadSection& section) const noexcept {
        for (std::size_t c = 0; c < channels; ++c) {
            double* const memory = section.memory[c];
            memory[0] = x1[c];
            memory[1] = x2[c];
            memory[2] = s1[c];
            memory[3] = s2[c];
        }
    }

    void run(const double* row, const float* const* in, float* const* out, std::size_t begin,
             std::size_t end) noexcept {
        const double g = row[0], damping = row[1], m0 = row[2], m1 = row[3], m2 = row[4];
        const double d = 1.0 / (damping * g + 1.0);
        for (std::size_t i = begin; i < end; ++i) {
            for (std::size_t c = 0; c < channels; ++c) {
                const double x = static_cast<double>(in[c][i]);
                const double highPass = (x - damping * s1[c] - s2[c]) * d;
                const double v = highPass * g;
                const double bandPass = v + s1[c];
                s1[c] = bandPass + v;
                const double u = bandPass * g;
                const double lowPass = s2[c] + u;
                s2[c] = lowPass + u;
                x2[c] = x1[c]; // the kernel has no use for past inputs, a change of the form has
                x1[c] = x;
                out[c][i] = static_cast<float>(m2 * highPass + m1 * bandPass + m0 * lowPass);
            }
        }
    }
};

template <template <std::size_t> class Form, std::size_t channels>
void runPlain(const BiquadPass& pass) noexcept {
    const float* const* in = pass.input;
    for (std::size_t s = 0; s < pass.sectionCount; ++s) {
        const BiquadSection& section = pass.sections[s];
        Form<channels> form;
        form.load(section);
        const double* row = section.row;
        std::size_t position = 0;
        for (std::size_t r = 0; r < pass.runCount; ++r) {
            form.run(row, in, pass.output, position, position + pass.runLengths[r]);
            position += pass.runLengths[r];
            row += pass.rowStride;
        }
        form.store(section);
        in = pass.output;
    }
}

constexpr BiquadKernels plain = {{runPlain<DirectForm, 1>, runPlain<DirectForm, 2>},
                                 {runPlain<StateVariableForm, 1>, runPlain<StateVariableForm, 2>}};

const BiquadKernels& chosen = wideBiquadKernels() != nullptr ? *wideBiquadKernels() : plain;

} // namespace

const BiquadKernels& plainBiquadKernels() noexcept REALTIME {
    return plain;
}

const BiquadKernels& biquadKernels() noexcept REALTIME {
    return chosen;
}
