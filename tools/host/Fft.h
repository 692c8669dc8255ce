// Fourier transform of a power of two, in place, for measurements. Not for audio threads.
#pragma once

#include <complex>
#include <span>

void transform(std::span<std::complex<double>> data);
