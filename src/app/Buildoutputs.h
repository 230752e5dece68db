// What a person builds the design from, taken from the design as last calculated: the
// cascade's schematic under a title naming the design and the values shown, the selected
// section's schematic, the parts list and the SPICE netlist.
#pragma once

#include <string>
#include <vector>

#include "app/Calculationdriver.h"
#include "app/DesignState.h"
#include "response/Partslist.h"
#include "response/Schematic.h"

namespace nerivane {

// "4 Pole Butterworth VCVS LPF, F0 5.00 kHz, exact values": designName (the name Save As
// proposes) followed by the frequencies and which values are drawn. In a worst-case analysis
// the drawing shows the nominal circuit, the standard values of run 0.
std::string SchematicTitle(const std::string& designName, const DesignState& state);

Schematic DesignSchematic(const DesignState& state, const DesignResults& results,
                          const std::string& designName);

Schematic SelectedSectionSchematic(const DesignState& state, const DesignResults& results);

std::vector<PartsListRow> DesignPartsList(const DesignState& state, const DesignResults& results,
                                          const ComponentSettings& settings);

// The SPICE netlist of the whole cascade, titled with the design's command-line names, as
// both the command line and the window export it.
std::string DesignSpiceNetlist(const DesignState& state, const DesignResults& results,
                               const ComponentSettings& settings);

}  // namespace nerivane
