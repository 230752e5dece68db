// Component values: every resistor and capacitor of every section for the chosen topology,
// from the normalised prototype sections, F0, band width, section gain and the user's
// capacitors. Also the hints the section panel shows (the C1 limit, a suggested C2) and
// whether C1 had to be pushed below the user's value to keep the formulas real.
#pragma once

#include <string>
#include <vector>

#include "circuit/Beststandardvalues.h"
#include "circuit/Components.h"
#include "circuit/Componentsettings.h"
#include "numerics/Message.h"
#include "numerics/Polymain.h"

namespace nerivane {

inline constexpr double TwoPi = 6.283185307179586;

struct ComponentInputs {
    Topology topology = Topology::VcvsLowPass;
    int numSections = 1;  // op-amp sections
    int selectedSection = 0;
    double f0 = 5000.0;                 // Hz
    double bandwidth = 2000.0;          // Hz
    double gain = 1.0;                  // section gain K, a ratio
    const double* sectionC1 = nullptr;  // the user's capacitors, one per section
    const double* sectionC2 = nullptr;
};

// What the section panel shows for the selected section.
struct SectionPanelHints {
    std::string c1LimitText = " ";  // "Set < 4.70 nF", or a blank
    bool c1LimitVisible = true;
    bool c2PanelVisible = true;
    std::string suggestedC2Text;  // "~ 2.20 nF"
    bool c1PushedDown = false;    // paint the C1 box yellow
};

// The C1/C2 spinner's step on a capacitor: snap to the capacitor series, move by twice the
// tolerance up or down, snap again.
double StepCapacitor(const ComponentSettings& settings, double value, bool up);

// Fills parts for sections 0 .. numSections-1 in order. A failure of the band-pass mapping
// adds its message and leaves that section's previous values in parts. When standard values
// are searched, searched (if given) gets each section's errors before and after the search.
void CalculateComponents(const ComponentInputs& inputs, const ProtoSections& prototype,
                         const ComponentSettings& settings, SectionComponents& parts,
                         SectionPanelHints& hints, Messages& messages,
                         std::vector<StandardValueErrors>* searched = nullptr);

}  // namespace nerivane
