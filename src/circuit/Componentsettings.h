// The component settings a calculation reads: tolerance classes of resistors and capacitors,
// the op-amp model and the number of worst-case runs, read from their boxes with limits and
// repair like every other input. An ideal op amp is modelled as 100 MHz and 0 ohms.
#pragma once

#include <string>

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

    double ResistorStd(double x) const { return NearestStdValue(resistorClass.stride, x); }
    double CapacitorStd(double x) const { return NearestStdValue(capacitorClass.stride, x); }
};

// The op-amp boxes: GBW in MHz, output resistance in ohms, and the ideal switch.
struct OpAmpBoxes {
    EditBox& gainBandwidthMHz;
    EditBox& outputResistance;
};

// Reads the op-amp boxes (repairing them) and applies the ideal switch; returns the label
// texts "BW 100 MHz" and "Ro  0.00 Ω".
struct OpAmpLabels {
    std::string bandwidth;
    std::string outputResistance;
};
OpAmpLabels ReadOpAmp(ComponentSettings& settings, OpAmpBoxes& boxes, bool idealOpAmp);

// The worst-case run count box: 1 to 1000, default 10.
void ReadWorstCaseRuns(ComponentSettings& settings, EditBox& box);

// "C 10%   R 1%": the caption of the tolerance label.
std::string ToleranceLabelText(const ComponentSettings& settings);

// The radio captions the classes are recorded under ("10 %").
std::string ToleranceCaption(const ToleranceClass& toleranceClass);

}  // namespace nerivane
