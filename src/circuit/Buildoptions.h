// How far the simulation and the parts go towards the circuit a person builds: the op amp's
// model, the resistor series bought and how resistors are picked from it, the practical
// resistor range and the signal level the stages are checked against, and how tolerance runs
// treat the notch's parts. Every choice starts at the program's plain behaviour.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace nerivane {

enum class OpAmpModel : std::int32_t {
    Magnitude = 0,   // a real open-loop gain falling as GBW / f: no phase lag
    SinglePole = 1,  // A0 / (1 + j f / fp), solved on each circuit's own nodes
};

// The names the command line and the settings file give the choices, in their order.
inline constexpr std::array<std::string_view, 2> OpAmpModelNames = {"magnitude", "single-pole"};

// Where standard resistors come from: the tolerance class's series, or a decade series of
// its own that the shops stock.
enum class ResistorSeries : std::int32_t { ToleranceClass = 0, E48 = 1, E96 = 2, E192 = 3 };
inline constexpr std::array<std::string_view, 4> ResistorSeriesNames = {"tolerance", "e48", "e96",
                                                                        "e192"};

inline constexpr double DefaultMinPracticalOhms = 100.0;
inline constexpr double DefaultMaxPracticalOhms = 10e6;

struct BuildOptions {
    OpAmpModel opAmpModel = OpAmpModel::Magnitude;
    ResistorSeries resistorSeries = ResistorSeries::ToleranceClass;
    // Resistors outside this range are warned about, and "Choose capacitors" aims at its
    // geometric middle.
    double minPracticalOhms = DefaultMinPracticalOhms;
    double maxPracticalOhms = DefaultMaxPracticalOhms;
    double inputAmplitudeVolts = 1.0;  // peak, for the stages' swing and slew rate
    // Tolerance runs draw each of the notch's six parts on its own, its shunt capacitor and
    // both series capacitors included, instead of the notch as designed.
    bool notchPartsIndependent = false;
    // Standard resistors are searched per section, each resistor's neighbours below and above
    // together, for the f0 and Q nearest the exact design's, instead of each rounded alone.
    bool bestStandardValues = false;

    friend bool operator==(const BuildOptions&, const BuildOptions&) = default;
};

}  // namespace nerivane
