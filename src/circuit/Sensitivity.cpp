#include "circuit/Sensitivity.h"

#include <cmath>

namespace nerivane {

std::vector<PartSensitivity> SensitivitiesOf(Topology topology, const WorkingComponents& parts,
                                             const SectionFigures& figures) {
    // A whole percent, not a derivative: what a part 1 % off really does, as a bench shows.
    constexpr double Step = 0.01;
    std::vector<PartSensitivity> sensitivities;
    WorkingComponents moved = parts;
    for (const SectionPart& part : SectionParts) {
        const double value = parts.*part.value;
        if (!IsFitted(value)) continue;
        moved.*part.value = value * (1.0 + Step);
        const SectionFigures changed = FiguresOf(topology, IdealOf(topology, moved));
        moved.*part.value = value;
        // A part that does not reach a figure moves it by rounding alone: none at all.
        const auto percent = [](double ratio) {
            const double change = 100.0 * (ratio - 1.0);
            return std::fabs(change) < 1e-9 ? 0.0 : change;
        };
        sensitivities.push_back(
            {part.name, percent(changed.f0Hz / figures.f0Hz), percent(changed.q / figures.q)});
    }
    return sensitivities;
}

const PartSensitivity* MostSensitive(std::span<const PartSensitivity> sensitivities) {
    const PartSensitivity* most = nullptr;
    double largest = 0.0;
    for (const PartSensitivity& s : sensitivities) {
        // fmax passes over a first-order section's NaN Q.
        const double size = std::fmax(std::fabs(s.f0Percent), std::fabs(s.qPercent));
        if (most == nullptr ? size >= 0.0 : size > largest) most = &s, largest = size;
    }
    return most;
}

}  // namespace nerivane
