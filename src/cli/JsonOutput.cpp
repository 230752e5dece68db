#include "cli/JsonOutput.h"

#include <cmath>
#include <initializer_list>
#include <limits>
#include <utility>

#include "app/Optionnames.h"
#include "cli/JsonWriter.h"
#include "numerics/CheckedMath.h"
#include "response/Valuesreport.h"

namespace nerivane::cli {
namespace {

const char* ModeName(ToleranceMode mode) {
    switch (mode) {
        case ToleranceMode::Standard: return "standard";
        case ToleranceMode::WorstCase: return "worst";
        case ToleranceMode::Exact: break;
    }
    return "exact";
}

void Numbers(JsonWriter& json, const char* key, const double* values, int count) {
    json.Key(key);
    json.NumberList(std::span<const double>(values, static_cast<std::size_t>(count)));
}

void Texts(JsonWriter& json, const char* key, const std::vector<std::string>& texts) {
    json.Key(key);
    json.BeginArray();
    for (const std::string& text : texts) json.String(text);
    json.EndArray();
}

// Named numbers in the open object.
void Fields(JsonWriter& json, std::initializer_list<std::pair<const char*, double>> fields) {
    for (const auto& [name, value] : fields) {
        json.Key(name);
        json.Number(value);
    }
}

// An object of named numbers, as a section's coefficients or parts are listed.
void NamedNumbers(JsonWriter& json, std::initializer_list<std::pair<const char*, double>> fields) {
    json.BeginObject();
    Fields(json, fields);
    json.EndObject();
}

void Design(JsonWriter& json, const CliOutcome& o) {
    const DesignState& s = o.state;
    const auto number = [&json](const char* key, double value) {
        json.Key(key);
        json.Number(value);
    };
    const auto integer = [&json](const char* key, long long value) {
        json.Key(key);
        json.Integer(value);
    };
    const auto text = [&json](const char* key, std::string_view value) {
        json.Key(key);
        json.String(value);
    };
    json.Key("design");
    json.BeginObject();
    text("topology", NameOf(TopologyNames, s.TopologyIndex));
    integer("topology_index", Index(s.TopologyIndex));
    text("response", NameOf(ResponseNames, s.ResponseIndex));
    integer("response_index", Index(s.ResponseIndex));
    integer("poles", s.NumPoles);
    integer("sections", s.NumSections);
    integer("selected_section", s.SelectedSection);
    number("f0_hz", s.F0);
    number("bandwidth_hz", s.BandWidth);
    number("ripple_db", s.Ripple);
    number("gamma", s.Gamma);
    number("gain_db", 20.0 * CheckedLog10(s.SectionGain));
    number("section_gain", s.SectionGain);
    number("plot_top_db", s.PlotTopDb);
    text("mode", ModeName(s.Tolerance));
    number("res_tol", o.settings.resistorClass.fraction);
    number("cap_tol", o.settings.capacitorClass.fraction);
    json.Key("ideal_opamp");
    json.Bool(s.IdealOpAmp != 0);
    number("gbw_hz", s.OpAmpGainBandwidth);
    number("ro_ohm", s.OpAmpOutputResistance);
    integer("runs", s.Tolerance == ToleranceMode::WorstCase ? o.settings.worstCaseRuns : 1);
    const BuildOptions& build = o.settings.build;
    text("opamp_model", OpAmpModelNames[static_cast<std::size_t>(build.opAmpModel)]);
    text("res_series", ResistorSeriesNames[static_cast<std::size_t>(build.resistorSeries)]);
    number("r_min_ohm", build.minPracticalOhms);
    number("r_max_ohm", build.maxPracticalOhms);
    number("input_amplitude_v", build.inputAmplitudeVolts);
    json.Key("notch_independent");
    json.Bool(build.notchPartsIndependent);
    json.Key("best_standard_values");
    json.Bool(build.bestStandardValues);
    integer("sweep_index", Index(s.SweepIndex));
    number("threshold_db", s.PhaseThreshold);
    Numbers(json, "c1_f", s.SectionC1, MaxSections);
    Numbers(json, "c2_f", s.SectionC2, MaxSections);
    json.EndObject();
}

void Repairs(JsonWriter& json, const CliOutcome& o) {
    json.Key("repairs");
    json.BeginArray();
    for (const Repair& repair : o.repairs) {
        json.BeginObject();
        for (const auto& [key, value] :
             {std::pair{"box", &repair.box}, std::pair{"typed", &repair.typed},
              std::pair{"repaired", &repair.repaired}}) {
            json.Key(key);
            json.String(*value);
        }
        json.EndObject();
    }
    json.EndArray();
}

void Prototype(JsonWriter& json, const CliOutcome& o) {
    const ProtoSections& p = o.state.Sections;
    json.Key("prototype");
    json.BeginArray();
    for (int i = 0; i < o.results.prototype.sectionCount; ++i)
        NamedNumbers(json, {{"den_s2", p.DenS2[i]},
                            {"den_s1", p.DenS1[i]},
                            {"den_s0", p.DenS0[i]},
                            {"num_s2", p.NumS2[i]},
                            {"num_s1", p.NumS1[i]},
                            {"num_s0", p.NumS0[i]}});
    json.EndArray();
}

void Components(JsonWriter& json, const CliOutcome& o) {
    json.Key("components");
    json.BeginArray();
    for (int i = 0; i < o.state.NumSections && i < MaxSections; ++i) {
        const WorkingComponents c = o.results.parts.Section(i);
        NamedNumbers(
            json,
            {{"R1", c.R1}, {"R2", c.R2}, {"R3", c.R3}, {"R4", c.R4}, {"C1", c.C1}, {"C2", c.C2}});
    }
    json.EndArray();
}

// A part's state for a script: a 0 Ω resistor is a value, a series capacitor bypassed because
// R1 is open is a wire; only a "value" has a number.
const char* PartStateName(const ReportedPart& part) {
    switch (part.state) {
        case PartState::Placed: return "value";
        case PartState::Wire: return part.value == 0.0 ? "value" : "wire";
        case PartState::LeftOut:
        case PartState::Absent: return "open";
        case PartState::NoSolution:
        case PartState::NoValue: break;
    }
    return "no solution";
}

void Parts(JsonWriter& json, const CliOutcome& o) {
    json.Key("parts");
    json.BeginArray();
    for (const ReportedPart& part :
         ReportedParts(o.state.TopologyIndex, o.results.parts, o.state.NumSections)) {
        json.BeginObject();
        json.Key("section");
        json.Integer(part.section);
        const std::string_view state = PartStateName(part);
        for (const auto& [key, value] :
             {std::pair{"designator", std::string_view(part.designator)},
              std::pair{"role", std::string_view(part.role)}, std::pair{"state", state}}) {
            json.Key(key);
            json.String(value);
        }
        json.Key("value");
        if (state == "value")
            json.Number(part.value);
        else
            json.Null();
        json.Key("printed");
        json.String(part.printed);
        json.EndObject();
    }
    json.EndArray();
}

// What searching the standard values gained, in percent; written only when the search ran.
void StandardValues(JsonWriter& json, const std::vector<StandardValueErrors>& searched) {
    if (searched.empty()) return;
    json.Key("standard_values");
    json.BeginArray();
    for (const StandardValueErrors& e : searched) {
        json.BeginObject();
        json.Key("section");
        json.Integer(e.section);
        Fields(json, {{"f0_error_before_percent", 100.0 * e.f0Before},
                      {"q_error_before_percent", 100.0 * e.qBefore},
                      {"f0_error_after_percent", 100.0 * e.f0After},
                      {"q_error_after_percent", 100.0 * e.qAfter}});
        json.EndObject();
    }
    json.EndArray();
}

// What each stage needs, and the notch as listed; a first-order stage's Q and a GBW no op amp
// reaches are null.
void Stages(JsonWriter& json, const CliOutcome& o) {
    json.Key("stages");
    json.BeginArray();
    for (const StageNeeds& stage : o.results.checks.stages) {
        json.BeginObject();
        Fields(json, {{"f0_hz", stage.f0Hz},
                      {"q", stage.q},
                      {"gain", stage.gain},
                      {"peak_gain", stage.peakGain},
                      {"peak_gain_hz", stage.peakGainHz},
                      {"gbw_needed_hz", stage.gainBandwidthHz},
                      {"slew_rate_v_per_us", stage.slewRateVPerUs},
                      {"q_spread", stage.qSpread}});
        json.Key("sensitivity");
        json.BeginArray();
        for (const PartSensitivity& part : stage.sensitivity) {
            json.BeginObject();
            json.Key("part");
            json.String(part.part);
            Fields(json, {{"f0_percent", part.f0Percent}, {"q_percent", part.qPercent}});
            json.EndObject();
        }
        json.EndArray();
        json.Key("most_sensitive");
        if (const PartSensitivity* most = MostSensitive(stage.sensitivity))
            json.String(most->part);
        else
            json.Null();
        json.EndObject();
    }
    json.EndArray();
    StandardValues(json, o.results.checks.standardValues);
    if (!o.results.checks.notch) return;
    const NotchAsListed& notch = *o.results.checks.notch;
    json.Key("notch");
    json.BeginObject();
    for (const auto& [key, value] :
         {std::pair{"depth_db", notch.depthDb}, std::pair{"depth_hz", notch.depthHz},
          std::pair{"exact_shunt_depth_db", notch.exactShuntDepthDb}}) {
        json.Key(key);
        json.Number(value);
    }
    json.Key("rounded_shunt_sections");
    json.BeginArray();
    for (int s : notch.roundedShuntSections) json.Integer(s);
    json.EndArray();
    json.EndObject();
}

void Response(JsonWriter& json, const CliOutcome& o) {
    const int n = o.results.points;
    json.Key("response");
    json.BeginObject();
    std::array<double, PlotPoints> part{};
    for (const bool real : {true, false}) {
        for (int i = 0; i < n; ++i)
            part[i] = real ? o.results.response[i].re : o.results.response[i].im;
        Numbers(json, real ? "re" : "im", part.data(), n);
    }
    json.EndObject();
}

// A trace whose undrawn points are null, as NaN is written: the marker that stands for them is
// no value a script should plot.
void DrawnNumbers(JsonWriter& json, const char* key, std::array<double, TracePoints> values,
                  int count) {
    for (double& v : values)
        if (v == NoPlotValue) v = std::numeric_limits<double>::quiet_NaN();
    Numbers(json, key, values.data(), count);
}

void TraceArrays(JsonWriter& json, const CliOutcome& o) {
    const Traces& t = o.results.traces;
    const int n = o.results.points;
    json.Key("traces");
    json.BeginObject();
    Numbers(json, "mag_db", t.magnitudeDb.data(), n);
    std::array<double, PlotPoints> linear{};
    for (int i = 0; i < n; ++i) linear[i] = ComplexAbs(o.results.response[i]);
    Numbers(json, "mag_linear", linear.data(), n);
    DrawnNumbers(json, "phase_deg", t.phase, n);
    DrawnNumbers(json, "hilbert_phase_deg", t.hilbertPhase, n);
    DrawnNumbers(json, "group_delay_s", t.groupDelay, n);
    json.Key("gd_scale_s");
    json.Number(t.groupDelayScale);
    json.EndObject();
}

// Each trace's lowest and highest value at every point over the runs; the linear magnitude as
// |H|, as in the traces.
void WorstCase(JsonWriter& json, const CliOutcome& o) {
    const TraceEnvelope& envelope = o.results.envelope;
    json.Key("worst_case");
    json.BeginObject();
    json.Key("runs");
    json.Integer(envelope.runs);
    for (const EnvelopeTrace& trace : EnvelopeTraces) {
        for (const bool high : {false, true}) {
            std::array<double, TracePoints> values =
                (high ? envelope.high : envelope.low).*trace.values;
            if (trace.values == &Traces::magnitudeLinear)
                for (double& v : values) v = LinearMagnitudeOf(v);
            DrawnNumbers(json, (std::string(trace.name) + (high ? "_max" : "_min")).c_str(), values,
                         o.results.points);
        }
    }
    json.EndObject();
}

void Requirement(JsonWriter& json, const CliOutcome& o) {
    const RequirementCheck& check = o.results.requirement;
    const RequirementMask& m = check.mask;
    json.Key("requirement");
    json.BeginObject();
    json.Key("mask");
    json.String(MaskText(m));
    json.Key("kind");
    json.String(MaskKindName(m.kind));
    const bool twoSided = m.kind == MaskKind::BandPass || m.kind == MaskKind::Notch;
    const int edges = twoSided ? 2 : 1;
    Numbers(json, "pass_edges_hz", m.passEdgesHz.data(), edges);
    Numbers(json, "stop_edges_hz", m.stopEdgesHz.data(), edges);
    if (twoSided) {
        json.Key("centre_hz");
        json.Number(MaskCentreHz(m));
    }
    for (const auto& [key, value] : {std::pair{"ap_db", m.passDb}, std::pair{"as_db", m.stopDb},
                                     std::pair{"reference_db", check.referenceDb},
                                     std::pair{"pass_margin_db", check.nominal.passDb},
                                     std::pair{"stop_margin_db", check.nominal.stopDb}}) {
        json.Key(key);
        json.Number(value);
    }
    json.Key("meets");
    json.Bool(check.nominal.Meets());
    json.Key("runs");
    json.Integer(check.runs);
    json.Key("runs_meeting");
    json.Integer(check.runsMeeting);
    json.Key("yield");
    json.Number(check.runs > 0 ? static_cast<double>(check.runsMeeting) / check.runs : 0.0);
    json.Key("run_meets");
    json.BeginArray();
    for (const std::uint8_t meets : check.runMeets) json.Bool(meets != 0);
    json.EndArray();
    json.EndObject();
}

// One object per family: the fewest poles that meet the mask (null where none up to the
// circuit's limit does) and that design's figures.
void Orders(JsonWriter& json, const CliOutcome& o) {
    json.Key("orders");
    json.BeginArray();
    for (const OrderRow& row : o.orders) {
        json.BeginObject();
        json.Key("family");
        json.String(NameOf(ResponseNames, row.family));
        json.Key("poles");
        if (row.Meets())
            json.Integer(row.poles);
        else
            json.Null();
        if (row.Meets()) {
            for (const auto& [key, value] :
                 {std::pair{"f0_hz", row.f0Hz}, std::pair{"bandwidth_hz", row.bandwidthHz},
                  std::pair{"ripple_db", row.ripple}, std::pair{"pass_margin_db", row.passMarginDb},
                  std::pair{"stop_margin_db", row.stopMarginDb},
                  std::pair{"delay_variation_s", row.delayVariationS},
                  std::pair{"overshoot_percent", row.overshootPercent}}) {
                json.Key(key);
                json.Number(value);
            }
        }
        json.EndObject();
    }
    json.EndArray();
}

}  // namespace

void WriteResultJson(const CliOutcome& o, const std::function<void(std::string_view)>& write,
                     JsonLayout layout) {
    JsonWriter json(write, layout);
    json.BeginObject();
    if (o.batchLine > 0) {
        json.Key("line");
        json.Integer(o.batchLine);
    }
    // Raised when a field changes its meaning or goes; new fields leave it as it is.
    json.Key("format_version");
    json.Integer(JsonFormatVersion);
    Design(json, o);
    Repairs(json, o);
    Texts(json, "messages", o.messages);
    Prototype(json, o);
    Components(json, o);
    Parts(json, o);
    Texts(json, "report", o.results.report);
    Stages(json, o);
    Numbers(json, "frequency_hz", o.results.frequencies.data(), o.results.points);
    Response(json, o);
    TraceArrays(json, o);
    if (o.results.traces.hasPulse) {
        json.Key("pulse");
        json.BeginObject();
        json.Key("dt_s");
        json.Number(o.results.traces.pulseTimeStep);
        Numbers(json, "values", o.results.traces.pulse.data(), TracePoints);
        json.EndObject();
    }
    if (o.worstCase) WorstCase(json, o);
    if (o.results.requirement.active) Requirement(json, o);
    if (!o.orders.empty()) Orders(json, o);
    json.EndObject();
    json.Finish();
}

}  // namespace nerivane::cli
