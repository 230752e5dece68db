#include "app/Controlstates.h"

#include "numerics/Protofunctions.h"

namespace nerivane {

ControlStates UpdateControlStates(DesignState& state) {
    ControlStates controls;
    const bool bandPass = state.TopologyIndex == Topology::VcvsBandPass ||
                          state.TopologyIndex == Topology::MfbBandPass;
    controls.bandWidthEnabled = state.TopologyIndex >= Topology::VcvsBandPass;
    // A band pass has no pass-band edge to take the delay at, so only the plain phase applies.
    if (bandPass) state.Phase = PhaseMode::Plain;
    controls.hilbertPhaseMenuEnabled = !bandPass;
    controls.hilbertPhaseChecked = state.Phase == PhaseMode::Hilbert;
    controls.plotPhaseCaption = controls.hilbertPhaseChecked ? "Hilbert Phase" : "Phase";
    controls.rippleEnabled =
        state.ResponseIndex == Response::Chebyshev || state.ResponseIndex == Response::Papoulis;
    controls.gammaEnabled = state.ResponseIndex == Response::AdjustableGauss;
    controls.pulseBoxEnabled = state.Tolerance != ToleranceMode::WorstCase;
    controls.linearMagChecked = state.Magnitude == MagnitudeMode::Linear;
    controls.plotMagEnabled = !controls.linearMagChecked;
    controls.plotMag1dBCaption = controls.linearMagChecked ? "Linear Mag" : "Mag   1 dB";
    return controls;
}

void SelectMagnitudeMode(DesignState& state, MagnitudeMode mode) {
    state.Magnitude = mode;
    const bool linear = mode == MagnitudeMode::Linear;
    state.PlotMag = linear ? 0 : 1;
    state.PlotMag1dB = linear ? 1 : 0;
}

void SelectPhaseMode(DesignState& state, PhaseMode mode) {
    state.Phase = mode;
    state.PlotPhase = 1;
}

}  // namespace nerivane
