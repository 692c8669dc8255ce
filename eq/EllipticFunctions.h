// Jacobi's elliptic functions as far as filter design needs them, by the arithmetic-geometric mean. The parameter is
// the square of the modulus.
// Threads: any.
#pragma once

struct JacobiFunctions {
    double sn = 0.0;
    double cn = 1.0;
    double dn = 1.0;
};

double completeEllipticIntegral(double parameter) noexcept; // K
JacobiFunctions jacobiFunctions(double u, double parameter) noexcept;
// The u below K at which sn / cn is the tangent.
double inverseJacobiTangent(double tangent, double parameter) noexcept;
