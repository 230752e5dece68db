#include "app/Capacitorchoice.h"

#include <cmath>
#include <vector>

#include "app/Calculationdriver.h"
#include "circuit/Sectioncircuits.h"
#include "circuit/Valuecalculations.h"

namespace nerivane {
namespace {

// The series' values from 1 pF to 100 uF.
std::vector<double> CandidateCapacitors(const ComponentSettings& settings) {
    std::vector<double> values;
    const int stride = std::max(settings.capacitorClass.stride, 1);
    for (double decade = 1e-12; decade < 1e-4 * 0.999; decade *= 10.0)
        for (int k = 0; k < StdValueGridSize && StdValueGrid[k] < 10.0; k += stride)
            values.push_back(settings.CapacitorStd(StdValueGrid[k] * decade));
    return values;
}

// How far the section's farthest resistor is from the middle of the range, as a ratio's
// logarithm; infinite when a resistor has no value.
double Spread(Topology topology, const WorkingComponents& parts, double middle) {
    double worst = 0.0;
    for (const CircuitPart& part : CircuitOf(topology).Parts()) {
        if (part.kind != PartKind::Resistor) continue;
        const PartState state = ConditionOf(part, parts).state;
        if (state == PartState::Wire || state == PartState::LeftOut || state == PartState::Absent)
            continue;
        if (state != PartState::Placed) return INFINITY;
        worst = std::max(worst, std::fabs(std::log(ValueOf(parts, part.value) / middle)));
    }
    return worst;
}

}  // namespace

void ChooseCapacitors(DesignState& state, const ComponentSettings& settings) {
    const std::vector<double> candidates = CandidateCapacitors(settings);
    const double middle =
        std::sqrt(settings.build.minPracticalOhms * settings.build.maxPracticalOhms);
    double c1[MaxSections], c2[MaxSections];
    std::copy(std::begin(state.SectionC1), std::end(state.SectionC1), c1);
    std::copy(std::begin(state.SectionC2), std::end(state.SectionC2), c2);
    ComponentInputs inputs = ComponentInputsOf(state);
    inputs.sectionC1 = c1;
    inputs.sectionC2 = c2;
    SectionComponents parts{};
    SectionPanelHints hints;
    Messages messages;
    // A section's parts depend on the sections before it (a band pass's real pole shifts the
    // pairs), never on those after: each try computes up to the section tried.
    const auto tryPair = [&](int s, double first, double second) {
        c1[s] = first, c2[s] = second;
        inputs.numSections = s + 1;
        messages.clear();
        CalculateComponents(inputs, state.Sections, settings, parts, hints, messages);
        return Spread(state.TopologyIndex, parts.Section(s), middle);
    };
    for (int s = 0; s < state.NumSections && s < MaxSections; ++s) {
        const double keptC1 = c1[s], keptC2 = c2[s];
        double best = INFINITY, bestC1 = keptC1, bestC2 = keptC2;
        // Whether this circuit reads C2 at all: if not, one C2 serves every C1.
        tryPair(s, candidates.front(), candidates.front());
        const WorkingComponents withSmallC2 = parts.Section(s);
        tryPair(s, candidates.front(), candidates.back());
        const WorkingComponents withLargeC2 = parts.Section(s);
        const bool readsC2 = withSmallC2.R1 != withLargeC2.R1 || withSmallC2.R2 != withLargeC2.R2 ||
                             withSmallC2.R3 != withLargeC2.R3;
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            // C2 from a tenth of C1 to a hundred times it: a VCVS low pass needs C2 well
            // above C1 at high Q.
            for (std::size_t j = readsC2 ? 0 : i; j < candidates.size(); ++j) {
                if (readsC2 && !(candidates[j] >= candidates[i] * 0.099)) continue;
                if (readsC2 && candidates[j] > candidates[i] * 101.0) break;
                const double spread = tryPair(s, candidates[i], candidates[j]);
                // The calculation may lower C1 to build the section; keep what it used.
                if (spread < best) best = spread, bestC1 = parts.C1[s], bestC2 = candidates[j];
                if (!readsC2) break;
            }
        }
        c1[s] = std::isfinite(best) ? bestC1 : keptC1;
        c2[s] = std::isfinite(best) ? bestC2 : keptC2;
    }
    // One section's choice never changes another's parts, so the last state stands.
    std::copy(c1, c1 + MaxSections, state.SectionC1);
    std::copy(c2, c2 + MaxSections, state.SectionC2);
}

}  // namespace nerivane
