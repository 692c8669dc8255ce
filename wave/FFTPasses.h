// The bodies of the transform's inner loops, for vectors of any width. Only the kernel files include this.
// Threads: any.
//
// `Lanes` is a type without external linkage: two files that are compiled for different instruction sets must not
// share an instance. For the same reason nothing here calls the standard library.
#pragma once

#include "wave/FFTKernels.h"

#include <cstdint>

// One lane: plain C++, and what the wide tables do at the ends. `File` keeps the instances of two files apart.
template <typename File>
struct FFTSingle {
    using Vector = float;
    static constexpr std::int32_t lanes = 1;

    static Vector load(const float* from) noexcept { return *from; }
    static Vector loadReversed(const float* from) noexcept { return *from; }
    static Vector broadcast(float value) noexcept { return value; }
    static void loadPairs(const float* from, Vector& first, Vector& second) noexcept {
        first = from[0];
        second = from[1];
    }
    static void store(float* to, Vector value) noexcept { *to = value; }
    static void storeReversed(float* to, Vector value) noexcept { *to = value; }
    static void storePairs(float* to, Vector first, Vector second) noexcept {
        to[0] = first;
        to[1] = second;
    }
    template <typename... Vectors>
    static void storeRows(float* to, Vectors... columns) noexcept { // to[8 lane + column]
        ((*to++ = columns), ...);
    }
};

// Complex values, one a lane.
template <typename Lanes>
struct FFTValue {
    using Vector = typename Lanes::Vector;

    Vector re;
    Vector im;

    FFTValue operator+(FFTValue other) const noexcept { return {re + other.re, im + other.im}; }
    FFTValue operator-(FFTValue other) const noexcept { return {re - other.re, im - other.im}; }
    FFTValue timesMinusJ() const noexcept { return {im, -re}; }
    FFTValue turned(Vector cosine, Vector sine) const noexcept { // by -angle
        return {re * cosine + im * sine, im * cosine - re * sine};
    }
    void addProduct(FFTValue a, FFTValue b) noexcept { // the same with conjugates: minus times minus j is minus
        re = re + a.re * b.re;
        re = re - a.im * b.im;
        im = im + a.re * b.im;
        im = im + a.im * b.re;
    }
};

template <typename Lanes>
inline void fftOf2(FFTValue<Lanes>* values) noexcept {
    const FFTValue<Lanes> first = values[0];
    values[0] = first + values[1];
    values[1] = first - values[1];
}

template <typename Lanes>
inline void fftOf4(FFTValue<Lanes>& a, FFTValue<Lanes>& b, FFTValue<Lanes>& c, FFTValue<Lanes>& d) noexcept {
    const FFTValue<Lanes> sumAC = a + c;
    const FFTValue<Lanes> differenceAC = a - c;
    const FFTValue<Lanes> sumBD = b + d;
    const FFTValue<Lanes> turnedBD = (b - d).timesMinusJ();
    a = sumAC + sumBD;
    b = differenceAC + turnedBD;
    c = sumAC - sumBD;
    d = differenceAC - turnedBD;
}

template <typename Lanes>
inline void fftOf8(FFTValue<Lanes>* v) noexcept {
    using Value = FFTValue<Lanes>;
    const auto half = Lanes::broadcast(0.70710678118654752f); // sqrt(1 / 2)
    Value even[4] = {v[0] + v[4], v[1] + v[5], v[2] + v[6], v[3] + v[7]};
    const Value one = v[1] - v[5];
    const Value three = v[3] - v[7];
    Value odd[4] = {v[0] - v[4],
                    {(one.re + one.im) * half, (one.im - one.re) * half},
                    (v[2] - v[6]).timesMinusJ(),
                    {(three.im - three.re) * half, (three.re + three.im) * -half}};
    fftOf4(even[0], even[1], even[2], even[3]);
    fftOf4(odd[0], odd[1], odd[2], odd[3]);
    for (int index = 0; index < 4; ++index) {
        v[2 * index] = even[index];
        v[2 * index + 1] = odd[index];
    }
}

template <int radix, typename Lanes>
inline void butterfly(FFTValue<Lanes>* values) noexcept {
    if constexpr (radix == 2)
        fftOf2(values);
    else if constexpr (radix == 4)
        fftOf4(values[0], values[1], values[2], values[3]);
    else
        fftOf8(values);
}

// The stage of stride 1: each butterfly leaves 8 neighbours. A group is `width` butterflies side by side.
template <typename Lanes, bool fromPairs>
inline void runFirst(const FFTStage& stage, const float* __restrict in, float* __restrict out, std::int32_t from,
                     std::int32_t to, std::int32_t width) noexcept {
    const std::int32_t points = stage.points;
    const std::int32_t apart = stage.butterflies;
    for (std::int32_t place = from * width; place < to * width; place += Lanes::lanes) {
        FFTValue<Lanes> values[8];
        for (int index = 0; index < 8; ++index) {
            const std::int32_t source = place + index * apart;
            if constexpr (fromPairs)
                Lanes::loadPairs(in + 2 * source, values[index].re, values[index].im);
            else
                values[index] = {Lanes::load(in + source), Lanes::load(in + points + source)};
        }
        fftOf8(values);
        const float* turns = stage.twiddles + place / width * width * 14 + place % width;
        for (int index = 1; index < 8; ++index, turns += 2 * width)
            values[index] = values[index].turned(Lanes::load(turns), Lanes::load(turns + width));
        Lanes::storeRows(out + 8 * place, values[0].re, values[1].re, values[2].re, values[3].re, values[4].re,
                         values[5].re, values[6].re, values[7].re);
        Lanes::storeRows(out + points + 8 * place, values[0].im, values[1].im, values[2].im, values[3].im, values[4].im,
                         values[5].im, values[6].im, values[7].im);
    }
}

// Groups first to first + groups of one butterfly of a later stage.
template <typename Lanes, int radix, bool turned, bool toPairs>
inline void runButterfly(const FFTStage& stage, const float* __restrict in, float* __restrict out, std::int32_t number,
                         std::int32_t first, std::int32_t groups) noexcept {
    const std::int32_t points = stage.points;
    const std::int32_t stride = stage.stride;
    const std::int32_t apart = points / radix;
    FFTValue<Lanes> turns[radix];
    if constexpr (turned)
        for (int index = 1; index < radix; ++index) {
            const float* turn = stage.twiddles + 2 * ((radix - 1) * number + index - 1);
            turns[index] = {Lanes::broadcast(turn[0]), Lanes::broadcast(turn[1])};
        }
    const float* source = in + number * stride;
    float* target = out + number * stride * radix;
    for (std::int32_t place = 8 * first; place < 8 * (first + groups); place += Lanes::lanes) {
        FFTValue<Lanes> values[radix];
        for (int index = 0; index < radix; ++index) {
            const float* each = source + place + index * apart;
            values[index] = {Lanes::load(each), Lanes::load(each + points)};
        }
        butterfly<radix>(values);
        for (int index = 0; index < radix; ++index) {
            if constexpr (turned)
                if (index > 0)
                    values[index] = values[index].turned(turns[index].re, turns[index].im);
            const std::int32_t goal = place + index * stride;
            if constexpr (toPairs) {
                Lanes::storePairs(target + 2 * goal, values[index].im, values[index].re);
            } else {
                Lanes::store(target + goal, values[index].re);
                Lanes::store(target + points + goal, values[index].im);
            }
        }
    }
}

// A later stage, whose stride is a multiple of 8. A group is 8 neighbours of the stride. The last stage is one
// butterfly, number 0, whose twiddles are all 1.
template <typename Lanes, int radix, bool toPairs>
inline void runLater(const FFTStage& stage, const float* __restrict in, float* __restrict out, std::int32_t from,
                     std::int32_t to) noexcept {
    const std::int32_t groupsEach = stage.stride / 8;
    for (std::int32_t number = from / groupsEach; from < to; ++number) {
        const std::int32_t first = from - number * groupsEach;
        const std::int32_t groups = groupsEach - first < to - from ? groupsEach - first : to - from;
        if (number == 0)
            runButterfly<Lanes, radix, false, toPairs>(stage, in, out, number, first, groups);
        else
            runButterfly<Lanes, radix, true, false>(stage, in, out, number, first, groups);
        from += groups;
    }
}

// Bins k and points - k of a real transform belong together: one complex value each of the pairs' transform.
// A group is 8 bins from below with their partners from above; group 0 also has the bins without a partner.
template <typename Lanes>
inline void splitBins(const FFTStage& stage, const float* in, float* out, std::int32_t low,
                      std::int32_t high) noexcept {
    const std::int32_t points = stage.points;
    const auto half = Lanes::broadcast(0.5f);
    const auto cosine = Lanes::load(stage.twiddles + low);
    const auto sine = Lanes::load(stage.twiddles + points / 2 + low);
    const auto lowRe = Lanes::load(in + low);
    const auto lowIm = Lanes::load(in + points + low);
    const auto highRe = Lanes::loadReversed(in + high);
    const auto highIm = Lanes::loadReversed(in + points + high);
    const auto evenRe = (lowRe + highRe) * half;
    const auto evenIm = (lowIm - highIm) * half;
    const auto oddRe = (lowIm + highIm) * half;
    const auto oddIm = (highRe - lowRe) * half;
    const auto turnedRe = cosine * oddRe + sine * oddIm;
    const auto turnedIm = cosine * oddIm - sine * oddRe;
    Lanes::store(out + low, evenRe + turnedRe);
    Lanes::store(out + points + low, -evenIm - turnedIm);
    Lanes::storeReversed(out + high, evenRe - turnedRe);
    Lanes::storeReversed(out + points + high, evenIm - turnedIm);
}

template <typename Lanes>
inline void joinBins(const FFTStage& stage, const float* in, float* out, std::int32_t low, std::int32_t high) noexcept {
    const std::int32_t points = stage.points;
    const auto cosine = Lanes::load(stage.twiddles + low);
    const auto sine = Lanes::load(stage.twiddles + points / 2 + low);
    const auto lowRe = Lanes::load(in + low);
    const auto lowMinusIm = Lanes::load(in + points + low);
    const auto highRe = Lanes::loadReversed(in + high);
    const auto highMinusIm = Lanes::loadReversed(in + points + high);
    const auto evenRe = lowRe + highRe;
    const auto evenIm = highMinusIm - lowMinusIm;
    const auto differenceRe = lowRe - highRe;
    const auto minusSumIm = lowMinusIm + highMinusIm;
    const auto oddRe = cosine * differenceRe + sine * minusSumIm;
    const auto oddIm = sine * differenceRe - cosine * minusSumIm;
    Lanes::store(out + low, oddRe + evenIm);
    Lanes::store(out + points + low, evenRe - oddIm);
    Lanes::storeReversed(out + high, oddRe - evenIm);
    Lanes::storeReversed(out + points + high, evenRe + oddIm);
}

// `Single` has one lane.
template <typename Lanes, typename Single>
inline void runSplit(const FFTStage& stage, const float* in, float* out, std::int32_t from, std::int32_t to) noexcept {
    const std::int32_t points = stage.points;
    if (from == 0 && to > 0) {
        const float re = in[0];
        const float im = in[points];
        const float middleRe = in[points / 2];
        const float middleIm = in[points + points / 2];
        for (std::int32_t bin = 1; bin < 8; ++bin)
            splitBins<Single>(stage, in, out, bin, points - bin);
        out[0] = re + im;
        out[points] = re - im;
        out[points / 2] = middleRe;
        out[points + points / 2] = middleIm; // minus the imaginary part
        from = 1;
    }
    for (std::int32_t bin = 8 * from; bin < 8 * to; bin += Lanes::lanes)
        splitBins<Lanes>(stage, in, out, bin, points - bin - (Lanes::lanes - 1));
}

template <typename Lanes, typename Single>
inline void runJoin(const FFTStage& stage, const float* in, float* out, std::int32_t from, std::int32_t to) noexcept {
    const std::int32_t points = stage.points;
    if (from == 0 && to > 0) {
        const float lowest = in[0];
        const float highest = in[points];
        const float middleRe = in[points / 2];
        const float middleMinusIm = in[points + points / 2];
        for (std::int32_t bin = 1; bin < 8; ++bin)
            joinBins<Single>(stage, in, out, bin, points - bin);
        out[0] = lowest - highest;
        out[points] = lowest + highest;
        out[points / 2] = 2.0f * middleMinusIm;
        out[points + points / 2] = 2.0f * middleRe;
        from = 1;
    }
    for (std::int32_t bin = 8 * from; bin < 8 * to; bin += Lanes::lanes)
        joinBins<Lanes>(stage, in, out, bin, points - bin - (Lanes::lanes - 1));
}

// The sums stay in registers over all factors. Bin 0 and the Nyquist bin are real and share a place: they are set
// right behind the loop.
template <typename Lanes, bool add>
inline void runProduct(const float* const* a, const float* const* b, std::int32_t factors, float* __restrict out,
                       std::int32_t half, std::int32_t from, std::int32_t to) noexcept {
    if (from >= to)
        return;
    float lowest = add ? out[0] : 0.0f;
    float highest = add ? out[half] : 0.0f;
    for (std::int32_t bin = from; bin < to; bin += 2 * Lanes::lanes) {
        const std::int32_t second = bin + Lanes::lanes;
        FFTValue<Lanes> sums[2] = {};
        if constexpr (add) {
            sums[0] = {Lanes::load(out + bin), Lanes::load(out + half + bin)};
            sums[1] = {Lanes::load(out + second), Lanes::load(out + half + second)};
        }
        for (std::int32_t factor = 0; factor < factors; ++factor) {
            const float* const left = a[factor];
            const float* const right = b[factor];
            sums[0].addProduct({Lanes::load(left + bin), Lanes::load(left + half + bin)},
                               {Lanes::load(right + bin), Lanes::load(right + half + bin)});
            sums[1].addProduct({Lanes::load(left + second), Lanes::load(left + half + second)},
                               {Lanes::load(right + second), Lanes::load(right + half + second)});
        }
        Lanes::store(out + bin, sums[0].re);
        Lanes::store(out + half + bin, sums[0].im);
        Lanes::store(out + second, sums[1].re);
        Lanes::store(out + half + second, sums[1].im);
    }
    if (from > 0)
        return;
    for (std::int32_t factor = 0; factor < factors; ++factor) {
        lowest += a[factor][0] * b[factor][0];
        highest += a[factor][half] * b[factor][half];
    }
    out[0] = lowest;
    out[half] = highest;
}

// The functions of one table. Wide has 8 lanes, or 1 in the reference; Half has 4, or 1.
template <typename Wide, typename Half, typename Single>
struct FFTKernelFunctions {
    template <bool fromPairs>
    static void first(const FFTStage& stage, const float* in, float* out, std::int32_t from,
                      std::int32_t to) noexcept REALTIME {
        if (stage.butterflies >= 8)
            runFirst<Wide, fromPairs>(stage, in, out, from, to, 8);
        else if (stage.butterflies == 4)
            runFirst<Half, fromPairs>(stage, in, out, from, to, 4);
        else
            runFirst<Single, fromPairs>(stage, in, out, from, to, 2);
    }
    template <int radix, bool toPairs>
    static void later(const FFTStage& stage, const float* in, float* out, std::int32_t from,
                      std::int32_t to) noexcept REALTIME {
        runLater<Wide, radix, toPairs>(stage, in, out, from, to);
    }
    static void split(const FFTStage& stage, const float* in, float* out, std::int32_t from,
                      std::int32_t to) noexcept REALTIME {
        runSplit<Wide, Single>(stage, in, out, from, to);
    }
    static void join(const FFTStage& stage, const float* in, float* out, std::int32_t from,
                     std::int32_t to) noexcept REALTIME {
        runJoin<Wide, Single>(stage, in, out, from, to);
    }
    template <bool add>
    static void product(const float* const* a, const float* const* b, std::int32_t factors, float* out,
                        std::int32_t half, std::int32_t from, std::int32_t to) noexcept REALTIME {
        runProduct<Wide, add>(a, b, factors, out, half, from, to);
    }

    static constexpr FFTKernels table{
        .firstOfPairs = first<true>,
        .first = first<false>,
        .middle2 = later<2, false>,
        .middle4 = later<4, false>,
        .middle8 = later<8, false>,
        .lastToPairs2 = later<2, true>,
        .lastToPairs4 = later<4, true>,
        .lastToPairs8 = later<8, true>,
        .split = split,
        .join = join,
        .multiply = product<false>,
        .multiplyAdd = product<true>,
    };
};
