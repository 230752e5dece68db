#include "response/Readout.h"

#include "numerics/Formatfunctions.h"
#include "numerics/Mathfunctions.h"

namespace nerivane {
namespace {

// "4.70 k": engineering notation whose unit the caller writes after it.
std::string Engineering(double value) {
    return FormatEngineering(value, 2, "");
}

std::string Decibels(double db) {
    return "Mag = " + FormatFixed(db, 2) + " dB     ";
}

// The linear trace is 9 |H| - 9 on the 1 dB scale; the read-out gives |H| itself.
std::string LinearMagnitude(double gain) {
    return "Mag = " + FormatFixed(gain, 3) + "     ";
}

}  // namespace

int ReadoutIndex(const PlotGeometry& geometry, int x) {
    const double fraction = static_cast<double>(x - geometry.left) / geometry.width;
    return ClampInt(0, static_cast<int>(fraction * TracePoints), TracePoints - 1);
}

std::optional<std::string> ReadoutText(const PlotView& view, const PlotGeometry& geometry,
                                       const Traces& traces, int x, int y, ReadoutMode mode) {
    const int right = geometry.left + geometry.width;
    if (x < geometry.left || x > right || y < geometry.top || y > geometry.Bottom())
        return std::nullopt;
    if (geometry.width <= 0 || geometry.height <= 0) return std::nullopt;
    const int k = ReadoutIndex(geometry, x);
    const double r = static_cast<double>(y - geometry.top) / geometry.height;
    const bool atPosition = mode == ReadoutMode::GraphPosition;
    const double top = view.topDb;

    std::string text = "f = ";
    if (k < static_cast<int>(view.frequencies.size()))
        text += Engineering(view.frequencies[k]) + "Hz   ";
    if (view.linearMagnitude) {
        if (view.showMag1 || view.showMag10) {
            const double gain = atPosition ? (0.1 * top - 10.0 * r + 9.0) / 9.0
                                           : (traces.magnitudeLinear[k] + 9.0) / 9.0;
            text += LinearMagnitude(gain);
        }
    } else {
        if (view.showMag10) text += Decibels(atPosition ? top - 100.0 * r : traces.magnitudeDb[k]);
        if (view.showMag1)
            text += Decibels(atPosition ? 0.1 * top - 10.0 * r : traces.magnitudeDb[k]);
    }
    if (view.showPhase && view.phaseEnabled) {
        const double phase = view.hilbertPhase ? traces.hilbertPhase[k] : traces.phase[k];
        if (atPosition)
            text += "Phase = " + FormatFixed(180.0 - 360.0 * r, 1) + " deg    ";
        else if (phase != NoPlotValue)
            text += "Phase = " + FormatFixed(phase, 1) + " deg    ";
    }
    if (view.showGroupDelay && view.groupDelayEnabled) {
        const double scale = view.groupDelayScale;
        if (atPosition)
            text += "GD = " + Engineering(scale - r * scale) + "s    ";
        else if (traces.groupDelay[k] != NoPlotValue)
            text += "Delay = " + Engineering(traces.groupDelay[k]) + "s    ";
    }
    if (view.showPulse && view.pulseEnabled && traces.hasPulse)
        text += "    t =" + Engineering(k * traces.pulseTimeStep) + "s";
    return text;
}

}  // namespace nerivane
