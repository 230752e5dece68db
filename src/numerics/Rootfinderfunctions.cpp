#include "numerics/Rootfinderfunctions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>

#include "numerics/CheckedMath.h"
#include "numerics/Mathfunctions.h"

namespace nerivane {
namespace {

// The program's constants for the three-stage method.
constexpr double Eta = 2.220446049250313e-16;       // machine precision
constexpr double AddError = Eta;                    // relative error of an addition
constexpr double MulError = Eta;                    // relative error of a multiplication
constexpr double Infin = 1.7e307;                   // kept below DBL_MAX on purpose
constexpr double Smalno = 2.2250738585072014e-308;  // smallest normal double
constexpr double ScaleThreshold = Smalno / Eta;     // 2^-970
constexpr double RotationDeg = 94.0;
constexpr int ShiftAttempts = 20;
constexpr int NoShiftSteps = 5;

using Buffer = std::array<double, MaxRootFinderDegree + 1>;

struct QuadraticRoots {
    double smallRe, smallIm, largeRe, largeIm;
};

// Roots of a*z^2 + b*z + c, computed so that neither cancellation nor overflow of b^2 spoils
// them; the smaller root comes from the product of the roots when they are real.
QuadraticRoots SolveQuadratic(double a, double b, double c) {
    if (a == 0.0) {
        const double root = b != 0.0 ? -c / b : 0.0;
        return {root, 0.0, 0.0, 0.0};
    }
    if (c == 0.0) return {0.0, 0.0, -b / a, 0.0};
    const double halfB = b / 2.0;
    double discriminant;
    double root;
    if (std::fabs(halfB) < std::fabs(c)) {
        const double signedA = c < 0.0 ? -a : a;
        discriminant = halfB * (halfB / std::fabs(c)) - signedA;
        root = CheckedSqrt(std::fabs(discriminant)) * CheckedSqrt(std::fabs(c));
    } else {
        discriminant = 1.0 - (a / halfB) * (c / halfB);
        root = CheckedSqrt(std::fabs(discriminant)) * std::fabs(halfB);
    }
    if (discriminant < 0.0) {
        const double re = -halfB / a;
        const double im = std::fabs(root / a);
        return {re, im, re, -im};
    }
    if (halfB >= 0.0) root = -root;
    const double large = (-halfB + root) / a;
    const double small = large != 0.0 ? (c / large) / a : 0.0;
    return {small, 0.0, large, 0.0};
}

// Divides p (degree n) by z^2 + u*z + v into q; the remainder is b*(z + u) + a, with a and b
// the last two entries of q.
struct Remainder {
    double a, b;
};
Remainder DivideByQuadratic(int n, double u, double v, const Buffer& p, Buffer& q) {
    double b = p[0];
    double a = p[1] - u * b;
    q[0] = b;
    q[1] = a;
    for (int i = 2; i <= n; ++i) {
        const double c = p[i] - u * a - v * b;
        q[i] = c;
        b = a;
        a = c;
    }
    return {a, b};
}

// The working state of one search: the deflated polynomial p, the shift polynomial k, the
// current quadratic factor z^2 + u*z + v and the scalars that tie them together.
class ThreeStageSearch {
  public:
    RootFinderResult Run(std::span<const double> coefficients, int degree,
                         std::span<double> realParts, std::span<double> imagParts);

  private:
    enum class ScalarKind { DividesEvenly, NearlyDividesByD, NearlyDividesByC };

    // A root beyond the range of doubles cannot be delivered; the search then ends as if it
    // had not converged, keeping the roots found so far.
    bool Deliver(double re, double im) {
        if (!std::isfinite(re) || !std::isfinite(im)) return false;
        realParts_[found_] = re;
        imagParts_[found_] = im;
        ++found_;
        return true;
    }
    void ScaleCoefficients();
    double LowerRootBound() const;
    void NoShiftIterations();
    int FixedShift(int limit);
    int QuadraticIteration(double uStart, double vStart);
    int RealIteration(double& s, bool& cluster);
    ScalarKind ComputeScalars();
    void NextShiftPolynomial(ScalarKind kind);
    void NewQuadraticEstimate(ScalarKind kind, double& uNew, double& vNew) const;

    std::span<double> realParts_;
    std::span<double> imagParts_;
    int found_ = 0;
    int n_ = 0;
    Buffer p_{}, qp_{}, k_{}, qk_{}, saved_{};
    double u_ = 0, v_ = 0, a_ = 0, b_ = 0, c_ = 0, d_ = 0;
    double e_ = 0, f_ = 0, g_ = 0, h_ = 0, a1_ = 0, a3_ = 0, a7_ = 0;
    double smallRe_ = 0, smallIm_ = 0, largeRe_ = 0, largeIm_ = 0;
};

RootFinderResult ThreeStageSearch::Run(std::span<const double> coefficients, int degree,
                                       std::span<double> realParts, std::span<double> imagParts) {
    realParts_ = realParts;
    imagParts_ = imagParts;
    found_ = 0;
    n_ = degree;
    if (degree < 1 || degree > MaxRootFinderDegree) return {0, nullptr};
    if (coefficients[0] == 0.0) return {0, LeadingZeroNote};
    for (int i = 0; i <= n_; ++i) {
        // Garbage in cannot converge; saying so beats iterating on NaN.
        if (!std::isfinite(coefficients[i])) return {0, NoConvergenceNote};
        p_[i] = coefficients[i];
    }

    // Zero roots need no iteration.
    while (n_ > 0 && p_[n_] == 0.0) {
        Deliver(0.0, 0.0);
        --n_;
    }
    if (n_ == 0) return {found_, nullptr};
    ScaleCoefficients();

    const double rotation = RotationDeg * Pi / 180.0;
    const double cosRotation = std::cos(rotation);
    const double sinRotation = std::sin(rotation);
    double directionX = CheckedSqrt(0.5);
    double directionY = -directionX;

    while (n_ > 2) {
        const double bound = LowerRootBound();
        // The first shift polynomial is the derivative, scaled to the same leading term.
        for (int i = 0; i < n_; ++i) k_[i] = static_cast<double>(n_ - i) * p_[i] / n_;
        NoShiftIterations();
        saved_ = k_;

        int converged = 0;
        for (int attempt = 1; attempt <= ShiftAttempts && converged == 0; ++attempt) {
            // A shift of the bound's modulus, rotated by an angle that is not a divisor of
            // 360 degrees, so successive attempts never repeat a direction.
            const double rotated = cosRotation * directionX - sinRotation * directionY;
            directionY = sinRotation * directionX + cosRotation * directionY;
            directionX = rotated;
            const double shiftRe = bound * directionX;
            u_ = -2.0 * shiftRe;
            v_ = bound * bound;
            converged = FixedShift(ShiftAttempts * attempt);
            if (converged == 0) k_ = saved_;
        }
        if (converged == 0) return {found_, NoConvergenceNote};

        if (!Deliver(smallRe_, smallIm_)) return {found_, NoConvergenceNote};
        if (converged == 2 && !Deliver(largeRe_, largeIm_)) return {found_, NoConvergenceNote};
        n_ -= converged;
        for (int i = 0; i <= n_; ++i) p_[i] = qp_[i];
    }

    bool delivered;
    if (n_ == 1) {
        delivered = Deliver(-p_[1] / p_[0], 0.0);
    } else {
        const QuadraticRoots roots = SolveQuadratic(p_[0], p_[1], p_[2]);
        delivered = Deliver(roots.smallRe, roots.smallIm) && Deliver(roots.largeRe, roots.largeIm);
    }
    return {found_, delivered ? nullptr : NoConvergenceNote};
}

// Multiplies the coefficients by a power of two so that the smallest ones stay well above
// underflow and the largest well below overflow; the roots do not change.
void ThreeStageSearch::ScaleCoefficients() {
    double largest = 0.0;
    double smallest = Infin;
    for (int i = 0; i <= n_; ++i) {
        const double magnitude = std::fabs(p_[i]);
        if (magnitude > largest) largest = magnitude;
        if (magnitude != 0.0 && magnitude < smallest) smallest = magnitude;
    }
    double scale = ScaleThreshold / smallest;
    if (scale > 1.0 ? Infin / scale < largest : largest < 10.0) return;
    if (scale == 0.0) scale = Smalno;
    const int exponent = static_cast<int>(CheckedLog(scale) / CheckedLog(2.0) + 0.5);
    const double factor = std::ldexp(1.0, exponent);
    if (factor == 1.0) return;
    for (int i = 0; i <= n_; ++i) p_[i] *= factor;
}

// A lower bound of the root moduli: the positive zero of the Cauchy polynomial
// |p0| z^n + ... + |p_{n-1}| z - |p_n|, reached from above by Newton's method.
double ThreeStageSearch::LowerRootBound() const {
    Buffer cauchy{};
    for (int i = 0; i <= n_; ++i) cauchy[i] = std::fabs(p_[i]);
    cauchy[n_] = -cauchy[n_];
    const auto evaluate = [&](double z) {
        double value = cauchy[0];
        for (int i = 1; i <= n_; ++i) value = value * z + cauchy[i];
        return value;
    };

    double z = CheckedExp((CheckedLog(-cauchy[n_]) - CheckedLog(cauchy[0])) / n_);
    if (cauchy[n_ - 1] != 0.0) {
        const double newtonStart = -cauchy[n_] / cauchy[n_ - 1];
        if (newtonStart < z) z = newtonStart;
    }
    // Step down by tenths while the polynomial stays positive, so Newton starts right of
    // the zero and converges monotonically.
    while (evaluate(z * 0.1) > 0.0) z *= 0.1;
    double step = z;
    for (int iteration = 0; iteration < 1000 && std::fabs(step / z) > 0.005; ++iteration) {
        double value = cauchy[0];
        double slope = value;
        for (int i = 1; i < n_; ++i) {
            value = value * z + cauchy[i];
            slope = slope * z + value;
        }
        value = value * z + cauchy[n_];
        step = value / slope;
        z -= step;
    }
    return z;
}

// Stage one: shifts at zero accentuate the smallest roots in the shift polynomial.
void ThreeStageSearch::NoShiftIterations() {
    const double constant = p_[n_];
    const double linear = p_[n_ - 1];
    bool kConstantIsZero = k_[n_ - 1] == 0.0;
    for (int step = 0; step < NoShiftSteps; ++step) {
        if (!kConstantIsZero) {
            const double t = -constant / k_[n_ - 1];
            for (int j = n_ - 1; j >= 1; --j) k_[j] = t * k_[j - 1] + p_[j];
            k_[0] = p_[0];
            kConstantIsZero = std::fabs(k_[n_ - 1]) <= std::fabs(linear) * Eta * 10.0;
        } else {
            for (int j = n_ - 1; j >= 1; --j) k_[j] = k_[j - 1];
            k_[0] = 0.0;
            kConstantIsZero = k_[n_ - 1] == 0.0;
        }
    }
}

// Stage two: a fixed quadratic shift. Watches the sequences of quadratic and linear root
// estimates and hands over to the matching variable-shift iteration once one of them settles.
// Returns the number of roots found (0, 1 or 2).
int ThreeStageSearch::FixedShift(int limit) {
    double betaV = 0.25;
    double betaS = 0.25;
    double oldV = 0.0, oldS = 0.0, oldTv = 1.0, oldTs = 1.0;

    Remainder remainder = DivideByQuadratic(n_, u_, v_, p_, qp_);
    a_ = remainder.a;
    b_ = remainder.b;
    ScalarKind kind = ComputeScalars();

    for (int step = 1; step <= limit; ++step) {
        NextShiftPolynomial(kind);
        kind = ComputeScalars();
        double uNew = 0.0;
        double vNew = 0.0;
        NewQuadraticEstimate(kind, uNew, vNew);
        const double vEstimate = vNew;
        const double sEstimate = k_[n_ - 1] != 0.0 ? -p_[n_] / k_[n_ - 1] : 0.0;
        double tv = 1.0;
        double ts = 1.0;

        if (step != 1 && kind != ScalarKind::DividesEvenly) {
            if (vEstimate != 0.0) tv = std::fabs((vEstimate - oldV) / vEstimate);
            if (sEstimate != 0.0) ts = std::fabs((sEstimate - oldS) / sEstimate);
            const double tvv = tv < oldTv ? tv * oldTv : 1.0;
            const double tss = ts < oldTs ? ts * oldTs : 1.0;
            const bool quadraticSettles = tvv < betaV;
            const bool linearSettles = tss < betaS;

            if (quadraticSettles || linearSettles) {
                const double savedU = u_;
                const double savedV = v_;
                Buffer savedK = k_;
                double s = sEstimate;
                bool triedQuadratic = false;
                bool triedLinear = false;
                bool tryLinearFirst = linearSettles && (!quadraticSettles || tss < tvv);

                while (true) {
                    if (!tryLinearFirst) {
                        const int found = QuadraticIteration(uNew, vNew);
                        if (found > 0) return found;
                        // The quadratic iteration failed: demand more of it next time.
                        triedQuadratic = true;
                        betaV *= 0.25;
                        if (triedLinear || !linearSettles) break;
                        k_ = savedK;
                    }
                    tryLinearFirst = false;
                    bool cluster = false;
                    const int found = RealIteration(s, cluster);
                    if (found > 0) return found;
                    triedLinear = true;
                    betaS *= 0.25;
                    if (!cluster) break;
                    // Real roots in a cluster: try them as a quadratic factor instead.
                    uNew = -(s + s);
                    vNew = s * s;
                }

                u_ = savedU;
                v_ = savedV;
                k_ = savedK;
                if (quadraticSettles && !triedQuadratic) {
                    const int found = QuadraticIteration(uNew, vNew);
                    if (found > 0) return found;
                    betaV *= 0.25;
                    u_ = savedU;
                    v_ = savedV;
                    k_ = savedK;
                }
                remainder = DivideByQuadratic(n_, u_, v_, p_, qp_);
                a_ = remainder.a;
                b_ = remainder.b;
                kind = ComputeScalars();
            }
        }
        oldV = vEstimate;
        oldS = sEstimate;
        oldTv = tv;
        oldTs = ts;
    }
    return 0;
}

// Stage three for a quadratic factor. Returns 2 when z^2 + u*z + v divides p to within the
// rounding error of evaluating p at its roots, else 0.
int ThreeStageSearch::QuadraticIteration(double uStart, double vStart) {
    u_ = uStart;
    v_ = vStart;
    bool triedCluster = false;
    double relativeStep = 0.0;
    double oldMagnitude = 0.0;
    int steps = 0;

    while (true) {
        const QuadraticRoots roots = SolveQuadratic(1.0, u_, v_);
        smallRe_ = roots.smallRe;
        smallIm_ = roots.smallIm;
        largeRe_ = roots.largeRe;
        largeIm_ = roots.largeIm;
        // Roots of different moduli mean the factor is not converging to a conjugate pair.
        if (std::fabs(std::fabs(smallRe_) - std::fabs(largeRe_)) > 0.01 * std::fabs(largeRe_))
            return 0;

        const Remainder remainder = DivideByQuadratic(n_, u_, v_, p_, qp_);
        a_ = remainder.a;
        b_ = remainder.b;
        const double magnitude = std::fabs(a_ - smallRe_ * b_) + std::fabs(smallIm_ * b_);

        // A bound on the rounding error of evaluating p at the root.
        const double zm = CheckedSqrt(std::fabs(v_));
        const double t = -smallRe_ * b_;
        double bound = 2.0 * std::fabs(qp_[0]);
        for (int i = 1; i < n_; ++i) bound = bound * zm + std::fabs(qp_[i]);
        bound = bound * zm + std::fabs(a_ + t);
        bound = (5.0 * MulError + 4.0 * AddError) * bound -
                (5.0 * MulError + 2.0 * AddError) * (std::fabs(a_ + t) + std::fabs(b_) * zm) +
                2.0 * AddError * std::fabs(t);
        if (magnitude <= 20.0 * bound) return 2;

        if (++steps > 20) return 0;
        if (steps >= 2 && relativeStep <= 0.01 && magnitude >= oldMagnitude && !triedCluster) {
            // Stalled with small steps: probably a cluster of roots. Nudge the factor and run
            // a few fixed-shift steps before resuming.
            if (relativeStep < Eta) relativeStep = Eta;
            relativeStep = CheckedSqrt(relativeStep);
            u_ -= u_ * relativeStep;
            v_ += v_ * relativeStep;
            const Remainder nudged = DivideByQuadratic(n_, u_, v_, p_, qp_);
            a_ = nudged.a;
            b_ = nudged.b;
            for (int i = 0; i < 5; ++i) NextShiftPolynomial(ComputeScalars());
            triedCluster = true;
            steps = 0;
        }
        oldMagnitude = magnitude;

        NextShiftPolynomial(ComputeScalars());
        double uNew = 0.0;
        double vNew = 0.0;
        NewQuadraticEstimate(ComputeScalars(), uNew, vNew);
        if (vNew == 0.0) return 0;
        relativeStep = std::fabs((vNew - v_) / vNew);
        u_ = uNew;
        v_ = vNew;
    }
}

// Stage three for a real root, starting at s. Returns 1 when p(s) is zero to within its
// rounding error; sets cluster when the iterates stall, which suggests a close pair.
int ThreeStageSearch::RealIteration(double& s, bool& cluster) {
    cluster = false;
    double step = 0.0;
    double oldMagnitude = 0.0;
    int steps = 0;

    while (true) {
        double pv = p_[0];
        qp_[0] = pv;
        for (int i = 1; i <= n_; ++i) {
            pv = pv * s + p_[i];
            qp_[i] = pv;
        }
        const double magnitude = std::fabs(pv);
        const double sModulus = std::fabs(s);
        double bound = MulError / (AddError + MulError) * std::fabs(qp_[0]);
        for (int i = 1; i <= n_; ++i) bound = bound * sModulus + std::fabs(qp_[i]);
        if (magnitude <= 20.0 * ((AddError + MulError) * bound - MulError * magnitude)) {
            smallRe_ = s;
            smallIm_ = 0.0;
            return 1;
        }

        if (++steps > 10) return 0;
        if (steps >= 2 && std::fabs(step) <= 0.001 * std::fabs(s - step) &&
            magnitude > oldMagnitude) {
            cluster = true;
            return 0;
        }
        oldMagnitude = magnitude;

        // Next shift polynomial: k(z) <- (k(z) - k(s)/p(s) * p(z)) / (z - s).
        double kv = k_[0];
        qk_[0] = kv;
        for (int i = 1; i < n_; ++i) {
            kv = kv * s + k_[i];
            qk_[i] = kv;
        }
        if (std::fabs(kv) <= std::fabs(k_[n_ - 1]) * 10.0 * Eta) {
            k_[0] = 0.0;
            for (int i = 1; i < n_; ++i) k_[i] = qk_[i - 1];
        } else {
            const double t = -pv / kv;
            k_[0] = qp_[0];
            for (int i = 1; i < n_; ++i) k_[i] = t * qk_[i - 1] + qp_[i];
        }
        kv = k_[0];
        for (int i = 1; i < n_; ++i) kv = kv * s + k_[i];
        step = std::fabs(kv) > std::fabs(k_[n_ - 1]) * 10.0 * Eta ? -pv / kv : 0.0;
        s += step;
    }
}

// The scalars that the next shift polynomial and the new quadratic estimate are built from,
// taken from the division of k by the current quadratic.
ThreeStageSearch::ScalarKind ThreeStageSearch::ComputeScalars() {
    const Remainder remainder = DivideByQuadratic(n_ - 1, u_, v_, k_, qk_);
    c_ = remainder.a;
    d_ = remainder.b;
    if (std::fabs(c_) <= 100.0 * Eta * std::fabs(k_[n_ - 1]) &&
        std::fabs(d_) <= 100.0 * Eta * std::fabs(k_[n_ - 2]))
        return ScalarKind::DividesEvenly;
    if (std::fabs(d_) >= std::fabs(c_)) {
        e_ = a_ / d_;
        f_ = c_ / d_;
        g_ = u_ * b_;
        h_ = v_ * b_;
        a3_ = (a_ + g_) * e_ + h_ * (b_ / d_);
        a1_ = b_ * f_ - a_;
        a7_ = (f_ + u_) * a_ + h_;
        return ScalarKind::NearlyDividesByD;
    }
    e_ = a_ / c_;
    f_ = d_ / c_;
    g_ = u_ * e_;
    h_ = v_ * b_;
    a3_ = a_ * e_ + (h_ / c_ + g_) * b_;
    a1_ = b_ - a_ * (d_ / c_);
    a7_ = a_ + g_ * d_ + h_ * f_;
    return ScalarKind::NearlyDividesByC;
}

void ThreeStageSearch::NextShiftPolynomial(ScalarKind kind) {
    if (kind == ScalarKind::DividesEvenly) {
        k_[0] = 0.0;
        k_[1] = 0.0;
        for (int i = 2; i < n_; ++i) k_[i] = qk_[i - 2];
        return;
    }
    const double reference = kind == ScalarKind::NearlyDividesByC ? b_ : a_;
    if (std::fabs(a1_) > std::fabs(reference) * Eta * 10.0) {
        // Scaled form, which keeps k's leading coefficient equal to p's.
        a7_ /= a1_;
        a3_ /= a1_;
        k_[0] = qp_[0];
        k_[1] = qp_[1] - a7_ * qp_[0];
        for (int i = 2; i < n_; ++i) k_[i] = a3_ * qk_[i - 2] - a7_ * qp_[i - 1] + qp_[i];
    } else {
        // a1 is nearly zero: the unscaled form avoids dividing by it.
        k_[0] = 0.0;
        k_[1] = -a7_ * qp_[0];
        for (int i = 2; i < n_; ++i) k_[i] = a3_ * qk_[i - 2] - a7_ * qp_[i - 1];
    }
}

void ThreeStageSearch::NewQuadraticEstimate(ScalarKind kind, double& uNew, double& vNew) const {
    uNew = 0.0;
    vNew = 0.0;
    if (kind == ScalarKind::DividesEvenly) return;
    double a4;
    double a5;
    if (kind == ScalarKind::NearlyDividesByD) {
        a4 = (a_ + g_) * f_ + h_;
        a5 = (f_ + u_) * c_ + v_ * d_;
    } else {
        a4 = a_ + u_ * b_ + h_ * f_;
        a5 = c_ + (u_ + v_ * f_) * d_;
    }
    const double b1 = -k_[n_ - 1] / p_[n_];
    const double b2 = -(k_[n_ - 2] + b1 * p_[n_ - 1]) / p_[n_];
    const double c1 = v_ * b2 * a1_;
    const double c2 = b1 * a7_;
    const double c3 = b1 * b1 * a3_;
    const double c4 = c1 - c2 - c3;
    const double denominator = a5 + b1 * a4 - c4;
    if (denominator == 0.0) return;
    uNew = u_ - (u_ * (c3 + c2) + v_ * (b1 * a1_ + b2 * a7_)) / denominator;
    vNew = v_ * (1.0 + c4 / denominator);
}

// p(z) and p'(z) of the undeflated polynomial by Horner's rule.
void EvaluateWithSlope(std::span<const double> p, int degree, std::complex<double> z,
                       std::complex<double>& value, std::complex<double>& slope) {
    value = p[0];
    slope = 0.0;
    for (int i = 1; i <= degree; ++i) {
        slope = slope * z + value;
        value = value * z + p[i];
    }
}

// Deflation passes each root's rounding error on to the roots found after it; when many roots
// share one modulus (the Gaussian family's, say) the last ones can lose half their digits.
// A few Newton steps on the original polynomial restore them. A polished root is kept only if
// it stays well inside its neighbourhood (so it cannot jump to another root) and its residual
// did not grow; conjugate pairs stay exact conjugates.
void PolishRoots(std::span<const double> p, int degree, std::span<double> re, std::span<double> im,
                 int count) {
    for (int i = 0; i < count; ++i) {
        const std::complex<double> start(re[i], im[i]);
        if (start == 0.0) continue;
        double nearest = INFINITY;
        for (int j = 0; j < count; ++j) {
            if (j != i)
                nearest = std::min(nearest, std::abs(std::complex<double>(re[j], im[j]) - start));
        }
        std::complex<double> value, slope;
        EvaluateWithSlope(p, degree, start, value, slope);
        const double startResidual = std::abs(value);
        std::complex<double> z = start;
        for (int step = 0; step < 8 && slope != 0.0; ++step) {
            const std::complex<double> change = value / slope;
            z -= change;
            EvaluateWithSlope(p, degree, z, value, slope);
            if (std::abs(change) <= 1e-15 * std::abs(z)) break;
        }
        const bool stayedNear = std::abs(z - start) < 0.25 * nearest;
        if (!stayedNear || !(std::abs(value) <= startResidual) || !std::isfinite(z.real()) ||
            !std::isfinite(z.imag()))
            continue;
        const bool pairedWithNext =
            im[i] != 0.0 && i + 1 < count && im[i + 1] == -im[i] && re[i + 1] == re[i];
        re[i] = z.real();
        im[i] = im[i] == 0.0 ? 0.0 : z.imag();
        if (pairedWithNext) {
            re[i + 1] = re[i];
            im[i + 1] = -im[i];
            ++i;
        }
    }
}

}  // namespace

RootFinderResult FindPolynomialRoots(std::span<const double> coefficients, int degree,
                                     std::span<double> realParts, std::span<double> imagParts) {
    ThreeStageSearch search;
    const RootFinderResult result = search.Run(coefficients, degree, realParts, imagParts);
    PolishRoots(coefficients, degree, realParts, imagParts, result.count);
    return result;
}

}  // namespace nerivane
