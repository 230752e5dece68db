// The real-valued traces of one design that the plot draws and the read-out reports: dB and
// linear magnitude, phase, delay-free ("Hilbert") phase, group delay and the square-pulse
// response, one value per sweep point, with the group delay's full scale.
#pragma once

#include <array>

namespace nerivane {

inline constexpr int TracePoints = 1024;

// Marks phase and delay points that must not be drawn; compared by exact equality. A tiny
// negative number rather than NaN, and it must stay bit for bit this value.
inline constexpr double NoPlotValue = -1.123456e-9;

// |H| from the linear trace's plotted value.
inline double LinearMagnitudeOf(double plotted) {
    return (plotted + 9.0) / 9.0;
}

struct Traces {
    std::array<double, TracePoints> magnitudeDb{};
    std::array<double, TracePoints> magnitudeLinear{};  // 9 |H| - 9: unity gain at 0
    std::array<double, TracePoints> phase{};            // degrees, wrapped to (-180, 180]
    std::array<double, TracePoints> hilbertPhase{};     // degrees, delay removed
    std::array<double, TracePoints> groupDelay{};       // seconds
    std::array<double, TracePoints> pulse{};            // plot units, 0 bottom .. 1 top
    double groupDelayScale = 1.0;                       // seconds at the top of the scale
    double pulseTimeStep = 0.0;                         // seconds per pulse point
    bool hasPulse = false;
};

}  // namespace nerivane
