#include "circuit/Beststandardvalues.h"

#include <array>
#include <cmath>
#include <limits>

#include "circuit/Sectionfigures.h"

namespace nerivane {
namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

struct FigureErrors {
    double f0;
    double q;  // NaN for a first-order section, which has no Q to miss
    double Size() const { return std::hypot(f0, std::isnan(q) ? 0.0 : q); }
};

FigureErrors ErrorsOf(Topology topology, const WorkingComponents& parts,
                      const SectionFigures& exact) {
    const SectionFigures figures = FiguresOf(topology, IdealOf(topology, parts));
    return {std::fabs(figures.f0Hz / exact.f0Hz - 1.0),
            std::isnan(exact.q) ? NaN : std::fabs(figures.q / exact.q - 1.0)};
}

}  // namespace

WorkingComponents RoundedResistors(const WorkingComponents& exact,
                                   const ComponentSettings& settings) {
    WorkingComponents rounded = exact;
    for (const SectionPart& part : SectionParts)
        if (part.resistor) rounded.*part.value = settings.ResistorStd(exact.*part.value);
    return rounded;
}

WorkingComponents SearchedResistors(Topology topology, const WorkingComponents& exact,
                                    const ComponentSettings& settings,
                                    StandardValueErrors& errors) {
    const WorkingComponents plain = RoundedResistors(exact, settings);
    // Each resistor that has a choice, and the neighbour plain rounding did not take.
    std::array<double WorkingComponents::*, 4> varied{};
    std::array<double, 4> other{};
    int count = 0;
    for (const SectionPart& part : SectionParts) {
        const double value = exact.*part.value;
        // The formulas' fail marker stands for no value, so it has no neighbours to try.
        if (!part.resistor || !IsFitted(value) || value == FailMarker) continue;
        const StdNeighbours neighbours = settings.ResistorNeighbours(value);
        const double rounded = plain.*part.value;
        const double alternative =
            rounded == neighbours.below ? neighbours.above : neighbours.below;
        if (alternative == rounded) continue;
        varied[count] = part.value, other[count] = alternative, ++count;
    }
    const SectionFigures target = FiguresOf(topology, IdealOf(topology, exact));
    const FigureErrors before = ErrorsOf(topology, plain, target);
    FigureErrors after = before;
    WorkingComponents best = plain;
    // Plain rounding is the empty choice; a combination replaces it only by doing better.
    for (unsigned choice = 1; choice < (1u << count); ++choice) {
        WorkingComponents trial = plain;
        for (int i = 0; i < count; ++i)
            if (choice & (1u << i)) trial.*varied[i] = other[i];
        const FigureErrors errorsOfTrial = ErrorsOf(topology, trial, target);
        if (errorsOfTrial.Size() < after.Size()) best = trial, after = errorsOfTrial;
    }
    errors.f0Before = before.f0, errors.qBefore = before.q;
    errors.f0After = after.f0, errors.qAfter = after.q;
    return best;
}

}  // namespace nerivane
