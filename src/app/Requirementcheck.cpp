#include "app/Requirementcheck.h"

#include <algorithm>
#include <cmath>

#include "numerics/Formatfunctions.h"

namespace nerivane {

RequirementChecker::RequirementChecker(const RequirementMask& mask, const SimulationInputs& sweep,
                                       ToleranceRandom random, RequirementCheck& check)
    : check_(check), points_(MaskCheckPoints(mask)) {
    check_ = {};
    check_.active = true;
    check_.mask = mask;
    SimulationInputs atPoints = sweep;
    atPoints.frequencies = points_;
    std::vector<Complex> response(points_.size());
    const auto keep = [&] {
        for (const Complex& h : response) pointDb_.push_back(ComplexToDb(h.re, h.im));
    };
    Simulate(atPoints, response, random, [&](int) { keep(); });
    // A single pass returns its one run without calling back.
    if (pointDb_.empty()) keep();
}

void RequirementChecker::CheckRun(int run, std::span<const double> frequencies,
                                  const Traces& traces) {
    const std::size_t count = std::min(frequencies.size(), traces.magnitudeDb.size());
    const std::span<const double> db(traces.magnitudeDb.data(), count);
    const std::size_t first = static_cast<std::size_t>(run) * points_.size();
    if (first + points_.size() > pointDb_.size()) return;
    const std::span<const double> atPoints(pointDb_.data() + first, points_.size());
    if (run == 0) {
        double peak = -1e300;
        for (const double x : db) peak = std::max(peak, x);
        for (const double x : atPoints) peak = std::max(peak, x);
        check_.referenceDb = peak;
    }
    const MaskMargins margins =
        Worse(MarginsAgainst(check_.mask, check_.referenceDb, frequencies.first(count), db),
              MarginsAgainst(check_.mask, check_.referenceDb, points_, atPoints));
    if (run == 0) check_.nominal = margins;
    check_.runs = run + 1;
    check_.runMeets.resize(static_cast<std::size_t>(run) + 1);
    check_.runMeets[static_cast<std::size_t>(run)] = margins.Meets() ? 1 : 0;
    check_.runsMeeting += margins.Meets() ? 1 : 0;
}

namespace {

std::string Hertz(double hz) {
    return FormatEngineering(hz, 2, "Hz");
}

std::string Decibels(double db) {
    return FormatFixedPlain(db, 2) + " dB";
}

std::string MaskSentence(const RequirementMask& m) {
    const std::string pass = "at most " + Decibels(m.passDb) + " down";
    const std::string stop = "at least " + Decibels(m.stopDb) + " down";
    const auto& p = m.passEdgesHz;
    const auto& s = m.stopEdgesHz;
    switch (m.kind) {
        case MaskKind::HighPass:
            return "high pass, " + pass + " from " + Hertz(p[0]) + ", " + stop + " to " +
                   Hertz(s[0]);
        case MaskKind::BandPass:
            return "band pass, " + pass + " from " + Hertz(p[0]) + " to " + Hertz(p[1]) + ", " +
                   stop + " to " + Hertz(s[0]) + " and from " + Hertz(s[1]);
        case MaskKind::Notch:
            return "notch, " + pass + " to " + Hertz(p[0]) + " and from " + Hertz(p[1]) + ", " +
                   stop + " from " + Hertz(s[0]) + " to " + Hertz(s[1]);
        case MaskKind::LowPass: break;
    }
    return "low pass, " + pass + " to " + Hertz(p[0]) + ", " + stop + " from " + Hertz(s[0]);
}

std::string MarginText(double db) {
    if (std::isinf(db) && db > 0.0) return "no point";
    if (std::isnan(db) || std::isinf(db)) return "no value";
    return Decibels(db);
}

}  // namespace

std::vector<std::string> RequirementLines(const RequirementCheck& check, bool worstCase) {
    if (!check.active) return {};
    std::vector<std::string> lines;
    lines.push_back("Requirement: " + MaskSentence(check.mask));
    lines.push_back(std::string(check.nominal.Meets() ? "  met" : "  NOT met") + ", margin " +
                    MarginText(check.nominal.passDb) + " in the pass band, " +
                    MarginText(check.nominal.stopDb) + " in the stop band");
    if (worstCase && check.runs > 0) {
        lines.push_back("  yield " + std::to_string(check.runsMeeting) + " of " +
                        std::to_string(check.runs) + " runs (" +
                        FormatFixedPlain(100.0 * check.runsMeeting / check.runs, 1) + " %)");
    }
    return lines;
}

}  // namespace nerivane
