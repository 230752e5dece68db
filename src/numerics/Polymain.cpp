#include "numerics/Polymain.h"

#include <array>
#include <cmath>
#include <cstring>
#include <optional>

#include "numerics/CheckedMath.h"
#include "numerics/Matherrmain.h"
#include "numerics/Sortalgorithms.h"

namespace nerivane {
namespace {

// Where each root lies, as the pairing sees it.
enum RootClass : int {
    AtOrigin = 0,
    PositiveReal = 1,
    RightHalfPlane = 2,
    ImaginaryAxis = 3,
    LeftHalfPlane = 4,
    NegativeReal = 5,
    Used = 6,
};

constexpr double PairingDistance = 0.001;

RootClass Classify(Complex root) {
    if (ComplexAbs(root) <= 0.001) return AtOrigin;
    const double angle = std::fabs(ComplexAngleDeg(root));
    if (angle <= 0.5) return PositiveReal;
    if (angle <= 89.5) return RightHalfPlane;
    if (angle <= 90.5) return ImaginaryAxis;
    if (angle <= 179.5) return LeftHalfPlane;
    return NegativeReal;
}

void AppendSection(ProtoSections& s, int& count, double denS2, double denS1, double denS0) {
    if (count >= MaxSections) return;
    s.DenS2[count] = denS2;
    s.DenS1[count] = denS1;
    s.DenS0[count] = denS0;
    ++count;
}

// Pairs each root of the given class with the first later unused root of the same class that
// sits within the pairing distance of its conjugate.
void PairConjugates(std::span<const Complex> roots, std::span<int> classes, RootClass wanted,
                    bool keepDamping, ProtoSections& s, int& count) {
    const int n = static_cast<int>(roots.size());
    for (int i = 0; i < n; ++i) {
        if (classes[i] != wanted) continue;
        for (int j = i + 1; j < n; ++j) {
            if (classes[j] != wanted) continue;
            if (ComplexAbs(roots[j] - Conjugate(roots[i])) >= PairingDistance) continue;
            classes[i] = Used;
            classes[j] = Used;
            const double denS1 = keepDamping ? -(roots[i] + roots[j]).re : 0.0;
            AppendSection(s, count, 1.0, denS1, (roots[i] * roots[j]).re);
            break;
        }
    }
}

}  // namespace

void ResetSections(ProtoSections& s) {
    for (int i = 0; i < MaxSections; ++i) {
        s.DenS2[i] = 0.0;
        s.DenS1[i] = 0.0;
        s.DenS0[i] = 1.0;
        s.NumS2[i] = 0.0;
        s.NumS1[i] = 0.0;
        s.NumS0[i] = 1.0;
    }
}

int RootsToSections(std::span<const Complex> roots, ProtoSections& s) {
    const int n = static_cast<int>(roots.size());
    std::array<int, MaxFamilyRoots> classes{};
    for (int i = 0; i < n && i < MaxFamilyRoots; ++i) classes[i] = Classify(roots[i]);
    const std::span<int> rootClasses(classes.data(), static_cast<std::size_t>(n));

    int count = 0;
    PairConjugates(roots, rootClasses, ImaginaryAxis, false, s, count);
    PairConjugates(roots, rootClasses, LeftHalfPlane, true, s, count);
    for (int i = 0; i < n; ++i) {
        if (rootClasses[i] != NegativeReal) continue;
        rootClasses[i] = Used;
        AppendSection(s, count, 0.0, 1.0, -roots[i].re);
        // A repeated real root gives one first-order section only.
        for (int j = i + 1; j < n; ++j) {
            if (ComplexAbs(roots[j] - roots[i]) < PairingDistance) rootClasses[j] = Used;
        }
    }
    return count;
}

double NormaliseCorner(int sectionCount, ProtoSections& s) {
    double dcFactor = 1.0;
    for (int i = 0; i < sectionCount; ++i) dcFactor *= s.DenS0[i] / s.NumS0[i];

    constexpr int GridPerRadian = 512;
    constexpr int GridLimit = 6000;
    double corner = 0.0;
    for (int k = 0;; ++k) {
        const double w = static_cast<double>(k) / GridPerRadian;
        const double w2 = w * w;
        double numeratorPower = 1.0;
        double denominatorPower = 1.0;
        for (int i = 0; i < sectionCount; ++i) {
            const double numRe = s.NumS0[i] - s.NumS2[i] * w2;
            const double numIm = s.NumS1[i] * w;
            const double denRe = s.DenS0[i] - s.DenS2[i] * w2;
            const double denIm = s.DenS1[i] * w;
            numeratorPower *= numRe * numRe + numIm * numIm;
            denominatorPower *= denRe * denRe + denIm * denIm;
        }
        corner = w;
        const double magnitude =
            std::fabs(dcFactor) * CheckedSqrt(numeratorPower / denominatorPower);
        if (magnitude < 0.7071 || k + 1 >= GridLimit) break;
    }

    const double scale = 1.0 / corner;
    for (int i = 0; i < sectionCount; ++i) {
        const double w0 = CheckedSqrt(s.DenS0[i]);
        if (w0 == 0.0) continue;
        if (s.DenS2[i] == 0.0) {
            s.DenS0[i] = scale * s.DenS0[i];
        } else {
            // Keep the damping, move the frequency.
            const double damping = s.DenS1[i] / w0 / 2.0;
            s.DenS0[i] = (w0 * scale) * (w0 * scale);
            s.DenS1[i] = 2.0 * damping * w0 * scale;
        }
    }
    for (int i = 0; i < sectionCount; ++i) {
        if (s.NumS0[i] != 0.0 && s.NumS2[i] != 0.0) s.NumS0[i] = scale * scale * s.NumS0[i];
    }
    return scale;
}

double SectionDamping(const ProtoSections& s, int index) {
    if (std::fabs(s.DenS2[index]) < 0.0001) return 1.0;
    return s.DenS1[index] * 0.5 / CheckedSqrt(s.DenS0[index]);
}

void OrderSections(int sectionCount, ProtoSections& s) {
    std::array<double, MaxSections> keys{};
    std::array<int, MaxSections> order{};
    const auto permute = [&](double(&a)[MaxSections], double(&b)[MaxSections],
                             double(&c)[MaxSections]) {
        double copyA[MaxSections], copyB[MaxSections], copyC[MaxSections];
        for (int i = 0; i < sectionCount; ++i) {
            copyA[i] = a[order[i]];
            copyB[i] = b[order[i]];
            copyC[i] = c[order[i]];
        }
        for (int i = 0; i < sectionCount; ++i) {
            a[i] = copyA[i];
            b[i] = copyB[i];
            c[i] = copyC[i];
        }
    };

    for (int i = 0; i < sectionCount; ++i) {
        keys[i] = SectionDamping(s, i);
        order[i] = i;
    }
    SortIndexByKey(keys, order, sectionCount, false);
    permute(s.DenS2, s.DenS1, s.DenS0);

    // Numerators are ordered on their own; for all-pole families they are all equal.
    for (int i = 0; i < sectionCount; ++i) {
        keys[i] = std::fabs(s.NumS2[i]) < 0.0001 ? 0.0 : s.NumS0[i];
        order[i] = i;
    }
    SortIndexByKey(keys, order, sectionCount, true);
    permute(s.NumS2, s.NumS1, s.NumS0);
}

namespace {

PrototypeResult BuildPrototypeAfresh(Response responseIndex, int numPoles, double ripple,
                                     double gamma, ProtoSections& sections) {
    ResetSections(sections);
    FamilyRoots family;
    bool normalise = true;
    if (numPoles == 1 || responseIndex == Response::Butterworth) {
        // Butterworth poles already sit 3 dB down at 1 rad/s; a single pole is the same for
        // every family.
        ButterworthPoles(numPoles, family);
        normalise = false;
    } else {
        switch (responseIndex) {
            case Response::Chebyshev: ChebyshevPoles(numPoles, ripple, family); break;
            case Response::Papoulis: PapoulisRoots(numPoles, ripple, family); break;
            case Response::Bessel: BesselRoots(numPoles, family); break;
            case Response::Gaussian: GaussianRoots(numPoles, family); break;
            case Response::AdjustableGauss: AdjustableGaussRoots(numPoles, gamma, family); break;
            default: return {};
        }
    }

    PrototypeResult result;
    result.note = family.note;
    result.sectionCount = RootsToSections(
        std::span<const Complex>(family.roots.data(), static_cast<std::size_t>(family.count)),
        sections);
    if (normalise && result.sectionCount > 0)
        result.cornerScale = NormaliseCorner(result.sectionCount, sections);
    if (numPoles > 2) OrderSections(result.sectionCount, sections);
    return result;
}

// The last prototype this thread built. Most calculations change what follows the prototype
// (frequency, gain, capacitors, mode), and finding the roots of a high order is a good part of
// a calculation.
struct LastPrototype {
    Response response = Response::Butterworth;
    int poles = 0;
    double ripple = 0.0, gamma = 0.0;
    PrototypeResult result;
    ProtoSections sections{};
};

}  // namespace

PrototypeResult BuildPrototype(Response responseIndex, int numPoles, double ripple, double gamma,
                               ProtoSections& sections) {
    thread_local std::optional<LastPrototype> last;
    // Equal numbers, not equivalent ones, so a cached prototype is always the one the same
    // arguments build.
    if (last && last->response == responseIndex && last->poles == numPoles &&
        std::memcmp(&last->ripple, &ripple, sizeof ripple) == 0 &&
        std::memcmp(&last->gamma, &gamma, sizeof gamma) == 0) {
        sections = last->sections;
        return last->result;
    }
    const std::uint64_t errorsBefore = MathErrorsHandled();
    const PrototypeResult result =
        BuildPrototypeAfresh(responseIndex, numPoles, ripple, gamma, sections);
    // A build that raised math errors is not kept: the next one must report them again.
    if (MathErrorsHandled() == errorsBefore)
        last = LastPrototype{responseIndex, numPoles, ripple, gamma, result, sections};
    else
        last.reset();
    return result;
}

}  // namespace nerivane
