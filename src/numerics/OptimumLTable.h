// The optimum-L polynomials L_n(x), x = w^2, for n = 1 to 20: the steepest monotonic pass
// band for a given order, which the Papoulis family turns into 1 + e * L_n(-s^2). Integer
// coefficients, stored because they never change.
#pragma once

#include <cstdint>
#include <span>

namespace nerivane {

// The n + 1 coefficients of L_n, highest power of x first; empty for n outside 1 to 20.
std::span<const std::int64_t> OptimumLCoefficients(int n);

}  // namespace nerivane
