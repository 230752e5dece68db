// One calculation from the parameter boxes to the finished design: the boxes are read into
// the record (repairing bad entries), the prototype and its sections are built, every
// section's parts are computed, the sweep is laid out, the circuit is simulated (once, or
// once per tolerance run), the traces and the report are made. Every front end (window,
// command line, tests) runs exactly this and only shows what it leaves.
#pragma once

#include <array>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "app/DesignState.h"
#include "app/Parameterboxes.h"
#include "app/Requirementcheck.h"
#include "circuit/Circuitanalysis.h"
#include "circuit/Componentsettings.h"
#include "circuit/Stagechecks.h"
#include "circuit/Valuecalculations.h"
#include "numerics/Polymain.h"
#include "response/Traceenvelope.h"
#include "response/Traces.h"

namespace nerivane {

// Everything a calculation produces besides the record itself. It lives as long as the
// design on screen: a band-pass section whose split fails keeps its previous parts.
struct DesignResults {
    PrototypeResult prototype;
    SectionComponents parts{};
    SectionPanelHints hints;
    OpAmpLabels opAmpLabels;
    std::string toleranceLabel;
    std::string gammaLabel;
    std::vector<std::string> reportNotes;  // the root finder's notes, for the report memo
    // Capacitors the calculation had to lower so that a section can be built ("Section 1: C1
    // of 10.0 nF lowered to 2.70 nF ..."); the window shows this as the C1 box's colour.
    std::vector<std::string> capacitorNotes;
    std::vector<std::string> report;  // the circuit values report, then the build checks
    // What each stage needs of its op amp and parts, what searching the standard values gained
    // and what is wrong with the circuit as built; its warnings are not messages, as they must
    // not interrupt typing.
    BuildChecks checks;
    // What went wrong in the calculation (a band-pass section that cannot be split, a box
    // limit the program got wrong), for the front end to show.
    Messages messages;
    int points = PlotPoints;
    int runs = 0;  // simulation runs made
    std::array<double, PlotPoints> frequencies{};
    std::array<Complex, PlotPoints> response{};  // the nominal circuit (run 0)
    Traces traces;                               // of the nominal circuit
    // In worst-case mode, each trace's lowest and highest value at every point over the runs.
    TraceEnvelope envelope;
    // The design against the requirement, when the calculation was given one.
    RequirementCheck requirement;
    // Working space of the tolerance runs, kept here so a calculation allocates nothing.
    std::array<Complex, PlotPoints> runResponse{};
    Traces runTraces;
};

// What the value calculation takes from the design: its circuit, sections, frequencies, gain
// and capacitors.
ComponentInputs ComponentInputsOf(const DesignState& state);

// FreqMin, FreqMax and the 1024-point axis of the sweep; the first point is always a tenth
// of the second.
void LayOutFrequencyAxis(DesignState& state, std::span<double> axis);

// Reads every box into the record and the component settings. The tolerance classes in
// settings are the front end's choice; the mode, op amp and runs are read here.
void GatherInputs(DesignState& state, const ParameterBoxes& boxes, ComponentSettings& settings,
                  DesignResults& results);

struct CalculationOptions {
    // One simulation run only, as when a capacitor or the section is stepped.
    bool singlePass = false;
    // Called after every run with its traces (run 0 is the nominal circuit); the plot draws
    // them. Not called in a single pass.
    std::function<void(int run, const Traces& traces)> perRun;
    // The requirement every run is checked against, if any.
    const RequirementMask* mask = nullptr;
};

void Calculate(DesignState& state, const ParameterBoxes& boxes, ComponentSettings& settings,
               DesignResults& results, ToleranceRandom& random,
               const CalculationOptions& options = {});

}  // namespace nerivane
