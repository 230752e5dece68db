// What the built circuit asks of its parts and op amps, stage by stage: each section's f0, Q
// and gain, the largest gain from the filter's input to its output, the op amp it needs to
// stay within 0.1 dB of its ideal response and the slew rate a full-scale sine needs; the
// notch's depth with its parts as listed; how hard each part pulls on its section's f0 and Q;
// and the warnings an engineer should not miss.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "circuit/Beststandardvalues.h"
#include "circuit/Circuitanalysis.h"
#include "circuit/Components.h"
#include "circuit/Componentsettings.h"
#include "circuit/Sensitivity.h"

namespace nerivane {

struct StageNeeds {
    double f0Hz = 0.0;  // the corner of a first-order section
    double q = 0.0;     // NaN for a first-order section
    double gain = 0.0;  // pass-band gain as a ratio (its magnitude)
    // From the filter's input to this stage's output, over the sweep, as a ratio.
    double peakGain = 0.0;
    double peakGainHz = 0.0;
    // The smallest single-pole op amp that keeps the stage within 0.1 dB of its ideal
    // response wherever that is within 20 dB of its peak; NaN when none up to 10 THz does.
    double gainBandwidthHz = 0.0;
    double slewRateVPerUs = 0.0;  // for a sine of the input amplitude through to this stage
    // How far the parts' tolerances can move Q, summed over every part (NaN first order).
    double qSpread = 0.0;
    // What 1 % more of each fitted part does to f0 and Q.
    std::vector<PartSensitivity> sensitivity;
};

// Depths below this are rounding, not a notch anyone can measure.
inline constexpr double NotchDepthFloorDb = -200.0;

// The notch with its shunt capacitor as bought, against the shunt of exactly 2 C1; each depth
// at least NotchDepthFloorDb.
struct NotchAsListed {
    double depthDb = 0.0;  // the deepest point of the response
    double depthHz = 0.0;
    double exactShuntDepthDb = 0.0;
    std::vector<int> roundedShuntSections;  // where C2 is not exactly 2 C1
};

struct BuildChecks {
    std::vector<StageNeeds> stages;
    std::optional<NotchAsListed> notch;
    // What searching the standard values gained, per section searched.
    std::vector<StandardValueErrors> standardValues;
    std::vector<std::string> warnings;
};

struct BuildCheckInputs {
    Topology topology = Topology::VcvsLowPass;
    int numSections = 1;
    const SectionComponents* parts = nullptr;
    const ComponentSettings* settings = nullptr;
    bool idealOpAmp = true;
    std::span<const double> frequencies;  // the sweep
    // The nominal cascade over the sweep as simulated with the chosen op-amp model; only the
    // other model's is simulated again to compare them.
    std::span<const Complex> response;
    // The value calculation's errors of each section whose standard values it searched.
    std::span<const StandardValueErrors> standardValues;
};

BuildChecks CheckBuild(const BuildCheckInputs& inputs);

// The tolerances' share of Q beyond which a stage is too touchy to build.
inline constexpr double MaxQSpread = 0.25;
// A model difference worth a word, in dB.
inline constexpr double ModelDifferenceLimitDb = 0.5;

// The report's lines after the circuit values: one block per stage, what searching the
// standard values gained, the notch, the warnings.
std::vector<std::string> BuildCheckLines(const BuildChecks& checks);

}  // namespace nerivane
