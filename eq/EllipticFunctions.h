// Jacobi's elliptic functions as far as filter design needs them, by the arithmetic-geometric mean. The parameter is
// the square of the modulus.
// Threads: any.
#pragma once

namespace elliptic {

struct Amplitude {
    double sn = 0.0;
    double cn = 1.0;
    double dn = 1.0;
};

double completeIntegral(double parameter) noexcept;          // K
double inverseSc(double tangent, double parameter) noexcept; // the u whose sn / cn is the tangent, below K
Amplitude amplitude(double u, double parameter) noexcept;

} // namespace elliptic
