#include "response/Magphasefunctions.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "numerics/Formatfunctions.h"

namespace nerivane {
namespace {

constexpr double QuarterPi = 0.7853981633974483;
constexpr double TwoPi = 6.283185307179586;

// The delay estimate gives up with this value when no point qualifies; it is passed on as is.
constexpr double NoDelayFound = 1e30;
// No delay, or a negative one, is taken as this.
constexpr double ShortestDelay = 1e-12;

// Every routine tests the dB of a point against a threshold. Taken alone each computes it from
// the response; the trace driver has already filled the dB trace and lets them read that
// instead, which spares a logarithm per point and routine on every keystroke. Both give the
// same bits, since the dB trace holds exactly ComplexToDb of each point.
struct DbFromResponse {
    std::span<const Complex> h;
    double operator()(std::size_t i) const { return ComplexToDb(h[i].re, h[i].im); }
};

struct DbFromTrace {
    std::span<const double> db;
    double operator()(std::size_t i) const { return db[i]; }
};

double Radians(Complex z) {
    return SafeAtan2(z.re, z.im);
}

// One turn at most: differences of two wrapped phases are never further out. Only one of the
// two tests can fire, so their order does not matter.
double WrapDegrees(double degrees) {
    if (degrees < -180.0) degrees += 360.0;
    if (degrees > 180.0) degrees -= 360.0;
    return degrees;
}

// A rise of a quarter turn or more between neighbouring points is read as a wrap of the
// phase and taken back in eighths of a turn; eight of them undo a full 2 pi wrap.
double UnwrapStep(double step) {
    while (step > 0.0) step -= QuarterPi;
    return step;
}

double DelayOfStep(double step, double f, double previousF) {
    return -step / (TwoPi * (f - previousF));
}

// The phase of the point once a pure delay tau, counted from fr, is taken out of it.
double DelayFreePhase(Complex h, double f, double fr, double tau) {
    const double angle = TwoPi * (f - fr) * tau;
    const Complex undo{std::cos(angle), std::sin(angle)};
    return ComplexAngleDeg(undo * h);
}

template <class DbOf>
void PhaseWith(std::span<const Complex> h, std::span<double> out, double threshold, DbOf db) {
    for (std::size_t i = 0; i < h.size(); ++i)
        out[i] = db(i) < threshold ? NoPlotValue : ComplexAngleDeg(h[i]);
}

template <class DbOf>
void GroupDelayWith(std::span<const Complex> h, std::span<double> out, std::span<const double> f,
                    double threshold, DbOf db) {
    const std::size_t n = h.size();
    // A delay needs two points.
    if (n < 2) {
        std::fill(out.begin(), out.begin() + n, NoPlotValue);
        return;
    }
    double previous = Radians(h[0]);
    for (std::size_t i = 1; i < n; ++i) {
        const double current = Radians(h[i]);
        const double step = current - previous;
        previous = current;
        // A small rise would read as a negative delay and a fall of more than half a turn as
        // no delay at all; neither is drawn.
        if (db(i) < threshold || (step > 0.0 && step < QuarterPi) || step < -Pi)
            out[i] = NoPlotValue;
        else
            out[i] = DelayOfStep(UnwrapStep(step), f[i], f[i - 1]);
    }
    out[0] = out[1];
}

template <class DbOf>
double GroupDelayScaleWith(std::span<const double> gd, DbOf db) {
    const std::size_t n = gd.size();
    double peak = -1e30;
    for (std::size_t i = 0; i < n; ++i) peak = std::max(peak, db(i));
    double low = 1e30;
    double high = -1e30;
    for (std::size_t i = 1; i < n; ++i) {
        const double level = db(i);
        if (level > peak - 3.0 && gd[i] < low) low = gd[i];
        if (level > peak - 20.0 && gd[i] > high) high = gd[i];
    }
    // Room for five times the pass band's least delay, unless a delay peak needs more.
    double scale = 10.0 * low * 0.5;
    if (high > scale) scale = 10.0 * high * 0.125;
    return RoundToSignificant(scale, 2);
}

// Needs at least six points: the search range is clamped to [1, n - 1).
template <class DbOf>
double EstimateDelayWith(std::span<const Complex> h, std::span<const double> f, int& index,
                         DbOf db) {
    const int n = static_cast<int>(h.size());
    int lo = n - 5;
    int hi = n - 1;
    if (index < 10) {
        lo = 1;
        hi = 5;
    } else if (index <= n - 10) {
        lo = index - 30;
        hi = index + 30;
    }
    lo = ClampInt(1, lo, n - 5);
    hi = ClampInt(5, hi, n - 1);

    double peak = -1e30;
    for (int i = lo; i < hi; ++i) peak = std::max(peak, db(i));
    // Only points within 1 dB of the range's maximum may set the delay.
    peak -= 1.0;

    double best = NoDelayFound;
    int found = 0;
    double previous = Radians(h[lo - 1]);
    for (int i = lo; i < hi; ++i) {
        const double current = Radians(h[i]);
        const double delay = DelayOfStep(UnwrapStep(current - previous), f[i], f[i - 1]);
        previous = current;
        if (delay < best && db(i) > peak) {
            best = delay;
            found = i;
        }
    }
    index = found;
    return std::max(best, ShortestDelay);
}

void DelayFreeRange(std::span<const Complex> h, std::span<double> out, std::span<const double> f,
                    int begin, int end, double fr, double tau) {
    for (int i = begin; i < end; ++i) out[i] = DelayFreePhase(h[i], f[i], fr, tau);
}

void ReduceAndWrap(std::span<double> out, int begin, int end, double reference) {
    for (int i = begin; i < end; ++i) out[i] = WrapDegrees(out[i] - reference);
}

// The delay comes from the point m near the centre where it is least. Below m the phase is
// referenced to point m - 1, from m on to point m itself, except the last point, which keeps
// its own phase.
template <class DbOf>
void BandPassDelayFree(std::span<const Complex> h, std::span<double> out, std::span<const double> f,
                       int refIndex, DbOf db) {
    const int n = static_cast<int>(h.size());
    int m = refIndex;
    const double tau = EstimateDelayWith(h, f, m, db);
    DelayFreeRange(h, out, f, 0, n, f[m], tau);
    if (m > 0) ReduceAndWrap(out, 0, m, out[m - 1]);
    ReduceAndWrap(out, m, n - 1, out[m]);
}

// Each side of the notch has its own delay, taken from its far end.
template <class DbOf>
void NotchDelayFree(std::span<const Complex> h, std::span<double> out, std::span<const double> f,
                    int refIndex, DbOf db) {
    const int n = static_cast<int>(h.size());
    int lowCentre = 0;
    const double lowTau = EstimateDelayWith(h, f, lowCentre, db);
    DelayFreeRange(h, out, f, 0, refIndex, f[0], lowTau);
    int highCentre = n - 1;
    const double highTau = EstimateDelayWith(h, f, highCentre, db);
    DelayFreeRange(h, out, f, refIndex, n, f[n - 1], highTau);
}

// Mode 0 (low pass) and any unknown mode measure the delay at the reference index; so does
// mode 1 (high pass), whose reference index is the last point.
template <class DbOf>
void HilbertPhaseWith(std::span<const Complex> h, std::span<double> out, std::span<const double> f,
                      double threshold, int refIndex, int mode, DbOf db) {
    const int n = static_cast<int>(h.size());
    if (mode == 2) {
        BandPassDelayFree(h, out, f, refIndex, db);
    } else if (mode == 3) {
        NotchDelayFree(h, out, f, refIndex, db);
    } else {
        // The phase is referenced to the nominal index, not to the point the estimate used.
        int centre = refIndex;
        const double tau = EstimateDelayWith(h, f, centre, db);
        DelayFreeRange(h, out, f, 0, n, f[refIndex], tau);
    }
    for (int i = 0; i < n; ++i)
        if (db(i) < threshold) out[i] = NoPlotValue;
}

bool IsMfbLowOrHighPass(Topology topology) {
    return topology == Topology::MfbLowPass || topology == Topology::MfbHighPass;
}
bool IsLowPass(Topology topology) {
    return topology == Topology::VcvsLowPass || topology == Topology::MfbLowPass;
}
bool IsHighPass(Topology topology) {
    return topology == Topology::VcvsHighPass || topology == Topology::MfbHighPass;
}

// An odd number of inverting sections turns the whole filter over; half a turn puts its
// phase back in line with the non-inverting forms.
void UndoInversion(std::span<double> phase) {
    for (double& v : phase) {
        if (v == NoPlotValue) continue;
        if (v < 0.0) v += 360.0;
        v -= 180.0;
    }
}

void ZeroAtFirstPoint(std::span<double> phase, std::size_t end) {
    for (std::size_t i = 1; i < end; ++i)
        if (phase[i] != NoPlotValue) phase[i] = WrapDegrees(phase[i] - phase[0]);
    phase[0] = 0.0;
}

// Subtracts the last point as it stands when reached, so it becomes 0 only at the end.
void ZeroAtLastPoint(std::span<double> phase, std::size_t begin) {
    const std::size_t last = phase.size() - 1;
    for (std::size_t i = begin; i <= last; ++i)
        if (phase[i] != NoPlotValue) phase[i] = WrapDegrees(phase[i] - phase[last]);
}

}  // namespace

void MagResponse(std::span<const Complex> h, std::span<double> out, int kind) {
    // The factor 9 sets unity gain on the linear scale's zero and no output at its foot.
    if (kind == 1) {
        for (std::size_t i = 0; i < h.size(); ++i) out[i] = 9.0 * ComplexAbs(h[i]) - 9.0;
    } else {
        for (std::size_t i = 0; i < h.size(); ++i) out[i] = ComplexToDb(h[i].re, h[i].im);
    }
}

void PhaseResponse(std::span<const Complex> h, std::span<double> out, double threshold) {
    PhaseWith(h, out, threshold, DbFromResponse{h});
}

void GroupDelayResponse(std::span<const Complex> h, std::span<double> out,
                        std::span<const double> frequencies, double threshold) {
    GroupDelayWith(h, out, frequencies, threshold, DbFromResponse{h});
}

double GroupDelayScale(std::span<const Complex> h, std::span<const double> groupDelay) {
    return GroupDelayScaleWith(groupDelay.first(h.size()), DbFromResponse{h});
}

double EstimateDelay(std::span<const Complex> h, std::span<const double> frequencies, int& index) {
    return EstimateDelayWith(h, frequencies, index, DbFromResponse{h});
}

void HilbertPhaseResponse(std::span<const Complex> h, std::span<double> out,
                          std::span<const double> frequencies, double threshold, int refIndex,
                          int mode) {
    HilbertPhaseWith(h, out, frequencies, threshold, refIndex, mode, DbFromResponse{h});
}

HilbertSetup HilbertSetupFor(Topology topologyIndex) {
    constexpr int Last = TracePoints - 1;
    constexpr int Middle = TracePoints / 2;
    switch (topologyIndex) {
        case Topology::VcvsHighPass:
        case Topology::MfbHighPass: return {1, Last};
        case Topology::VcvsBandPass:
        case Topology::MfbBandPass: return {2, Middle};
        case Topology::VcvsNotch: return {3, Middle};
        // Low passes, and a topology of no circuit, whose response passes everything.
        default: return {0, 0};
    }
}

void ReReferenceHilbertPhase(std::span<double> hilbertPhase, Topology topologyIndex,
                             int numSections) {
    if (hilbertPhase.empty()) return;
    if (IsMfbLowOrHighPass(topologyIndex) && numSections % 2 != 0) UndoInversion(hilbertPhase);
    const bool notch = topologyIndex == Topology::VcvsNotch;
    const auto notchSplit = static_cast<std::size_t>(HilbertSetupFor(Topology::VcvsNotch).refIndex);
    if (IsLowPass(topologyIndex) || notch)
        ZeroAtFirstPoint(hilbertPhase, notch ? notchSplit : hilbertPhase.size());
    if (IsHighPass(topologyIndex) || notch) ZeroAtLastPoint(hilbertPhase, notch ? notchSplit : 0);
}

void ComputeTraces(std::span<const Complex> h, std::span<const double> frequencies,
                   double threshold, Topology topologyIndex, int numSections, Traces& traces) {
    h = h.first(TracePoints);
    frequencies = frequencies.first(TracePoints);
    MagResponse(h, traces.magnitudeLinear, 1);
    MagResponse(h, traces.magnitudeDb, 0);
    const DbFromTrace db{traces.magnitudeDb};
    const HilbertSetup setup = HilbertSetupFor(topologyIndex);
    HilbertPhaseWith(h, traces.hilbertPhase, frequencies, threshold, setup.refIndex, setup.mode,
                     db);
    ReReferenceHilbertPhase(traces.hilbertPhase, topologyIndex, numSections);
    PhaseWith(h, traces.phase, threshold, db);
    GroupDelayWith(h, traces.groupDelay, frequencies, threshold, db);
    traces.groupDelayScale = GroupDelayScaleWith(std::span<const double>(traces.groupDelay), db);
}

}  // namespace nerivane
