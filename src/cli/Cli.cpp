#include "cli/Cli.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <fstream>
#include <map>
#include <memory>

#include "app/Calculationdriver.h"
#include "app/Initializevars.h"
#include "circuit/Spiceexport.h"
#include "cli/CliBox.h"
#include "cli/JsonOutput.h"
#include "cli/Names.h"
#include "cli/SiValue.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Matherrmain.h"
#include "numerics/MessageSink.h"

namespace nerivane::cli {
namespace {

// A usage error: its text is the one line the command line prints before exiting with 2.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Message boxes become lines on standard error, and are kept for the JSON.
class CliMessageSink : public MessageSink {
  public:
    explicit CliMessageSink(std::ostream& err) : err_(err) {}
    void ShowMessage(const std::string& text, const std::string& caption) override {
        err_ << caption << ": " << text << "\n";
        texts.push_back(text);
    }
    std::vector<std::string> texts;

  private:
    std::ostream& err_;
};

class CliMathErrorLog : public MathErrorLog {
  public:
    explicit CliMathErrorLog(std::ostream& err) : err_(err) {}
    void AppendLine(const std::string& line) override { err_ << "math error: " << line << "\n"; }

  private:
    std::ostream& err_;
};

// Installs a sink for the life of one run and restores the default afterwards, so that
// in-process callers (tests) are left as they were.
template <typename Sink, void (*Install)(Sink*)>
class ScopedInstall {
  public:
    explicit ScopedInstall(Sink* sink) { Install(sink); }
    ~ScopedInstall() { Install(nullptr); }
    ScopedInstall(const ScopedInstall&) = delete;
    ScopedInstall& operator=(const ScopedInstall&) = delete;
};

// The window's boxes, as plain text with repair tracking.
struct CliBoxes {
    CliBox numPoles{"NumPolesBox", DefaultBoxTexts::NumPoles};
    CliBox ripple{"RippleBox", DefaultBoxTexts::Ripple};
    CliBox f0{"F0Box", DefaultBoxTexts::F0};
    CliBox bandWidth{"BandWidthBox", DefaultBoxTexts::BandWidth};
    CliBox gain{"FilterGainBox", DefaultBoxTexts::Gain};
    CliBox gamma{"GammaBox", DefaultBoxTexts::Gamma};
    CliBox section{"SectionBox", DefaultBoxTexts::Section};
    CliBox threshold{"GDPhaseThresholdBox", DefaultBoxTexts::PhaseThreshold};
    CliBox gainBandwidth{"GainBWBox", DefaultBoxTexts::GainBandwidthMHz};
    CliBox outputResistance{"OutputZBox", DefaultBoxTexts::OutputResistance};
    CliBox runs{"WorstCaseMaxBox", DefaultBoxTexts::WorstCaseRuns};

    ParameterBoxes Parameters() {
        return {numPoles,      ripple,           f0,  bandWidth, gain, gamma, section, threshold,
                gainBandwidth, outputResistance, runs};
    }
    std::vector<const CliBox*> All() const {
        return {&numPoles, &ripple,  &f0,        &bandWidth,     &gain,
                &gamma,    &section, &threshold, &gainBandwidth, &outputResistance,
                &runs};
    }
};

// The options as given; absent ones keep the program's start-up defaults.
struct Options {
    std::map<std::string, std::string> values;
    bool Has(const std::string& name) const { return values.count(name) > 0; }
    const std::string& Get(const std::string& name) const { return values.at(name); }
};

template <std::size_t N>
int NamedIndex(const Options& options, const std::string& option,
               const std::array<std::string_view, N>& names) {
    const std::optional<int> index = IndexOfName(names, options.Get(option));
    if (!index) {
        throw UsageError(option + ": \"" + options.Get(option) + "\" is not one of " +
                         JoinNames(names));
    }
    return *index;
}

// A value in the box's unit: SI text is converted ("5k" Hz into "5" kHz); anything else
// goes into the box as typed, to be repaired there like a person's typing.
void TypeScaled(CliBox& box, const std::string& text, std::string_view unit, double boxUnit) {
    const std::optional<double> value = ParseSiValue(text, unit);
    box.Type(value ? ExactText(*value / boxUnit) : text);
}

// "10n" or "10n,22n,4.7n": one value for every section or one per section in order.
void SetCapacitors(const Options& options, const std::string& option, double* capacitors) {
    std::vector<double> values;
    std::string_view rest = options.Get(option);
    while (true) {
        const std::size_t comma = rest.find(',');
        const std::string_view item = rest.substr(0, comma);
        const std::optional<double> value = ParseSiValue(item, "F");
        if (!value || *value <= 0.0) {
            throw UsageError(option + ": \"" + std::string(item) +
                             "\" is not a capacitance in farads (10n, 2.2nF, 100p)");
        }
        values.push_back(*value);
        if (comma == std::string_view::npos) break;
        rest.remove_prefix(comma + 1);
    }
    if (values.size() > static_cast<std::size_t>(MaxSections))
        throw UsageError(option + ": at most 20 values, one per section");
    for (int i = 0; i < MaxSections; ++i) {
        if (values.size() == 1) {
            capacitors[i] = values[0];
        } else if (i < static_cast<int>(values.size())) {
            capacitors[i] = values[i];
        }
    }
}

ToleranceClass ToleranceOption(const Options& options, const std::string& option) {
    int percent = 0;
    const std::string& text = options.Get(option);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), percent);
    const ToleranceClass* toleranceClass = error == std::errc() && end == text.data() + text.size()
                                               ? ToleranceClassOf(percent)
                                               : nullptr;
    if (!toleranceClass)
        throw UsageError(option + ": \"" + text + "\" is not one of 1, 2, 5, 10, 20");
    return *toleranceClass;
}

void ApplyOpAmp(const Options& options, DesignState& state, CliBoxes& boxes) {
    const std::string& text = options.Get("--opamp");
    if (text == "ideal") {
        state.IdealOpAmp = 1;
        return;
    }
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) {
        throw UsageError("--opamp: \"" + text +
                         "\" is neither ideal nor GBW,RO (for example 10M,10)");
    }
    state.IdealOpAmp = 0;
    TypeScaled(boxes.gainBandwidth, text.substr(0, comma), "Hz", 1e6);
    TypeScaled(boxes.outputResistance, text.substr(comma + 1), "ohm", 1.0);
}

// "mag10,phase": the plot check boxes that are ticked.
void ApplyTraces(const Options& options, DesignState& state) {
    const std::array<std::int32_t*, 5> boxes = {&state.PlotMag, &state.PlotMag1dB, &state.PlotPhase,
                                                &state.PlotGroupDelay, &state.PlotPulse};
    for (std::int32_t* box : boxes) *box = 0;
    std::string_view rest = options.Get("--traces");
    while (true) {
        const std::size_t comma = rest.find(',');
        const std::string_view item = rest.substr(0, comma);
        const std::optional<int> index = IndexOfName(TraceNames, item);
        if (!index) {
            throw UsageError("--traces: \"" + std::string(item) + "\" is not one of " +
                             JoinNames(TraceNames));
        }
        *boxes[*index] = 1;
        if (comma == std::string_view::npos) break;
        rest.remove_prefix(comma + 1);
    }
}

std::uint32_t SeedOption(const Options& options) {
    std::uint32_t seed = 0;
    const std::string& text = options.Get("--seed");
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seed);
    if (error != std::errc() || end != text.data() + text.size())
        throw UsageError("--seed: \"" + text + "\" is not a whole number from 0 to 4294967295");
    return seed;
}

void ApplyOptions(const Options& options, DesignState& state, CliBoxes& boxes,
                  ComponentSettings& settings) {
    if (options.Has("--topology"))
        state.TopologyIndex = NamedIndex(options, "--topology", TopologyNames);
    if (options.Has("--response"))
        state.ResponseIndex = NamedIndex(options, "--response", ResponseNames);
    if (options.Has("--sweep")) state.SweepIndex = NamedIndex(options, "--sweep", SweepNames);
    if (options.Has("--mode"))
        state.Tolerance = static_cast<ToleranceMode>(NamedIndex(options, "--mode", ModeNames));
    if (options.Has("--res-tol")) settings.resistorClass = ToleranceOption(options, "--res-tol");
    if (options.Has("--cap-tol")) settings.capacitorClass = ToleranceOption(options, "--cap-tol");
    if (options.Has("--opamp")) ApplyOpAmp(options, state, boxes);
    if (options.Has("--traces")) ApplyTraces(options, state);
    if (options.Has("--mag"))
        state.Magnitude = static_cast<MagnitudeMode>(NamedIndex(options, "--mag", MagnitudeNames));
    if (options.Has("--phase"))
        state.Phase = static_cast<PhaseMode>(NamedIndex(options, "--phase", PhaseNames));
    if (options.Has("--c1")) SetCapacitors(options, "--c1", state.SectionC1);
    if (options.Has("--c2")) SetCapacitors(options, "--c2", state.SectionC2);

    if (options.Has("--poles")) boxes.numPoles.Type(options.Get("--poles"));
    if (options.Has("--ripple")) boxes.ripple.Type(options.Get("--ripple"));
    if (options.Has("--gamma")) boxes.gamma.Type(options.Get("--gamma"));
    if (options.Has("--gain-db")) boxes.gain.Type(options.Get("--gain-db"));
    if (options.Has("--threshold")) boxes.threshold.Type(options.Get("--threshold"));
    if (options.Has("--runs")) boxes.runs.Type(options.Get("--runs"));
    if (options.Has("--f0")) TypeScaled(boxes.f0, options.Get("--f0"), "Hz", 1e3);
    if (options.Has("--bw")) TypeScaled(boxes.bandWidth, options.Get("--bw"), "Hz", 1e3);
}

void WriteText(const std::string& path, const std::string& text, std::ostream& out,
               const char* what) {
    if (path == "-") {
        out << text;
        return;
    }
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file)
        throw std::runtime_error(std::string("Cannot write the ") + what + " file \"" + path +
                                 "\".");
}

std::string SpiceText(const DesignState& state, const DesignResults& results,
                      const ComponentSettings& settings) {
    SpiceDesign design;
    design.topology = state.TopologyIndex;
    design.numSections = state.NumSections;
    design.freqMin = state.FreqMin;
    design.freqMax = state.FreqMax;
    design.points = results.points;
    design.linearSweep = state.SweepIndex == 0;
    design.gainBandwidth = settings.gainBandwidth;
    design.outputResistance = settings.outputResistance;
    design.idealOpAmp = state.IdealOpAmp != 0;
    design.title = "Nerivane " + std::to_string(state.NumPoles) + "-pole " +
                   NameOfIndex(ResponseNames, state.ResponseIndex) + " " +
                   NameOfIndex(TopologyNames, state.TopologyIndex);
    return SpiceNetlist(design, results.parts);
}

// Until the report exists, the parts of every section in engineering notation.
void WritePartsListing(const DesignState& state, const DesignResults& results, std::ostream& out) {
    for (int i = 0; i < state.NumSections && i < MaxSections; ++i) {
        const WorkingComponents c = results.parts.Section(i);
        out << "Section " << i << ":  R1 " << FormatEngineering(c.R1, 2, "\u03A9") << "  R2 "
            << FormatEngineering(c.R2, 2, "\u03A9") << "  R3 "
            << FormatEngineering(c.R3, 2, "\u03A9") << "  R4 "
            << FormatEngineering(c.R4, 2, "\u03A9") << "  C1 " << FormatEngineering(c.C1, 2, "F")
            << "  C2 " << FormatEngineering(c.C2, 2, "F") << "\n";
    }
}

const char* const ValueOptions[][2] = {
    {"--topology", "Circuit: vcvs-lpf, mfb-lpf, vcvs-hpf, mfb-hpf, vcvs-bpf, mfb-bpf, notch"},
    {"--response",
     "Response family: butterworth, chebyshev, papoulis, bessel, gaussian, "
     "adjustable-gauss"},
    {"--poles", "Number of poles (1 to 20; 10 for band pass and notch)"},
    {"--f0", "Corner or centre frequency in hertz (5k, 1.5M, 2.2kHz)"},
    {"--bw", "Band width in hertz, for band pass and notch"},
    {"--gain-db", "Section gain in dB"},
    {"--ripple", "Pass-band ripple in dB (Chebyshev, Papoulis)"},
    {"--gamma", "Adjustable Gauss argument, -1 to 1"},
    {"--c1", "C1 in farads, one value for every section or a list (10n,22n)"},
    {"--c2", "C2 in farads, as --c1"},
    {"--mode", "Component values: exact, standard, worst"},
    {"--res-tol", "Resistor tolerance in percent: 1, 2, 5, 10, 20"},
    {"--cap-tol", "Capacitor tolerance in percent: 1, 2, 5, 10, 20"},
    {"--opamp", "ideal, or GBW,RO (10M,10: 10 MHz, 10 ohms)"},
    {"--runs", "Worst-case runs (1 to 1000)"},
    {"--seed", "Seed of the random tolerance draws (default 1)"},
    {"--sweep", "linear, half-to-double, two-octaves, three-octaves, one-decade, two-decades"},
    {"--threshold", "Phase plot threshold in dB"},
    {"--traces", "Traces shown, of mag10, mag1, phase, gd, pulse (default mag10)"},
    {"--mag", "Magnitude scale: db or linear"},
    {"--phase", "Phase trace: plain or hilbert"},
    {"--json", "Write the result as JSON to FILE, or - for standard output"},
    {"--spice", "Write a SPICE netlist of the cascade to FILE, or - for standard output"},
};

}  // namespace

int RunCli(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    CLI::App app{"Designs an active op-amp filter and writes what is asked for.", "nerivane-cli"};
    std::map<std::string, std::string> given;
    for (const auto& [name, help] : ValueOptions) app.add_option(name, given[name], help);

    std::vector<std::string> reversed(args.rbegin(), args.rend() - (args.empty() ? 0 : 1));
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        out << app.help();
        return 0;
    } catch (const CLI::ParseError& e) {
        err << "nerivane-cli: " << e.what() << "\n";
        return 2;
    }
    Options options;
    for (const auto& [name, help] : ValueOptions) {
        if (app.count(name)) options.values[name] = given[name];
    }

    DesignState state = DefaultDesignState();
    auto boxes = std::make_unique<CliBoxes>();
    ComponentSettings settings;
    std::uint32_t seed = 1;
    try {
        ApplyOptions(options, state, *boxes, settings);
        if (options.Has("--seed")) seed = SeedOption(options);
    } catch (const UsageError& e) {
        err << "nerivane-cli: " << e.what() << "\n";
        return 2;
    }

    CliMessageSink messages(err);
    CliMathErrorLog mathErrors(err);
    ScopedInstall<MessageSink, InstallMessageSink> messageScope(&messages);
    ScopedInstall<MathErrorLog, InstallMathErrorLog> mathErrorScope(&mathErrors);

    auto results = std::make_unique<DesignResults>();
    auto nominal = std::make_unique<std::array<Complex, PlotPoints>>();
    auto envelope = std::make_unique<WorstCaseEnvelope>();
    CalculationOptions calculation;
    calculation.perRun = [&](int run) {
        if (run == 0) std::copy_n(results->response.begin(), PlotPoints, nominal->begin());
        for (int k = 0; k < PlotPoints; ++k) {
            const double db = ComplexToDb(results->response[k].re, results->response[k].im);
            envelope->dbMin[k] = run == 0 ? db : std::min(envelope->dbMin[k], db);
            envelope->dbMax[k] = run == 0 ? db : std::max(envelope->dbMax[k], db);
        }
        envelope->runs = run + 1;
    };
    ToleranceRandom random(seed);
    ParameterBoxes parameters = boxes->Parameters();
    Calculate(state, parameters, settings, *results, random, calculation);

    CliOutcome outcome{state,
                       *results,
                       settings,
                       *nominal,
                       state.Tolerance == ToleranceMode::WorstCase ? envelope.get() : nullptr,
                       {},
                       messages.texts};
    for (const CliBox* box : boxes->All()) {
        if (!box->Repaired()) continue;
        outcome.repairs.push_back({box->Name(), box->Typed(), box->Text()});
        err << "warning: " << box->Name() << ": \"" << box->Typed() << "\" replaced by \""
            << box->Text() << "\"\n";
    }
    for (const std::string& note : results->reportNotes) {
        err << "note: " << note << "\n";
        outcome.messages.push_back(note);
    }

    try {
        const bool anyOutput = options.Has("--json") || options.Has("--spice");
        if (options.Has("--json"))
            WriteText(options.Get("--json"), ResultJson(outcome).dump(2) + "\n", out, "JSON");
        if (options.Has("--spice"))
            WriteText(options.Get("--spice"), SpiceText(state, *results, settings), out, "SPICE");
        if (!anyOutput) WritePartsListing(state, *results, out);
    } catch (const std::exception& e) {
        err << "nerivane-cli: " << e.what() << "\n";
        return 1;
    }
    return 0;
}

}  // namespace nerivane::cli
