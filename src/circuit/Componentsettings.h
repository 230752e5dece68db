// The component settings a calculation reads: tolerance classes of resistors and capacitors,
// the op-amp model and the number of worst-case runs, read from their boxes with limits and
// repair like every other input. An ideal op amp is modelled as 100 MHz and 0 ohms.
#pragma once

#include <string>

#include "circuit/Buildoptions.h"
#include "circuit/Standardvalues.h"
#include "numerics/EditBox.h"

namespace nerivane {

enum class ToleranceMode : int { Exact = 0, Standard = 1, WorstCase = 2 };

struct ComponentSettings {
    ToleranceClass resistorClass = ToleranceClasses[4];   // 1 %
    ToleranceClass capacitorClass = ToleranceClasses[1];  // 10 %
    double gainBandwidth = 1e8;                           // Hz
    double outputResistance = 0.0;                        // ohms
    int worstCaseRuns = 100;
    ToleranceMode mode = ToleranceMode::Exact;
    BuildOptions build;

    double ResistorStd(double x) const {
        return build.resistorSeries == ResistorSeries::ToleranceClass
                   ? NearestStdValue(resistorClass.stride, x)
                   : NearestDecadeSeriesValue(build.resistorSeries, x);
    }
    StdNeighbours ResistorNeighbours(double x) const {
        return build.resistorSeries == ResistorSeries::ToleranceClass
                   ? StdValueNeighbours(resistorClass.stride, x)
                   : DecadeSeriesNeighbours(build.resistorSeries, x);
    }
    double CapacitorStd(double x) const { return NearestStdValue(capacitorClass.stride, x); }
};

// Sets the op amp from its boxes' values, or the fixed ideal model when the switch is on (the
// boxes keep what the user typed); returns the label texts "BW 100 MHz" and "Ro  0.00 Ω".
struct OpAmpLabels {
    std::string bandwidth;
    std::string outputResistance;
};
OpAmpLabels SetOpAmp(ComponentSettings& settings, double gainBandwidthHz,
                     double outputResistanceOhm, bool idealOpAmp);

// "C 10%   R 1%": the caption of the tolerance label.
std::string ToleranceLabelText(const ComponentSettings& settings);

// The radio captions the classes are recorded under ("10 %").
std::string ToleranceCaption(const ToleranceClass& toleranceClass);

}  // namespace nerivane
