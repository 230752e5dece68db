#include "cli/JsonOutput.h"

#include <cmath>

#include "app/Initializevars.h"
#include "cli/Names.h"
#include "numerics/CheckedMath.h"

namespace nerivane::cli {
namespace {

using nlohmann::json;

const char* ModeName(ToleranceMode mode) {
    switch (mode) {
        case ToleranceMode::Standard: return "standard";
        case ToleranceMode::WorstCase: return "worst";
        case ToleranceMode::Exact: break;
    }
    return "exact";
}

// "10 %" -> 0.1: the record keeps tolerance classes as their button captions.
double ToleranceFraction(const char16_t* text, std::size_t units) {
    const std::string caption = ReadRecordText(text, units);
    int percent = 0;
    for (char c : caption) {
        if (c < '0' || c > '9') break;
        percent = percent * 10 + (c - '0');
    }
    return percent / 100.0;
}

json Numbers(const double* values, int count) {
    json array = json::array();
    for (int i = 0; i < count; ++i) array.push_back(values[i]);
    return array;
}

}  // namespace

json DesignJson(const DesignState& s) {
    json design;
    design["topology"] = NameOfIndex(TopologyNames, s.TopologyIndex);
    design["topology_index"] = s.TopologyIndex;
    design["response"] = NameOfIndex(ResponseNames, s.ResponseIndex);
    design["response_index"] = s.ResponseIndex;
    design["poles"] = s.NumPoles;
    design["sections"] = s.NumSections;
    design["selected_section"] = s.SelectedSection;
    design["f0_hz"] = s.F0;
    design["bandwidth_hz"] = s.BandWidth;
    design["ripple_db"] = s.Ripple;
    design["gamma"] = s.Gamma;
    design["gain_db"] = 20.0 * CheckedLog10(s.SectionGain);
    design["section_gain"] = s.SectionGain;
    design["plot_top_db"] = s.PlotTopDb;
    design["mode"] = ModeName(s.Tolerance);
    design["res_tol"] =
        ToleranceFraction(s.ResistorToleranceText, std::size(s.ResistorToleranceText));
    design["cap_tol"] =
        ToleranceFraction(s.CapacitorToleranceText, std::size(s.CapacitorToleranceText));
    design["ideal_opamp"] = s.IdealOpAmp != 0;
    design["gbw_hz"] = s.OpAmpGainBandwidth;
    design["ro_ohm"] = s.OpAmpOutputResistance;
    design["runs"] = 1;
    design["sweep_index"] = s.SweepIndex;
    design["threshold_db"] = s.PhaseThreshold;
    design["c1_f"] = Numbers(s.SectionC1, MaxSections);
    design["c2_f"] = Numbers(s.SectionC2, MaxSections);
    return design;
}

json PrototypeJson(const DesignState& s, const CalculationResult& result) {
    json sections = json::array();
    const ProtoSections& p = s.Sections;
    for (int i = 0; i < result.prototype.sectionCount; ++i) {
        sections.push_back({{"den_s2", p.DenS2[i]},
                            {"den_s1", p.DenS1[i]},
                            {"den_s0", p.DenS0[i]},
                            {"num_s2", p.NumS2[i]},
                            {"num_s1", p.NumS1[i]},
                            {"num_s0", p.NumS0[i]}});
    }
    return sections;
}

json ResultJson(const DesignState& state, const CalculationResult& result,
                const std::vector<Repair>& repairs, const std::vector<std::string>& messages) {
    json root;
    root["design"] = DesignJson(state);
    json repairList = json::array();
    for (const Repair& repair : repairs)
        repairList.push_back(
            {{"box", repair.box}, {"typed", repair.typed}, {"repaired", repair.repaired}});
    root["repairs"] = repairList;
    root["messages"] = messages;
    root["prototype"] = PrototypeJson(state, result);
    return root;
}

}  // namespace nerivane::cli
