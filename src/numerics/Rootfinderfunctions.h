// Roots of a polynomial with real coefficients by the Jenkins-Traub three-stage method:
// no-shift, fixed-shift and variable-shift iterations that peel off one real root or one
// conjugate pair at a time, each followed by deflation. The prototype families' poles come
// from here, for degrees up to 40 in practice and 100 at most.
#pragma once

#include <span>

namespace nerivane {

inline constexpr int MaxRootFinderDegree = 100;

inline constexpr const char* LeadingZeroNote = "Stopped because the leading coefficient is zero. ";
inline constexpr const char* NoConvergenceNote =
    "Failed because of no convergence after 20 shifts.";

struct RootFinderResult {
    int count = 0;               // roots delivered; fewer than the degree when the search failed
    const char* note = nullptr;  // one of the two notes above for the report, or nullptr
};

// coefficients holds degree + 1 values, highest power first; realParts and imagParts receive
// the roots, conjugate pairs in adjacent positions. Degrees above MaxRootFinderDegree are the
// caller's to refuse.
RootFinderResult FindPolynomialRoots(std::span<const double> coefficients, int degree,
                                     std::span<double> realParts, std::span<double> imagParts);

}  // namespace nerivane
