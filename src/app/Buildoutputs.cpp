#include "app/Buildoutputs.h"

#include <algorithm>

#include "app/Optionnames.h"
#include "circuit/Spiceexport.h"
#include "numerics/Formatfunctions.h"

namespace nerivane {

std::string SchematicTitle(const std::string& designName, const DesignState& state) {
    std::string title = designName + ", F0 " + FormatEngineering(state.F0, 2, "Hz");
    if (state.TopologyIndex >= Topology::VcvsBandPass)
        title += ", BW " + FormatEngineering(state.BandWidth, 2, "Hz");
    switch (state.Tolerance) {
        case ToleranceMode::Exact: return title + ", exact values";
        case ToleranceMode::Standard: return title + ", standard values";
        case ToleranceMode::WorstCase: return title + ", standard values (nominal run)";
    }
    return title;
}

Schematic DesignSchematic(const DesignState& state, const DesignResults& results,
                          const std::string& designName) {
    return CascadeSchematic(state.TopologyIndex, results.parts, state.NumSections,
                            SchematicTitle(designName, state));
}

Schematic SelectedSectionSchematic(const DesignState& state, const DesignResults& results) {
    const int section = std::clamp(state.SelectedSection, 0, std::max(0, state.NumSections - 1));
    return SectionSchematic(state.TopologyIndex, section, results.parts.Section(section));
}

std::vector<PartsListRow> DesignPartsList(const DesignState& state, const DesignResults& results,
                                          const ComponentSettings& settings) {
    PartsListDesign design;
    design.topology = state.TopologyIndex;
    design.numSections = state.NumSections;
    design.parts = &results.parts;
    design.settings = &settings;
    design.idealOpAmp = state.IdealOpAmp != 0;
    return PartsList(design);
}

std::string DesignSpiceNetlist(const DesignState& state, const DesignResults& results,
                               const ComponentSettings& settings) {
    SpiceDesign design;
    design.topology = state.TopologyIndex;
    design.numSections = state.NumSections;
    design.freqMin = state.FreqMin;
    design.freqMax = state.FreqMax;
    design.points = results.points;
    design.linearSweep = state.SweepIndex == Sweep::Linear;
    design.gainBandwidth = settings.gainBandwidth;
    design.outputResistance = settings.outputResistance;
    design.idealOpAmp = state.IdealOpAmp != 0;
    design.title = "Nerivane " + std::to_string(state.NumPoles) + "-pole " +
                   NameOf(ResponseNames, state.ResponseIndex) + " " +
                   NameOf(TopologyNames, state.TopologyIndex);
    return SpiceNetlist(design, results.parts);
}

}  // namespace nerivane
