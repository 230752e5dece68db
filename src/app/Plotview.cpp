#include "app/Plotview.h"

#include <cmath>

#include "numerics/Boxreading.h"
#include "numerics/Formatfunctions.h"

namespace nerivane {
namespace {

constexpr double ScaleRange = 100.0;

}  // namespace

double ReadGroupDelayScale(EditBox& box, double automatic, bool autoScale, Messages& messages) {
    if (autoScale || !(automatic > 0.0) || !std::isfinite(automatic)) {
        box.SetRepaired(false);
        box.SetText(FormatGeneral(automatic, 4));
        return automatic;
    }
    return EditBoxToDouble(box, FormatGeneral(automatic / ScaleRange, 6),
                           FormatGeneral(automatic, 6), FormatGeneral(automatic * ScaleRange, 6),
                           messages);
}

PlotView PlotViewFor(const DesignState& state, const ControlStates& controls,
                     const DesignResults& results, int width, int height) {
    PlotView view;
    view.width = width;
    view.height = height;
    view.sweepIndex = state.SweepIndex;
    view.freqMin = state.FreqMin;
    view.freqMax = state.FreqMax;
    view.frequencies = std::span<const double>(results.frequencies.data(), results.points);
    view.topDb = state.PlotTopDb;
    view.groupDelayScale = results.traces.groupDelayScale;
    view.pulseTimeStep = results.traces.pulseTimeStep;
    view.showMag10 = state.PlotMag != 0;
    view.showMag1 = state.PlotMag1dB != 0;
    view.showPhase = state.PlotPhase != 0;
    view.showGroupDelay = state.PlotGroupDelay != 0;
    view.showPulse = state.PlotPulse != 0 && results.traces.hasPulse;
    view.showReference = state.PlotReference != 0;
    view.pulseEnabled = controls.pulseBoxEnabled;
    view.linearMagnitude = state.Magnitude == MagnitudeMode::Linear;
    view.hilbertPhase = state.Phase == PhaseMode::Hilbert && controls.hilbertPhaseMenuEnabled;
    if (results.requirement.active) {
        view.mask = &results.requirement.mask;
        view.maskReferenceDb = results.requirement.referenceDb;
    }
    return view;
}

}  // namespace nerivane
