#include "circuit/Valuecalculations.h"

#include <optional>

#include <cmath>

#include "numerics/CheckedMath.h"
#include "numerics/Formatfunctions.h"

namespace nerivane {
namespace {

constexpr double UnityGainThreshold = 1.001;
constexpr double C1Floor = 1e-13;
constexpr double LimitFloor = 1e-12;
constexpr double FallbackLimit = 10.0;
constexpr double SuggestionTimeConstant = 1e-5;  // seconds: C = 10 us / F0 for 10 kΩ-ish parts

// One prototype section's denominator A s^2 + B s + C.
struct Denominator {
    double A, B, C;
};

// Everything one section's calculation reads.
struct SectionContext {
    const ComponentInputs& inputs;
    const ComponentSettings& settings;
    SectionPanelHints& hints;
    int index;
    Denominator den;
    double w;  // 2 pi F0
    double K;  // section gain
};

bool IsSelected(const SectionContext& x) {
    return x.index == x.inputs.selectedSection;
}

std::string CapacitorText(double value) {
    return FormatEngineering(value, 2, "F");
}

// The preparation every topology shares: the working capacitors, the limit that keeps the
// low-pass square roots real (pushing C1 down until it is met) and the panel's hints.
// ratio is the band-pass routine's b0 / (H b1 - b0), 0 for the others.
void Prepare(const SectionContext& x, WorkingComponents& parts, double ratio) {
    const int i = x.index;
    const double A = x.den.A, B = x.den.B, C = x.den.C, K = x.K;
    parts.C1 = x.inputs.sectionC1[i];
    parts.C2 = x.inputs.sectionC2[i];
    const double suggested = x.settings.CapacitorStd(SuggestionTimeConstant / x.inputs.f0);
    const bool selected = IsSelected(x);

    double limit = 0.0;
    bool pushDown = false;
    const auto showLimitAndSuggestion = [&](bool limitVisible) {
        if (!selected) return;
        x.hints.c1LimitText = "Set < " + CapacitorText(limit);
        x.hints.c1LimitVisible = limitVisible;
        x.hints.c2PanelVisible = true;
        x.hints.suggestedC2Text = "~ " + CapacitorText(suggested);
    };
    const auto hideC2Panel = [&] {
        if (!selected) return;
        x.hints.c1LimitText = " ";
        x.hints.c1LimitVisible = true;
        x.hints.c2PanelVisible = false;
    };

    switch (x.inputs.topology) {
        case Topology::VcvsLowPass:
            limit = (4.0 * C * (K - 1.0) + B * B) * parts.C2 * 0.25 / C;
            showLimitAndSuggestion(A != 0.0);
            if (A == 0.0) parts.C2 = OpenMarker;
            pushDown = true;
            break;
        case Topology::MfbLowPass:
            limit = B * B * parts.C2 / (4.0 * C * (K + 1.0));
            showLimitAndSuggestion(A != 0.0);
            if (A == 0.0) parts.C2 = 0.0;
            pushDown = true;
            break;
        case Topology::VcvsHighPass:
            hideC2Panel();
            if (A == 0.0) {
                // First order: the input capacitor is a wire and the user's C1 is the one left.
                parts.C2 = parts.C1;
                parts.C1 = OpenMarker;
            } else {
                parts.C2 = parts.C1;  // equal capacitors
            }
            break;
        case Topology::MfbHighPass:
            hideC2Panel();
            parts.C2 = x.settings.CapacitorStd(parts.C1 / K);
            break;
        case Topology::VcvsBandPass:
            hideC2Panel();
            parts.C2 = AbsentMarker;
            break;
        case Topology::MfbBandPass:
            limit = ratio <= 0.0 ? FallbackLimit : ratio * parts.C2;
            if (!(limit >= LimitFloor)) limit = LimitFloor;
            if (selected) {
                x.hints.c1LimitText = " ";
                x.hints.c1LimitVisible = true;
                x.hints.c2PanelVisible = true;
                x.hints.suggestedC2Text = "~ " + CapacitorText(suggested);
            }
            pushDown = true;
            break;
        case Topology::VcvsNotch:
            hideC2Panel();
            parts.C2 = x.settings.CapacitorStd(2.0 * parts.C1);
            break;
        default: break;
    }

    if (pushDown && A != 0.0) {
        while (parts.C1 >= limit && parts.C1 > C1Floor) {
            const double lower = StepCapacitor(x.settings, parts.C1, false);
            if (!(lower < parts.C1)) break;  // a series that cannot step down any further
            parts.C1 = lower;
        }
    }
    if (selected) x.hints.c1PushedDown = x.inputs.sectionC1[i] > parts.C1;
}

void VcvsLowPassValues(const SectionContext& x, WorkingComponents& p) {
    const double A = x.den.A, B = x.den.B, C = x.den.C, K = x.K, w = x.w;
    const bool gainPair = K > UnityGainThreshold;
    if (A == 0.0) {
        p.R1 = 1.0 / w / p.C1 / C;
        p.R2 = 0.0;
        if (gainPair) {
            p.R4 = K * p.R1;
            p.R3 = K * p.R1 / (K - 1.0);
            return;
        }
    } else {
        const double D = p.C2 * p.C2 * (4.0 * C * (K - 1.0) + B * B) - 4.0 * C * p.C1 * p.C2;
        if (!(D >= 0.0)) {
            p.R1 = p.R2 = FailMarker;
        } else {
            p.R1 = 2.0 / (CheckedSqrt(D) + B * p.C2) / w;
            p.R2 = 1.0 / C / p.C1 / p.C2 / p.R1 / w / w;
        }
        if (gainPair) {
            p.R3 = (p.R1 + p.R2) * K / (K - 1.0);
            p.R4 = (p.R1 + p.R2) * K;
            return;
        }
    }
    p.R4 = 0.0;  // a follower
    p.R3 = OpenMarker;
}

void MfbLowPassValues(const SectionContext& x, WorkingComponents& p) {
    const double A = x.den.A, B = x.den.B, C = x.den.C, K = x.K, w = x.w;
    p.R4 = AbsentMarker;
    if (A == 0.0) {
        p.R3 = 0.0;
        p.R2 = 1.0 / w / p.C1 / C;
        p.R1 = p.R2 / K;
        return;
    }
    const double D = B * B * p.C2 * p.C2 - 4.0 * C * p.C1 * p.C2 * (K + 1.0);
    if (!(D >= 0.0)) {
        p.R1 = p.R2 = p.R3 = FailMarker;
        return;
    }
    p.R2 = 2.0 * (K + 1.0) / (CheckedSqrt(D) + B * p.C2) / w;
    p.R1 = p.R2 / K;
    p.R3 = 1.0 / (C * p.C1 * p.C2 * p.R2 * w * w);
}

void VcvsHighPassValues(const SectionContext& x, WorkingComponents& p) {
    const double A = x.den.A, B = x.den.B, C = x.den.C, K = x.K, w = x.w;
    if (A == 0.0) {
        p.R2 = C / p.C2 / w;
        p.R1 = OpenMarker;
    } else {
        // A negative argument would mean an impossible gain; it gives NaN resistors.
        const double D = 8.0 * C * (K - 1.0) + B * B;
        p.R2 = 4.0 * C / (CheckedSqrt(D) + B) / p.C1 / w;
        p.R1 = C / p.C1 / p.C1 / p.R2 / w / w;
    }
    if (K > UnityGainThreshold) {
        p.R3 = K * p.R2 / (K - 1.0);
        p.R4 = K * p.R2;
    } else {
        p.R4 = 0.0;
        p.R3 = OpenMarker;
    }
}

void MfbHighPassValues(const SectionContext& x, WorkingComponents& p) {
    const double A = x.den.A, B = x.den.B, C = x.den.C, w = x.w;
    p.R3 = p.R4 = AbsentMarker;
    if (A == 0.0) {
        p.R2 = C / p.C2 / w;
        p.R1 = OpenMarker;
        return;
    }
    const double S = 2.0 * p.C1 + p.C2;
    p.R1 = B / w / S;
    p.R2 = S * C / p.C1 / p.C2 / B / w;
}

void NotchValues(const SectionContext& x, WorkingComponents& p) {
    const double w = x.w;
    const double Q = x.inputs.f0 / x.inputs.bandwidth;
    p.R1 = 0.5 / w / Q / p.C1;
    p.R2 = 2.0 * Q / w / p.C1;
    p.R3 = p.R1 * p.R2 / (p.R1 + p.R2);
    p.R4 = AbsentMarker;
}

// One band-pass resonator: gain H and the normalised denominator s^2 + b1 s + b0.
struct Resonator {
    double H, b1, b0;
};

// Splits prototype section p into its band-pass resonator for section i: a real pole gives one
// resonator, a pole pair two (the even section the upper one, the odd the lower). Returns
// The message when the pair has no real split.
std::optional<Message> BandPassResonator(const SectionContext& x, Resonator& r) {
    const double A = x.den.A, B = x.den.B, C = x.den.C, K = x.K;
    const double Q = x.inputs.f0 / x.inputs.bandwidth;
    if (A == 0.0) {
        r = {K * C / Q, C / Q, 1.0};
        return std::nullopt;
    }
    const double T = 4.0 * Q * Q + C;
    const double E = T * T - (2.0 * B * Q) * (2.0 * B * Q);
    if (!(E >= 0.0)) return Message{"E_a calc fails", "Error"};
    const double F = CheckedSqrt(E) + T;
    if (!(F >= 0.0)) return Message{"E_b calc fails", "Error"};
    const double Qs = CheckedSqrt(F * 0.5) / B;
    const double D = B * Qs / Q;
    const double G = D * D - 4.0;
    if (!(G >= 0.0)) return Message{"D_b calc fails", "Error"};
    const double M = (CheckedSqrt(G) + D) * 0.5;
    r.H = CheckedSqrt(C) * K / Q;
    if (x.index % 2 == 0) {
        r.b1 = M / Qs;
        r.b0 = M * M;
    } else {
        r.b1 = 1.0 / M / Qs;
        r.b0 = 1.0 / (M * M);
    }
    return std::nullopt;
}

void BandPassValues(const SectionContext& x, const Resonator& r, WorkingComponents& p) {
    const double w = x.w;
    if (x.inputs.topology == Topology::VcvsBandPass) {
        p.R1 = 2.0 / r.H / w / p.C1;
        p.R2 = (2.0 / w / p.C1) / (CheckedSqrt((r.H - r.b1) * (r.H - r.b1) + 8.0 * r.b0) - r.b1);
        p.R3 = (1.0 / p.R1 + 1.0 / p.R2) / (w * w * p.C1 * p.C1 * r.b0);
        p.R4 = 2.0 * p.R3;
    } else {
        p.R1 = 1.0 / r.H / w / p.C1;
        p.R2 = r.b1 / w / ((r.b0 - r.b1 * r.H) * p.C1 + r.b0 * p.C2);
        p.R3 = (1.0 / p.C1 + 1.0 / p.C2) * (1.0 / r.b1 / w);
        p.R4 = AbsentMarker;
    }
}

Denominator PrototypeSection(const ProtoSections& prototype, int p) {
    return {prototype.DenS2[p], prototype.DenS1[p], prototype.DenS0[p]};
}

// Rounds the resistors to the chosen series unless exact values were asked for; capacitors
// are standard values or markers already.
void StoreSection(const SectionContext& x, WorkingComponents p, SectionComponents& parts,
                  std::vector<StandardValueErrors>* searched) {
    if (x.settings.mode != ToleranceMode::Exact && x.settings.build.bestStandardValues) {
        StandardValueErrors errors{.section = x.index};
        p = SearchedResistors(x.inputs.topology, p, x.settings, errors);
        if (searched) searched->push_back(errors);
    } else if (x.settings.mode != ToleranceMode::Exact) {
        p = RoundedResistors(p, x.settings);
    }
    parts.Store(x.index, p);
}

}  // namespace

double StepCapacitor(const ComponentSettings& settings, double value, bool up) {
    const double tolerance = settings.capacitorClass.fraction;
    const double factor = up ? 1.0 + 2.0 * tolerance : 1.0 - 2.0 * tolerance;
    return settings.CapacitorStd(settings.CapacitorStd(value) * factor);
}

void CalculateComponents(const ComponentInputs& inputs, const ProtoSections& prototype,
                         const ComponentSettings& settings, SectionComponents& parts,
                         SectionPanelHints& hints, Messages& messages,
                         std::vector<StandardValueErrors>* searched) {
    if (searched) searched->clear();
    const double w = TwoPi * inputs.f0;
    // A real prototype pole makes one band-pass section and a pole pair two; once the real
    // pole has been passed the pairs start one section later.
    int bandPassOffset = 0;
    for (int i = 0; i < inputs.numSections && i < MaxSections; ++i) {
        SectionContext x{inputs, settings,   hints, i, PrototypeSection(prototype, i),
                         w,      inputs.gain};
        WorkingComponents working = parts.Section(i);
        switch (inputs.topology) {
            case Topology::VcvsLowPass:
                Prepare(x, working, 0.0);
                VcvsLowPassValues(x, working);
                break;
            case Topology::MfbLowPass:
                Prepare(x, working, 0.0);
                MfbLowPassValues(x, working);
                break;
            case Topology::VcvsHighPass:
                Prepare(x, working, 0.0);
                VcvsHighPassValues(x, working);
                break;
            case Topology::MfbHighPass:
                Prepare(x, working, 0.0);
                MfbHighPassValues(x, working);
                break;
            case Topology::VcvsBandPass:
            case Topology::MfbBandPass: {
                const int p = (bandPassOffset + i) / 2;
                x.den = PrototypeSection(prototype, p);
                if (x.den.A == 0.0) bandPassOffset = 1;
                Resonator r{};
                if (std::optional<Message> failed = BandPassResonator(x, r)) {
                    messages.push_back(std::move(*failed));
                    continue;  // the section keeps its old values
                }
                const double slope = r.H * r.b1 - r.b0;
                Prepare(x, working, slope == 0.0 ? -1.0 : r.b0 / slope);
                BandPassValues(x, r, working);
                break;
            }
            case Topology::VcvsNotch:
                Prepare(x, working, 0.0);
                NotchValues(x, working);
                break;
            default: continue;
        }
        StoreSection(x, working, parts, searched);
    }
}

}  // namespace nerivane
