// The simulation of the circuit as built: every section's response at every frequency of
// the sweep, multiplied into the filter's response, once for exact or standard values or
// once per tolerance run in worst-case mode, with the op amp's gain falling with frequency.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "circuit/Components.h"
#include "circuit/Componentsettings.h"
#include "numerics/Enumindex.h"
#include "numerics/Mathfunctions.h"

namespace nerivane {

// The plot's frequency ranges, as the Sweep menu lists them (the half-to-double octave only
// by the F7 key).
enum class Sweep : std::int32_t {
    Linear = 0,
    OneOctave = 1,
    TwoOctaves = 2,
    ThreeOctaves = 3,
    OneDecade = 4,
    TwoDecades = 5,
};

inline constexpr int PlotPoints = 1024;
inline constexpr int MaxResponsePoints = 4096;

// The op amp's real open-loop gain at f hertz: GBW/f above 100 Hz, flat below, at most 1e5.
double OpenLoopGain(double gainBandwidth, double f);

// The op amp a simulation uses: its gain-bandwidth product, output resistance and model.
struct OpAmpSpec {
    double gainBandwidth = 1e8;  // Hz
    double outputResistance = 0.0;
    OpAmpModel model = OpAmpModel::Magnitude;
};
OpAmpSpec OpAmpOf(const ComponentSettings& settings);

// Multiplies one section's response into response[k] for every frequency.
void SimulateSection(Topology topology, const WorkingComponents& parts, const OpAmpSpec& opAmp,
                     std::span<const double> frequencies, std::span<Complex> response);

// The response at each stage's output: sections 0, 1, ... multiplied into response one at a
// time, each unloaded, and after(section) called with the product so far.
void SimulateStages(Topology topology, const SectionComponents& parts, int numSections,
                    const OpAmpSpec& opAmp, std::span<const double> frequencies,
                    std::span<Complex> response, const std::function<void(int section)>& after);

// The same with the op amp's gain held at a constant A (what a SPICE comparison can express).
void SimulateSectionAtGain(Topology topology, const WorkingComponents& parts, double gain,
                           double outputResistance, std::span<const double> frequencies,
                           std::span<Complex> response);

// The nominal cascade (no tolerance runs) over a sweep: response is set to the product of the
// sections' responses. The sweep is prepared once for all sections.
void SimulateCascade(Topology topology, const SectionComponents& parts, int numSections,
                     const OpAmpSpec& opAmp, std::span<const double> frequencies,
                     std::span<Complex> response);

// The random draws of the tolerance runs: a seedable generator, so the same seed gives the
// same runs.
class ToleranceRandom {
  public:
    explicit ToleranceRandom(std::uint32_t seed = 1) : state_(seed) {}
    // Uniform in 0 .. 200.
    int Next();

  private:
    std::uint64_t state_;
};

// Moves each part uniformly over 201 levels within its tolerance, in the order R1 .. R4, C1, C2,
// and then, when asked, a second C1 of its own.
WorkingComponents Perturb(const WorkingComponents& parts, double resistorTolerance,
                          double capacitorTolerance, ToleranceRandom& random,
                          bool secondC1OfItsOwn = false);

struct SimulationInputs {
    Topology topology = Topology::VcvsLowPass;
    int numSections = 1;
    const SectionComponents* parts = nullptr;
    const ComponentSettings* settings = nullptr;
    std::span<const double> frequencies;
    // One run only (the nominal circuit), as when a capacitor or the section is stepped.
    bool singlePass = false;
};

// Runs the simulation into response (frequencies.size() points). In worst-case mode it runs
// settings->worstCaseRuns times, run 0 the nominal circuit, and calls perRun with the run
// number after every run (not in a single pass).
void Simulate(const SimulationInputs& inputs, std::span<Complex> response, ToleranceRandom& random,
              const std::function<void(int run)>& perRun);

// Where a sweep starts and ends: 1 Hz to 2 F0 for the linear sweep (index 0), the others
// logarithmic around F0 (half to double, two and three octaves, one and two decades).
struct SweepLimits {
    double start;  // Hz
    double end;    // Hz
};
SweepLimits SweepLimitsFor(Sweep sweepIndex, double f0);

// The sweep's points: frequencies.size() of them from the start, linear or logarithmic, the
// divisor the point count so that the end itself is never reached. The reference design is
// simulated over this grid; the plot's axis is the same with its first point moved.
void ReferenceFrequencyGrid(Sweep sweepIndex, double f0, std::span<double> frequencies);

}  // namespace nerivane
