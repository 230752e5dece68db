// Designing to a requirement: the orders found against the closed-form order formulas, every
// family's row applied to the design and calculated as the window would (it meets the mask, and
// one pole fewer meets it at no F0), and a worst-case analysis's envelope and yield counted
// from its runs.
#include "app/Requirementorders.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "app/Calculationdriver.h"
#include "app/Initializevars.h"
#include "app/Updownfunctions.h"
#include "circuit/Sectionfigures.h"

namespace nerivane {
namespace {

RequirementMask Mask(const char* text) {
    const ParsedMask parsed = ParseMask(text);
    EXPECT_TRUE(parsed.mask.has_value()) << text << ": " << parsed.problem;
    return parsed.mask.value_or(RequirementMask{});
}

// The fewest poles of a Butterworth and of a Chebyshev low pass with ripple Ap, from the
// textbook formulas; NaN where the order is too close to a whole number to tell.
struct ClosedForm {
    double butterworth, chebyshev;
};
ClosedForm ClosedFormOrders(double ap, double as, double ratio) {
    const double k = (std::pow(10.0, as / 10.0) - 1.0) / (std::pow(10.0, ap / 10.0) - 1.0);
    const double orders[2] = {std::log10(k) / (2.0 * std::log10(ratio)),
                              std::acosh(std::sqrt(k)) / std::acosh(ratio)};
    double whole[2];
    for (int i = 0; i < 2; ++i)
        whole[i] = std::fabs(orders[i] - std::round(orders[i])) < 0.02 ? NAN : std::ceil(orders[i]);
    return {whole[0], whole[1]};
}

// The same masks as a low pass, a high pass and a band pass geometrically symmetric about
// 10 kHz: each is the low pass of the ratio of its stop to its pass width in disguise.
RequirementMask MaskOfRatio(MaskKind kind, double ratio) {
    RequirementMask mask;
    mask.kind = kind;
    const auto around = [](double width) {
        const double low = 0.5 * (std::sqrt(width * width + 4e8) - width);
        return std::array<double, 2>{low, low + width};
    };
    if (kind == MaskKind::BandPass) {
        mask.passEdgesHz = around(1000.0);
        mask.stopEdgesHz = around(1000.0 * ratio);
    } else {
        const bool high = kind == MaskKind::HighPass;
        mask.passEdgesHz = {high ? 10000.0 * ratio : 10000.0, 0.0};
        mask.stopEdgesHz = {high ? 10000.0 : 10000.0 * ratio, 0.0};
    }
    return mask;
}

TEST(RequirementOrders, ButterworthAndChebyshevAgreeWithTheClosedForms) {
    int compared = 0;
    for (const MaskKind kind : {MaskKind::LowPass, MaskKind::HighPass, MaskKind::BandPass}) {
        const int limit = kind == MaskKind::BandPass ? 10 : 20;
        for (const double ratio : {1.3, 1.6, 2.0, 3.0, 5.0, 10.0}) {
            for (const double ap : {0.1, 0.5, 1.0}) {
                for (const double as : {20.0, 40.0, 60.0, 80.0}) {
                    RequirementMask mask = MaskOfRatio(kind, ratio);
                    mask.passDb = ap;
                    mask.stopDb = as;
                    const ClosedForm expected = ClosedFormOrders(ap, as, ratio);
                    const std::vector<OrderRow> rows =
                        RequirementOrders(OrderSearchFor(mask, DefaultDesignState()));
                    ASSERT_EQ(rows.size(), 6u);
                    const auto check = [&](const OrderRow& row, double order) {
                        if (std::isnan(order)) return;
                        // The formula holds where the ripple box takes Ap at that order.
                        const bool ripple = row.family == Response::Chebyshev && order <= limit &&
                                            RippleMaximum(Response::Chebyshev, order) < ap;
                        if (ripple) return;
                        ++compared;
                        EXPECT_EQ(row.poles, order > limit ? 0 : order)
                            << MaskKindName(kind) << " family " << Index(row.family) << " ratio "
                            << ratio << " Ap " << ap << " As " << as;
                    };
                    check(rows[Index(Response::Butterworth)], expected.butterworth);
                    check(rows[Index(Response::Chebyshev)], expected.chebyshev);
                }
            }
        }
    }
    EXPECT_GT(compared, 360);
}

// The design as the window calculates it with the requirement checked.
struct Designed {
    DesignState state = DefaultDesignState();
    TextBoxes boxes;
    // 5 % capacitors: the notch's shunt of 2 C1 is then a standard value and not rounded.
    ComponentSettings settings;
    std::unique_ptr<DesignResults> results = std::make_unique<DesignResults>();
    Designed() { settings.capacitorClass = ToleranceClasses[2]; }

    // The margins of the circuit's parts with an op amp of unlimited gain, over the sweep and
    // at the mask's edges.
    MaskMargins IdealMargins(const RequirementMask& mask) {
        ToleranceRandom random;
        nerivane::Calculate(state, boxes.Parameters(), settings, *results, random);
        const auto db = [&](double f) {
            Complex h{1.0, 0.0};
            for (int s = 0; s < state.NumSections; ++s)
                h = h * IdealOf(state.TopologyIndex, results->parts.Section(s)).At(TwoPi * f);
            return ComplexToDb(h.re, h.im);
        };
        std::vector<double> frequencies(results->frequencies.begin(), results->frequencies.end());
        for (const double edge : MaskCheckPoints(mask)) frequencies.push_back(edge);
        std::vector<double> levels;
        for (const double f : frequencies) levels.push_back(db(f));
        const double peak = *std::max_element(levels.begin(), levels.end());
        return MarginsAgainst(mask, peak, frequencies, levels);
    }
};

// What the box's whole hertz and the search's bisection leave of a margin.
constexpr double SlackDb = 1e-6;

TEST(RequirementOrders, ARowAppliedMeetsTheMaskAndOnePoleFewerMeetsItAtNoF0) {
    const char* masks[] = {
        "fp=1k,ap=1,fs=3k,as=40",
        "fp=4k,ap=0.5,fs=1k,as=45",
        "fp1=9k,fp2=11k,fs1=6k,fs2=16k,ap=1,as=35",
        "fp1=300,fp2=3k,fs1=900,fs2=1k,ap=3,as=25",
    };
    for (const char* text : masks) {
        const RequirementMask mask = Mask(text);
        const std::vector<OrderRow> rows =
            RequirementOrders(OrderSearchFor(mask, DefaultDesignState()));
        int met = 0;
        for (const OrderRow& row : rows) {
            if (!row.Meets()) continue;
            ++met;
            Designed design;
            design.state.TopologyIndex = Topology::MfbLowPass;
            ApplyOrderRow(row, mask.kind, design.state, design.boxes.Parameters());
            const MaskMargins margins = design.IdealMargins(mask);
            EXPECT_EQ(design.state.NumPoles, row.poles);
            EXPECT_NEAR(margins.passDb, row.passMarginDb, 1e-3) << text << " " << Index(row.family);
            EXPECT_NEAR(margins.stopDb, row.stopMarginDb, 1e-3) << text << " " << Index(row.family);
            EXPECT_GE(std::min(margins.passDb, margins.stopDb), -SlackDb);
            if (row.poles == 1) continue;
            // One pole fewer, over F0 (or band width) from half to twice the row's.
            double best = -1e9;
            for (int step = -24; step <= 24; ++step) {
                OrderRow fewer = row;
                fewer.poles = row.poles - 1;
                const double factor = std::pow(2.0, step / 24.0);
                (row.bandwidthHz > 0.0 ? fewer.bandwidthHz : fewer.f0Hz) *= factor;
                Designed trial;
                ApplyOrderRow(fewer, mask.kind, trial.state, trial.boxes.Parameters());
                const MaskMargins margins = trial.IdealMargins(mask);
                best = std::max(best, std::min(margins.passDb, margins.stopDb));
            }
            EXPECT_LT(best, 0.0) << text << " family " << Index(row.family);
        }
        EXPECT_GT(met, 0) << text;
    }
}

// A thousand runs of an 8-pole design against a mask whose edges are sweep points, so a run
// meets it exactly when every sweep point does.
TEST(RequirementCheck, EnvelopeHoldsEveryRunAndTheYieldCountsThem) {
    Designed design;
    design.boxes[BoxId::NumPoles].SetText("8");
    design.boxes[BoxId::F0].SetText("1.3");
    design.boxes[BoxId::WorstCaseRuns].SetText("1000");
    design.state.ResponseIndex = Response::Butterworth;
    design.state.Tolerance = ToleranceMode::WorstCase;
    // The one-decade sweep from 130 Hz: points 480 and 640 in a 1024-point logarithmic grid.
    const double fp = 130.0 * std::pow(100.0, 480.0 / 1024.0);
    const double fs = 130.0 * std::pow(100.0, 640.0 / 1024.0);
    RequirementMask mask;
    mask.passEdgesHz = {fp, 0.0};
    mask.stopEdgesHz = {fs, 0.0};
    mask.passDb = 0.6;
    mask.stopDb = 38.0;
    int meetingByHand = 0, runs = 0;
    bool outside = false;
    std::vector<Traces> kept;
    double reference = 0.0;
    ToleranceRandom random;
    CalculationOptions options;
    options.mask = &mask;
    options.perRun = [&](int run, const Traces& traces) {
        ++runs;
        kept.push_back(traces);
        if (run == 0)
            reference = *std::max_element(traces.magnitudeDb.begin(), traces.magnitudeDb.end());
        bool meets = true;
        for (int k = 0; k < TracePoints; ++k) {
            const double f = design.results->frequencies[k];
            const double db = traces.magnitudeDb[k];
            if (f <= fp * (1 + 1e-12) && db < reference - mask.passDb) meets = false;
            if (f >= fs * (1 - 1e-12) && db > reference - mask.stopDb) meets = false;
        }
        meetingByHand += meets;
    };
    Calculate(design.state, design.boxes.Parameters(), design.settings, *design.results, random,
              options);
    const TraceEnvelope& envelope = design.results->envelope;
    ASSERT_EQ(runs, 1000);
    EXPECT_EQ(envelope.runs, 1000);
    for (const Traces& traces : kept)
        for (const EnvelopeTrace& trace : EnvelopeTraces)
            for (int k = 0; k < TracePoints; ++k) {
                const double v = (traces.*trace.values)[k];
                if (v == NoPlotValue) continue;
                outside |=
                    v < (envelope.low.*trace.values)[k] || v > (envelope.high.*trace.values)[k];
            }
    EXPECT_FALSE(outside);
    const RequirementCheck& check = design.results->requirement;
    EXPECT_EQ(check.runs, 1000);
    EXPECT_EQ(check.runsMeeting, meetingByHand);
    EXPECT_GT(meetingByHand, 0);
    EXPECT_LT(meetingByHand, 1000);
    const auto yieldLine = [&] {
        for (const std::string& line : design.results->report)
            if (line.starts_with("  yield ")) return line;
        return std::string();
    };
    EXPECT_TRUE(yieldLine().starts_with("  yield " + std::to_string(meetingByHand) + " of 1000"));
    // Stepping a part runs the nominal circuit alone, which has no yield to tell.
    options.singlePass = true;
    Calculate(design.state, design.boxes.Parameters(), design.settings, *design.results, random,
              options);
    EXPECT_EQ(yieldLine(), "");
}

TEST(RequirementMask, TextsReadBackOrSayWhatIsWrong) {
    // clang-format off
    const struct { const char* text; const char* problem; } cases[] = {
        {"fp=1k,ap=1,fs=3k,as=40",                     ""},
        {"fp=3.3k,fs=1k,ap=0.25,as=60",                ""},
        {"fp1=9k,fp2=11k,fs1=7k,fs2=14k,ap=1,as=30,f0=10k", ""},
        {"fp1=1k,fp2=9k,fs1=2k,fs2=3k,ap=1,as=30",     ""},
        {"fp=1k,ap=1,fs=3k",                           "both ap and as are needed"},
        {"fp=1k,ap=1,fs=1k,as=40",                     "a low pass needs 0 < fp < fs"},
        {"fp=1k,ap=40,fs=3k,as=1",                     "as must be larger than ap"},
        {"fp=1k,ap=1,fs=3k,as=40,fq=2",                "is not one of"},
        {"fp=1k,ap=one,fs=3k,as=40",                   "is not a number for ap"},
        {"fp1=9k,fp2=11k,fs1=7k,fs2=10k,ap=1,as=30",   "a band pass needs"},
        {"fp1=9k,fp2=11k,fs1=7k,fs2=14k,ap=1,as=30,f0=20k", "f0 must lie between"},
        {"fp=1k,fs1=2k,ap=1,as=30",                    "give fp and fs"},
    };
    // clang-format on
    for (const auto& c : cases) {
        const ParsedMask parsed = ParseMask(c.text);
        if (*c.problem == '\0') {
            ASSERT_TRUE(parsed.mask) << c.text << ": " << parsed.problem;
            const ParsedMask again = ParseMask(MaskText(*parsed.mask));
            EXPECT_TRUE(again.mask && *again.mask == *parsed.mask) << MaskText(*parsed.mask);
        } else {
            EXPECT_FALSE(parsed.mask) << c.text;
            EXPECT_NE(parsed.problem.find(c.problem), std::string::npos)
                << c.text << ": " << parsed.problem;
        }
    }
}

}  // namespace
}  // namespace nerivane
