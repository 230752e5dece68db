// Magnitude, phase and group delay of a simulated response: the trace arrays the plot draws,
// the delay-free phase that shows how far a filter is from linear phase, and the automatic
// full scale of the group-delay trace. Points below the phase plot threshold are marked
// NoPlotValue in the phase and delay traces.
#pragma once

#include <span>

#include "circuit/Components.h"
#include "numerics/Mathfunctions.h"
#include "response/Traces.h"

namespace nerivane {

// kind 1: linear magnitude 9 |H| - 9; anything else: dB.
void MagResponse(std::span<const Complex> h, std::span<double> out, int kind);
void PhaseResponse(std::span<const Complex> h, std::span<double> out, double threshold);
void GroupDelayResponse(std::span<const Complex> h, std::span<double> out,
                        std::span<const double> frequencies, double threshold);
double GroupDelayScale(std::span<const Complex> h, std::span<const double> groupDelay);
// The pure delay near index (seconds); index is rewritten to the point the estimate used.
double EstimateDelay(std::span<const Complex> h, std::span<const double> frequencies, int& index);
void HilbertPhaseResponse(std::span<const Complex> h, std::span<double> out,
                          std::span<const double> frequencies, double threshold, int refIndex,
                          int mode);

// How the delay-free phase is referenced for a topology: mode 0 low pass, 1 high pass,
// 2 band pass, 3 notch, and the index the delay is estimated around.
struct HilbertSetup {
    int mode;
    int refIndex;
};
HilbertSetup HilbertSetupFor(Topology topologyIndex);

// The plot driver's re-referencing of the delay-free phase of the current design (the
// inverting correction for odd MFB low and high passes, then zero at the pass band's end).
void ReReferenceHilbertPhase(std::span<double> hilbertPhase, Topology topologyIndex,
                             int numSections);

// Every trace but the pulse, in the plot driver's order: linear and dB magnitude, delay-free
// phase and its re-referencing, phase, group delay and its scale. h and frequencies hold
// TracePoints values; threshold in dB (negative).
void ComputeTraces(std::span<const Complex> h, std::span<const double> frequencies,
                   double threshold, Topology topologyIndex, int numSections, Traces& traces);

}  // namespace nerivane
