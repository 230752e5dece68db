#include "app/Requirementorders.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "app/Statusline.h"
#include "app/Updownfunctions.h"
#include "circuit/Valuecalculations.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Numberreading.h"
#include "numerics/Polymain.h"

namespace nerivane {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
// A margin this close to zero is zero: a Chebyshev row spends all of Ap on its ripple.
constexpr double MarginSlackDb = 1e-9;
constexpr std::array<Response, 6> Families = {Response::Butterworth, Response::Chebyshev,
                                              Response::Papoulis,    Response::Bessel,
                                              Response::Gaussian,    Response::AdjustableGauss};

// The low-pass prototype of one family and order, and what the search reads of it: the peak
// the attenuation is counted from and the extremes of a ripple band.
struct Prototype {
    ProtoSections sections;
    int count = 0;
    double peakDb = 0.0;
    // Local extremes of the attenuation below the corner: troughs of the response (the ripple's
    // deepest points) and its peaks.
    std::vector<std::pair<double, double>> troughs, peaks;  // (w, attenuation dB)
    double rippleDb = 0.0;                                  // the deepest trough
    double rippleEdge = 0.0;  // the largest w with attenuation within the ripple; 0 if none
};

// 10 log10 |H(jw)|^2 of the sections.
double PowerDb(const Prototype& p, double w) {
    const double w2 = w * w;
    double power = 1.0;
    const ProtoSections& s = p.sections;
    for (int i = 0; i < p.count; ++i) {
        const double nr = s.NumS0[i] - s.NumS2[i] * w2, ni = s.NumS1[i] * w;
        const double dr = s.DenS0[i] - s.DenS2[i] * w2, di = s.DenS1[i] * w;
        power *= (nr * nr + ni * ni) / (dr * dr + di * di);
    }
    return 10.0 * std::log10(power);
}

double Attenuation(const Prototype& p, double w) {
    return p.peakDb - PowerDb(p, w);
}

// The most attenuation anywhere from DC to w, and the least from w upwards.
double PassAttenuation(const Prototype& p, double w) {
    double worst = Attenuation(p, w);
    for (const auto& [at, db] : p.troughs)
        if (at <= w) worst = std::max(worst, db);
    return worst;
}

double StopAttenuation(const Prototype& p, double w) {
    double least = Attenuation(p, w);
    for (const auto& [at, db] : p.peaks)
        if (at >= w) least = std::min(least, db);
    return least;
}

// The x in [low, high] where f is largest, by golden sections: each step keeps 0.618 of the
// interval.
template <typename F>
double Maximise(F f, double low, double high, int steps) {
    constexpr double Ratio = 0.6180339887498949;
    double a = high - Ratio * (high - low), b = low + Ratio * (high - low);
    double fa = f(a), fb = f(b);
    for (int i = 0; i < steps; ++i) {
        if (fa < fb) {
            low = a, a = b, fa = fb;
            b = low + Ratio * (high - low), fb = f(b);
        } else {
            high = b, b = a, fb = fa;
            a = high - Ratio * (high - low), fa = f(a);
        }
    }
    return 0.5 * (low + high);
}

// Finds the extremes of the response below the corner: a coarse look first, and only where
// the response is not monotonic a fine one, each extreme then found exactly.
void FindRipple(Prototype& p) {
    constexpr double Top = 1.25;
    const auto scan = [&](int points, auto&& atExtreme) {
        double before = PowerDb(p, 0.0), here = PowerDb(p, Top / points);
        for (int k = 2; k <= points; ++k) {
            const double next = PowerDb(p, k * Top / points);
            const bool rising = here > before, falling = next < here;
            const bool trough = here < before && next > here;
            if ((rising && falling) || trough)
                atExtreme((k - 2) * Top / points, k * Top / points, rising && falling);
            before = here;
            here = next;
        }
    };
    bool ripples = false;
    scan(128, [&](double, double, bool) { ripples = true; });
    p.peakDb = PowerDb(p, 0.0);
    if (!ripples) return;
    std::vector<std::pair<double, bool>> extremes;  // (w, is a peak)
    // Twenty poles ripple about every 0.012 rad/s near the corner: a few points a ripple.
    scan(512, [&](double low, double high, bool peak) {
        constexpr int Steps = 32;  // to a millionth of the interval
        const double w = peak
                             ? Maximise([&](double x) { return PowerDb(p, x); }, low, high, Steps)
                             : Maximise([&](double x) { return -PowerDb(p, x); }, low, high, Steps);
        extremes.emplace_back(w, peak);
    });
    for (const auto& [w, peak] : extremes)
        if (peak) p.peakDb = std::max(p.peakDb, PowerDb(p, w));
    for (const auto& [w, peak] : extremes)
        (peak ? p.peaks : p.troughs).emplace_back(w, Attenuation(p, w));
    for (const auto& [w, db] : p.troughs) p.rippleDb = std::max(p.rippleDb, db);
    if (extremes.empty() || p.troughs.empty()) return;
    // Past the last extreme the attenuation only rises: where it leaves the ripple band.
    double low = extremes.back().first, high = 4.0;
    for (int i = 0; i < 60; ++i) {
        const double middle = 0.5 * (low + high);
        (Attenuation(p, middle) <= p.rippleDb ? low : high) = middle;
    }
    p.rippleEdge = low;
}

Prototype FamilyPrototype(Response family, int poles, double ripple, double gamma) {
    Prototype p;
    p.count = BuildPrototype(family, poles, ripple, gamma, p.sections).sectionCount;
    FindRipple(p);
    return p;
}

// A notch's sections in the band-stop variable: first-order low passes, all at one corner.
Prototype NotchPrototype(int sections) {
    Prototype p;
    ResetSections(p.sections);
    for (int i = 0; i < sections; ++i) p.sections.DenS1[i] = 1.0;
    p.count = sections;
    return p;
}

// The mask as a low pass: pass and stop edges in a variable in which the design's one free
// frequency (the corner of a low pass, 1 / corner of a high pass, the band width of a band
// pass, 1 / band width of a notch) is a plain scale t, so the attenuation at an edge is the
// prototype's at edge / t.
struct LowPassView {
    double passEdge, stopEdge;
};

double Distance(double f, double centre) {
    return std::fabs(f * f - centre * centre) / f;
}

LowPassView ViewOf(const RequirementMask& m, double centre) {
    const std::array<double, 2>&p = m.passEdgesHz, &s = m.stopEdgesHz;
    switch (m.kind) {
        case MaskKind::HighPass: return {1.0 / p[0], 1.0 / s[0]};
        case MaskKind::BandPass:
            return {std::max(Distance(p[0], centre), Distance(p[1], centre)),
                    std::min(Distance(s[0], centre), Distance(s[1], centre))};
        case MaskKind::Notch:
            return {1.0 / std::min(Distance(p[0], centre), Distance(p[1], centre)),
                    1.0 / std::max(Distance(s[0], centre), Distance(s[1], centre))};
        case MaskKind::LowPass: break;
    }
    return {p[0], s[0]};
}

bool ScaleIsCorner(MaskKind kind) {
    return kind == MaskKind::LowPass || kind == MaskKind::BandPass;
}

// The box's own resolution and limits in hertz: the scale as the design will hold it.
double AsBoxHolds(BoxId box, double hz) {
    const BoxRule& rule = RuleOf(box);
    const BoxLimits limits = rule.limits(DesignState{});
    const double step = 1000.0 * std::pow(10.0, -rule.decimals);
    return std::clamp(std::round(hz / step) * step, 1000.0 * ParseFloatOr(limits.minimum, 0.0),
                      1000.0 * ParseFloatOr(limits.maximum, Infinity));
}

struct Margins {
    double pass, stop;
    double Least() const { return std::min(pass, stop); }
    // More of the smaller margin first, then more in all.
    bool Beats(const Margins& other) const {
        if (std::fabs(Least() - other.Least()) > MarginSlackDb) return Least() > other.Least();
        return pass + stop > other.pass + other.stop;
    }
};

Margins MarginsAt(const Prototype& p, const LowPassView& view, const RequirementMask& m, double t) {
    return {m.passDb - PassAttenuation(p, view.passEdge / t),
            StopAttenuation(p, view.stopEdge / t) - m.stopDb};
}

// The scale that leaves equal margins (their difference only grows with t), or, where the
// family ripples, the one that puts the pass edge at the ripple band's edge if that is better.
double BestScale(const Prototype& p, const LowPassView& view, const RequirementMask& m) {
    double low = std::log(view.passEdge) - std::log(1e6);
    double high = std::log(view.stopEdge) + std::log(1e6);
    for (int i = 0; i < 50; ++i) {
        const double middle = 0.5 * (low + high);
        const Margins at = MarginsAt(p, view, m, std::exp(middle));
        (at.pass < at.stop ? low : high) = middle;
    }
    double best = std::exp(0.5 * (low + high));
    if (p.rippleEdge > 0.0) {
        const double atEdge = view.passEdge / p.rippleEdge;
        if (MarginsAt(p, view, m, atEdge).Beats(MarginsAt(p, view, m, best))) best = atEdge;
    }
    return best;
}

// The design's frequencies for a scale t.
struct Frequencies {
    double f0, bandwidth;
};

Frequencies FrequenciesOf(MaskKind kind, double centre, double t) {
    switch (kind) {
        case MaskKind::HighPass: return {1.0 / t, 0.0};
        case MaskKind::BandPass: return {centre, t};
        case MaskKind::Notch: return {centre, 1.0 / t};
        case MaskKind::LowPass: break;
    }
    return {t, 0.0};
}

// The prototype's response at the design's frequency f (Hz): the low pass's at the signed
// frequency the circuit's mapping gives.
Complex ResponseAt(const Prototype& p, MaskKind kind, const Frequencies& design, double f) {
    const double f0 = design.f0, bw = design.bandwidth;
    double w = f / f0;
    if (kind == MaskKind::HighPass) w = -f0 / f;
    if (kind == MaskKind::BandPass) w = (f * f - f0 * f0) / (f * bw);
    if (kind == MaskKind::Notch) w = f * bw / (f0 * f0 - f * f);
    Complex h{1.0, 0.0};
    const ProtoSections& s = p.sections;
    for (int i = 0; i < p.count; ++i) {
        const Complex num{s.NumS0[i] - s.NumS2[i] * w * w, s.NumS1[i] * w};
        const Complex den{s.DenS0[i] - s.DenS2[i] * w * w, s.DenS1[i] * w};
        const double d2 = den.re * den.re + den.im * den.im;
        h = h * (num * Conjugate(den)) * (1.0 / d2);
    }
    return h;
}

// Largest less smallest group delay over the pass regions, from the phase's slope.
double DelayVariation(const Prototype& p, const RequirementMask& m, const Frequencies& design) {
    double least = Infinity, most = -Infinity;
    constexpr int Points = 48;
    for (const MaskRegion& region : MaskRegions(m)) {
        if (!region.pass) continue;
        const double from = region.fromHz > 0.0 ? region.fromHz : region.toHz / 100.0;
        const double to = std::isfinite(region.toHz) ? region.toHz : 100.0 * region.fromHz;
        for (int k = 0; k <= Points; ++k) {
            const double f = from * std::pow(to / from, static_cast<double>(k) / Points);
            const double h = 1e-5 * f;
            const Complex ratio = ResponseAt(p, m.kind, design, f + h) *
                                  Conjugate(ResponseAt(p, m.kind, design, f - h));
            const double delay = -std::atan2(ratio.im, ratio.re) / (TwoPi * 2.0 * h);
            least = std::min(least, delay);
            most = std::max(most, delay);
        }
    }
    return most - least;
}

// The prototype's step response, integrated section by section (each a second-order system
// driven by the one before) with fourth-order Runge-Kutta; its overshoot over the final value.
double StepOvershootPercent(const Prototype& p) {
    const ProtoSections& s = p.sections;
    double delay = 0.0, fastest = 1.0;
    for (int i = 0; i < p.count; ++i) {
        delay += s.DenS1[i] / s.DenS0[i];
        if (s.DenS2[i] > 0.0)
            fastest = std::max(fastest, std::sqrt(s.DenS0[i] / s.DenS2[i]));
        else
            fastest = std::max(fastest, s.DenS0[i] / s.DenS1[i]);
    }
    const double dt = 0.05 / fastest, end = 3.0 * delay + 20.0;
    std::array<double, 2 * MaxSections> x{};
    const auto derivative = [&](const std::array<double, 2 * MaxSections>& state) {
        std::array<double, 2 * MaxSections> d{};
        double input = 1.0;
        for (int i = 0; i < p.count; ++i) {
            const double y = state[2 * i], dy = state[2 * i + 1];
            if (s.DenS2[i] != 0.0) {
                d[2 * i] = dy;
                d[2 * i + 1] = (s.NumS0[i] * input - s.DenS1[i] * dy - s.DenS0[i] * y) / s.DenS2[i];
            } else {
                d[2 * i] = (s.NumS0[i] * input - s.DenS0[i] * y) / s.DenS1[i];
            }
            input = y;
        }
        return d;
    };
    double final = 1.0;
    for (int i = 0; i < p.count; ++i) final *= s.NumS0[i] / s.DenS0[i];
    double highest = 0.0;
    const std::size_t n = 2 * static_cast<std::size_t>(p.count);
    for (double t = 0.0; t < end; t += dt) {
        const auto k1 = derivative(x);
        auto step = [&](const std::array<double, 2 * MaxSections>& k, double f) {
            std::array<double, 2 * MaxSections> y = x;
            for (std::size_t i = 0; i < n; ++i) y[i] += f * dt * k[i];
            return y;
        };
        const auto k2 = derivative(step(k1, 0.5));
        const auto k3 = derivative(step(k2, 0.5));
        const auto k4 = derivative(step(k3, 1.0));
        for (std::size_t i = 0; i < n; ++i)
            x[i] += dt / 6.0 * (k1[i] + 2.0 * (k2[i] + k3[i]) + k4[i]);
        highest = std::max(highest, x[2 * (p.count - 1)]);
    }
    return std::max(0.0, 100.0 * (highest / final - 1.0));
}

// The design of one prototype for the mask: its frequencies as the boxes hold them (the
// nearest whole hertz, or one either side if that meets the mask better) and its margins.
struct Fitted {
    Frequencies design;
    Margins margins;
};

Fitted Fit(const Prototype& p, const RequirementMask& m, double centre) {
    const LowPassView view = ViewOf(m, centre);
    if (!(view.stopEdge > view.passEdge)) return {{centre, 0.0}, {-Infinity, -Infinity}};
    const double t = BestScale(p, view, m);
    const BoxId box =
        m.kind == MaskKind::LowPass || m.kind == MaskKind::HighPass ? BoxId::F0 : BoxId::BandWidth;
    const Frequencies exact = FrequenciesOf(m.kind, centre, t);
    const double held = AsBoxHolds(box, box == BoxId::F0 ? exact.f0 : exact.bandwidth);
    Fitted best{{}, {-Infinity, -Infinity}};
    for (const double hz : {held, AsBoxHolds(box, held - 1.0), AsBoxHolds(box, held + 1.0)}) {
        const double scale = ScaleIsCorner(m.kind) ? hz : 1.0 / hz;
        const Margins margins = MarginsAt(p, view, m, scale);
        if (margins.Beats(best.margins)) best = {FrequenciesOf(m.kind, centre, scale), margins};
    }
    return best;
}

OrderRow SearchFamily(Response family, const OrderSearch& search, double centre) {
    const RequirementMask& m = search.mask;
    Prototype best;
    // A Chebyshev order is found with all of Ap in its ripple, the steepest it can be.
    const auto rippleFor = [&](int poles) {
        if (family != Response::Chebyshev) return search.ripple;
        return std::floor(1000.0 * std::min(m.passDb, RippleMaximum(family, poles))) / 1000.0;
    };
    const auto designFor = [&](int poles, double ripple, OrderRow& row) {
        const Prototype p = m.kind == MaskKind::Notch
                                ? NotchPrototype(poles)
                                : FamilyPrototype(family, poles, ripple, search.gamma);
        const Fitted fitted = Fit(p, m, centre);
        if (fitted.margins.Least() < -MarginSlackDb) return false;
        row.poles = poles;
        row.ripple = ripple;
        row.f0Hz = fitted.design.f0;
        row.bandwidthHz = fitted.design.bandwidth;
        // Zero where it is zero but for rounding, the same in every build.
        const auto settled = [](double db) { return std::fabs(db) < MarginSlackDb ? 0.0 : db; };
        row.passMarginDb = settled(fitted.margins.pass);
        row.stopMarginDb = settled(fitted.margins.stop);
        best = p;
        return true;
    };
    // More poles only ever steepen a family, so the fewest that meet the mask are found by
    // halving, starting from the most the circuit takes.
    OrderRow row;
    row.family = family;
    OrderRow found = row;
    if (!designFor(search.maxPoles, rippleFor(search.maxPoles), found)) return row;
    int failing = 0, meeting = search.maxPoles;
    while (meeting - failing > 1) {
        const int middle = (failing + meeting) / 2;
        OrderRow trial = row;
        if (designFor(middle, rippleFor(middle), trial)) {
            meeting = middle;
            found = trial;
        } else {
            failing = middle;
        }
    }
    // All of Ap in the ripple leaves no margin in the pass band, which a circuit as built then
    // misses by a hair: the order found is built with the ripple that leaves most of the
    // smaller margin, as the box holds it.
    if (family == Response::Chebyshev && m.kind != MaskKind::Notch) {
        const auto least = [&](double ripple) {
            OrderRow trial = row;
            return designFor(found.poles, ripple, trial)
                       ? std::min(trial.passMarginDb, trial.stopMarginDb)
                       : -Infinity;
        };
        // To a ten-thousandth of a dB, finer than the box holds.
        const double ripple =
            std::floor(1000.0 * Maximise(least, 0.001, found.ripple, 20)) / 1000.0;
        OrderRow trial = row;
        if (ripple > 0.0 && designFor(found.poles, ripple, trial) &&
            std::min(trial.passMarginDb, trial.stopMarginDb) >
                std::min(found.passMarginDb, found.stopMarginDb))
            found = trial;
        else
            designFor(found.poles, found.ripple, found);
    }
    // What the design costs, for the last prototype that met the mask: the one found.
    const Frequencies design{found.f0Hz, found.bandwidthHz};
    found.delayVariationS = DelayVariation(best, m, design);
    found.overshootPercent = m.kind == MaskKind::Notch ? NaN : StepOvershootPercent(best);
    return found;
}

}  // namespace

std::vector<OrderRow> RequirementOrders(const OrderSearch& search) {
    std::vector<OrderRow> rows;
    if (!MaskProblem(search.mask).empty()) return rows;
    const bool twoSided =
        search.mask.kind == MaskKind::BandPass || search.mask.kind == MaskKind::Notch;
    const double centre = twoSided ? AsBoxHolds(BoxId::F0, MaskCentreHz(search.mask)) : 0.0;
    if (search.mask.kind == MaskKind::Notch) {
        rows.push_back(SearchFamily(search.notchFamily, search, centre));
        return rows;
    }
    for (const Response family : Families) rows.push_back(SearchFamily(family, search, centre));
    return rows;
}

std::vector<std::string> OrderTableLines(const std::vector<OrderRow>& rows, int maxPoles) {
    std::vector<std::string> lines{"Orders that meet the requirement"};
    for (const OrderRow& row : rows) {
        std::string line = "  " + FamilyName(row.family) + ": ";
        if (!row.Meets()) {
            lines.push_back(line + "none up to " + std::to_string(maxPoles) + " poles");
            continue;
        }
        line += std::to_string(row.poles) + (row.poles == 1 ? " pole" : " poles") + ", F0 " +
                FormatEngineering(row.f0Hz, 2, "Hz");
        if (row.bandwidthHz > 0.0)
            line += ", band width " + FormatEngineering(row.bandwidthHz, 2, "Hz");
        if (row.family == Response::Chebyshev)
            line += ", ripple " + FormatFixedPlain(row.ripple, 3) + " dB";
        line += ", margins " + FormatFixedPlain(row.passMarginDb, 2) + " / " +
                FormatFixedPlain(row.stopMarginDb, 2) + " dB, delay variation " +
                FormatEngineering(row.delayVariationS, 2, "s");
        if (!std::isnan(row.overshootPercent))
            line += ", overshoot " + FormatFixedPlain(row.overshootPercent, 1) + " %";
        lines.push_back(line);
    }
    return lines;
}

OrderSearch OrderSearchFor(const RequirementMask& mask, const DesignState& state) {
    OrderSearch search;
    search.mask = mask;
    const bool onePerPole = mask.kind == MaskKind::BandPass || mask.kind == MaskKind::Notch;
    search.maxPoles = onePerPole ? 10 : MaxPoles;
    search.ripple = state.Ripple;
    search.gamma = state.Gamma;
    search.notchFamily = state.ResponseIndex;
    return search;
}

void ApplyOrderRow(const OrderRow& row, MaskKind kind, DesignState& state,
                   const ParameterBoxes& boxes) {
    if (!row.Meets()) return;
    state.ResponseIndex = row.family;
    if (MaskKindOf(state.TopologyIndex) != kind) {
        const bool mfb = state.TopologyIndex == Topology::MfbLowPass ||
                         state.TopologyIndex == Topology::MfbHighPass ||
                         state.TopologyIndex == Topology::MfbBandPass;
        switch (kind) {
            case MaskKind::LowPass:
                state.TopologyIndex = mfb ? Topology::MfbLowPass : Topology::VcvsLowPass;
                break;
            case MaskKind::HighPass:
                state.TopologyIndex = mfb ? Topology::MfbHighPass : Topology::VcvsHighPass;
                break;
            case MaskKind::BandPass:
                state.TopologyIndex = mfb ? Topology::MfbBandPass : Topology::VcvsBandPass;
                break;
            case MaskKind::Notch: state.TopologyIndex = Topology::VcvsNotch; break;
        }
    }
    boxes[BoxId::NumPoles].SetText(std::to_string(row.poles));
    const auto kilohertz = [](double hz) {
        return FormatFixed(hz / 1000.0, RuleOf(BoxId::F0).decimals);
    };
    boxes[BoxId::F0].SetText(kilohertz(row.f0Hz));
    if (row.bandwidthHz > 0.0) boxes[BoxId::BandWidth].SetText(kilohertz(row.bandwidthHz));
    if (row.family == Response::Chebyshev)
        boxes[BoxId::Ripple].SetText(FormatFixed(row.ripple, RuleOf(BoxId::Ripple).decimals));
}

}  // namespace nerivane
