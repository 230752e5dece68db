#include "cli/JsonOutput.h"

#include <cmath>

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

// NaN and infinities have no JSON number; everything else is written as the double it is.
json Number(double value) {
    return std::isfinite(value) ? json(value) : json(nullptr);
}

json Numbers(const double* values, int count) {
    json array = json::array();
    for (int i = 0; i < count; ++i) array.push_back(Number(values[i]));
    return array;
}

json DesignJson(const CliOutcome& o) {
    const DesignState& s = o.state;
    json design;
    design["topology"] = NameOfIndex(TopologyNames, s.TopologyIndex);
    design["topology_index"] = s.TopologyIndex;
    design["response"] = NameOfIndex(ResponseNames, s.ResponseIndex);
    design["response_index"] = s.ResponseIndex;
    design["poles"] = s.NumPoles;
    design["sections"] = s.NumSections;
    design["selected_section"] = s.SelectedSection;
    design["f0_hz"] = Number(s.F0);
    design["bandwidth_hz"] = Number(s.BandWidth);
    design["ripple_db"] = Number(s.Ripple);
    design["gamma"] = Number(s.Gamma);
    design["gain_db"] = Number(20.0 * CheckedLog10(s.SectionGain));
    design["section_gain"] = Number(s.SectionGain);
    design["plot_top_db"] = Number(s.PlotTopDb);
    design["mode"] = ModeName(s.Tolerance);
    design["res_tol"] = o.settings.resistorClass.fraction;
    design["cap_tol"] = o.settings.capacitorClass.fraction;
    design["ideal_opamp"] = s.IdealOpAmp != 0;
    design["gbw_hz"] = Number(s.OpAmpGainBandwidth);
    design["ro_ohm"] = Number(s.OpAmpOutputResistance);
    design["runs"] = s.Tolerance == ToleranceMode::WorstCase ? o.settings.worstCaseRuns : 1;
    design["sweep_index"] = s.SweepIndex;
    design["threshold_db"] = Number(s.PhaseThreshold);
    design["c1_f"] = Numbers(s.SectionC1, MaxSections);
    design["c2_f"] = Numbers(s.SectionC2, MaxSections);
    return design;
}

json PrototypeJson(const CliOutcome& o) {
    json sections = json::array();
    const ProtoSections& p = o.state.Sections;
    for (int i = 0; i < o.results.prototype.sectionCount; ++i) {
        sections.push_back({{"den_s2", Number(p.DenS2[i])},
                            {"den_s1", Number(p.DenS1[i])},
                            {"den_s0", Number(p.DenS0[i])},
                            {"num_s2", Number(p.NumS2[i])},
                            {"num_s1", Number(p.NumS1[i])},
                            {"num_s0", Number(p.NumS0[i])}});
    }
    return sections;
}

json ComponentsJson(const CliOutcome& o) {
    json sections = json::array();
    for (int i = 0; i < o.state.NumSections && i < MaxSections; ++i) {
        const WorkingComponents c = o.results.parts.Section(i);
        sections.push_back({{"R1", Number(c.R1)},
                            {"R2", Number(c.R2)},
                            {"R3", Number(c.R3)},
                            {"R4", Number(c.R4)},
                            {"C1", Number(c.C1)},
                            {"C2", Number(c.C2)}});
    }
    return sections;
}

json ResponseJson(const CliOutcome& o) {
    json re = json::array();
    json im = json::array();
    for (int i = 0; i < o.results.points; ++i) {
        re.push_back(Number(o.results.response[i].re));
        im.push_back(Number(o.results.response[i].im));
    }
    return {{"re", re}, {"im", im}};
}

json TracesJson(const CliOutcome& o) {
    const Traces& t = o.results.traces;
    const int n = o.results.points;
    json linear = json::array();
    for (int i = 0; i < n; ++i) linear.push_back(Number(ComplexAbs(o.results.response[i])));
    return {{"mag_db", Numbers(t.magnitudeDb.data(), n)},
            {"mag_linear", linear},
            {"phase_deg", Numbers(t.phase.data(), n)},
            {"hilbert_phase_deg", Numbers(t.hilbertPhase.data(), n)},
            {"group_delay_s", Numbers(t.groupDelay.data(), n)},
            {"gd_scale_s", Number(t.groupDelayScale)}};
}

}  // namespace

json ResultJson(const CliOutcome& o) {
    json root;
    root["design"] = DesignJson(o);
    json repairs = json::array();
    for (const Repair& repair : o.repairs)
        repairs.push_back(
            {{"box", repair.box}, {"typed", repair.typed}, {"repaired", repair.repaired}});
    root["repairs"] = repairs;
    root["messages"] = o.messages;
    root["prototype"] = PrototypeJson(o);
    root["components"] = ComponentsJson(o);
    root["report"] = o.results.report;
    root["frequency_hz"] = Numbers(o.results.frequencies.data(), o.results.points);
    root["response"] = ResponseJson(o);
    root["traces"] = TracesJson(o);
    if (o.results.traces.hasPulse) {
        root["pulse"] = {{"dt_s", Number(o.results.traces.pulseTimeStep)},
                         {"values", Numbers(o.results.traces.pulse.data(), TracePoints)}};
    }
    if (o.worstCase) {
        root["worst_case"] = {{"runs", o.worstCase->runs},
                              {"mag_db_min", Numbers(o.worstCase->dbMin.data(), PlotPoints)},
                              {"mag_db_max", Numbers(o.worstCase->dbMax.data(), PlotPoints)}};
    }
    return root;
}

}  // namespace nerivane::cli
