#include "cli/Applyoptions.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

#include "app/CapacitorEntry.h"
#include "app/Optionnames.h"
#include "app/Recordcontrols.h"
#include "app/Updownfunctions.h"
#include "files/Filesaveread.h"
#include "numerics/Sivalue.h"

namespace nerivane::cli {
namespace {

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
    box.Type(text, value ? ExactText(*value / boxUnit) : text);
}

// "10n" or "10n,22n,4.7n": one value for every section or one per section in order. A value
// the capacitor box would refuse leaves its sections' capacitors as they were, as the box
// does, and is reported as the box's repair.
void SetCapacitors(const Options& options, const std::string& option, const char* box,
                   double* capacitors, std::vector<Repair>& repairs) {
    std::vector<std::string> items;
    std::string_view rest = options.Get(option);
    while (true) {
        const std::size_t comma = rest.find(',');
        items.emplace_back(rest.substr(0, comma));
        if (comma == std::string_view::npos) break;
        rest.remove_prefix(comma + 1);
    }
    if (items.size() > static_cast<std::size_t>(MaxSections))
        throw UsageError(option + ": at most 20 values, one per section");
    for (std::size_t k = 0; k < items.size(); ++k) {
        const std::optional<double> value = ParseCapacitance(items[k]);
        if (!value) {
            repairs.push_back({box, items[k], CapacitorBoxText(capacitors[k])});
            continue;
        }
        // One value stands for every section.
        const std::size_t last = items.size() == 1 ? MaxSections : k + 1;
        for (std::size_t i = k; i < last; ++i) capacitors[i] = *value;
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
    state.IdealOpAmp = false;
    TypeScaled(boxes[BoxId::GainBandwidth], text.substr(0, comma), "Hz", 1e6);
    TypeScaled(boxes[BoxId::OutputResistance], text.substr(comma + 1), "ohm", 1.0);
}

// "100,10M": the practical resistor range.
void ApplyResistorRange(const Options& options, BuildOptions& build) {
    const std::string& text = options.Get("--r-range");
    const std::size_t comma = text.find(',');
    const std::optional<double> low =
        comma == std::string::npos ? std::nullopt : ParseSiValue(text.substr(0, comma), "ohm");
    const std::optional<double> high =
        comma == std::string::npos ? std::nullopt : ParseSiValue(text.substr(comma + 1), "ohm");
    if (!low || !high || !(*low > 0.0) || !(*high > *low) || !std::isfinite(*high))
        throw UsageError("--r-range: \"" + text +
                         "\" is not MIN,MAX in ohms with 0 < MIN < MAX (for example 100,10M)");
    build.minPracticalOhms = *low;
    build.maxPracticalOhms = *high;
}

// "mag10,phase": the plot check boxes that are ticked.
void ApplyTraces(const Options& options, DesignState& state) {
    const std::array<bool*, 5> boxes = {&state.PlotMag, &state.PlotMag1dB, &state.PlotPhase,
                                        &state.PlotGroupDelay, &state.PlotPulse};
    for (bool* box : boxes) *box = false;
    std::string_view rest = options.Get("--traces");
    while (true) {
        const std::size_t comma = rest.find(',');
        const std::string_view item = rest.substr(0, comma);
        const std::optional<int> index = IndexOfName(TraceNames, item);
        if (!index) {
            throw UsageError("--traces: \"" + std::string(item) + "\" is not one of " +
                             JoinNames(TraceNames));
        }
        *boxes[*index] = true;
        if (comma == std::string_view::npos) break;
        rest.remove_prefix(comma + 1);
    }
}

}  // namespace

std::vector<std::string> OpenDesign(const std::string& path, DesignState& state, CliBoxes& boxes,
                                    ComponentSettings& settings) {
    const OpenResult opened = ReadDesignFile(path, state);
    switch (opened.outcome) {
        case OpenOutcome::Opened: break;
        case OpenOutcome::Missing: throw std::runtime_error(MissingFileMessage + path);
        case OpenOutcome::WrongExtension:
            throw std::runtime_error("\"" + path + "\" is not a design file (." +
                                     DesignFileExtension + ").");
        case OpenOutcome::Incompatible: throw std::runtime_error(IncompatibleFileMessage);
        case OpenOutcome::Unreadable:
            throw std::runtime_error(UnreadableFileMessage(path, opened.reason));
    }
    const RecordControls controls = ControlsFromRecord(state);
    for (const BoxRule& rule : BoxRules())
        if (const std::string& text = controls.texts[static_cast<std::size_t>(rule.id)];
            !text.empty())
            boxes[rule.id].Type(text);
    state.IdealOpAmp = controls.idealOpAmp;
    state.Tolerance = controls.mode;
    settings.capacitorClass = *ToleranceClassOf(controls.capacitorPercent);
    settings.resistorClass = *ToleranceClassOf(controls.resistorPercent);
    return opened.repairs;
}

std::uint32_t SeedOption(const Options& options) {
    std::uint32_t seed = 0;
    const std::string& text = options.Get("--seed");
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seed);
    if (error != std::errc() || end != text.data() + text.size())
        throw UsageError("--seed: \"" + text + "\" is not a whole number from 0 to 4294967295");
    return seed;
}

std::vector<Repair> ApplyOptions(const Options& options, DesignState& state, CliBoxes& boxes,
                                 ComponentSettings& settings) {
    std::vector<Repair> repairs;
    if (options.Has("--topology"))
        state.TopologyIndex =
            static_cast<Topology>(NamedIndex(options, "--topology", TopologyNames));
    if (options.Has("--response"))
        state.ResponseIndex =
            static_cast<Response>(NamedIndex(options, "--response", ResponseNames));
    if (options.Has("--sweep"))
        state.SweepIndex = static_cast<Sweep>(NamedIndex(options, "--sweep", SweepNames));
    if (options.Has("--mode"))
        state.Tolerance = static_cast<ToleranceMode>(NamedIndex(options, "--mode", ModeNames));
    if (options.Has("--res-tol")) settings.resistorClass = ToleranceOption(options, "--res-tol");
    if (options.Has("--cap-tol")) settings.capacitorClass = ToleranceOption(options, "--cap-tol");
    if (options.Has("--opamp")) ApplyOpAmp(options, state, boxes);
    if (options.Has("--opamp-model"))
        settings.build.opAmpModel =
            static_cast<OpAmpModel>(NamedIndex(options, "--opamp-model", OpAmpModelNames));
    if (options.Has("--res-series"))
        settings.build.resistorSeries =
            static_cast<ResistorSeries>(NamedIndex(options, "--res-series", ResistorSeriesNames));
    if (options.Has("--r-range")) ApplyResistorRange(options, settings.build);
    if (options.Has("--amplitude")) {
        const std::optional<double> volts = ParseSiValue(options.Get("--amplitude"), "V");
        if (!volts || !(*volts > 0.0) || !(*volts <= 1e4))
            throw UsageError("--amplitude: \"" + options.Get("--amplitude") +
                             "\" is not a peak voltage above 0 and at most 10 kV");
        settings.build.inputAmplitudeVolts = *volts;
    }
    if (options.Has("--traces")) ApplyTraces(options, state);
    if (options.Has("--mag"))
        state.Magnitude = static_cast<MagnitudeMode>(NamedIndex(options, "--mag", MagnitudeNames));
    if (options.Has("--phase"))
        state.Phase = static_cast<PhaseMode>(NamedIndex(options, "--phase", PhaseNames));
    if (options.Has("--c1"))
        SetCapacitors(options, "--c1", RuleOf(BoxId::C1Value).name, state.SectionC1, repairs);
    if (options.Has("--c2"))
        SetCapacitors(options, "--c2", RuleOf(BoxId::C2Value).name, state.SectionC2, repairs);

    if (options.Has("--poles")) boxes[BoxId::NumPoles].Type(options.Get("--poles"));
    if (options.Has("--ripple")) boxes[BoxId::Ripple].Type(options.Get("--ripple"));
    if (options.Has("--gamma")) boxes[BoxId::Gamma].Type(options.Get("--gamma"));
    if (options.Has("--gain-db")) boxes[BoxId::Gain].Type(options.Get("--gain-db"));
    if (options.Has("--threshold")) boxes[BoxId::PhaseThreshold].Type(options.Get("--threshold"));
    if (options.Has("--runs")) boxes[BoxId::WorstCaseRuns].Type(options.Get("--runs"));
    if (options.Has("--f0")) TypeScaled(boxes[BoxId::F0], options.Get("--f0"), "Hz", 1e3);
    if (options.Has("--bw")) TypeScaled(boxes[BoxId::BandWidth], options.Get("--bw"), "Hz", 1e3);
    return repairs;
}

ImageSize PlotSizeOption(const Options& options) {
    ImageSize size;
    const auto read = [&](const char* option, int& value) {
        if (!options.Has(option)) return;
        const std::string& text = options.Get(option);
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size() || value < MinImageSide ||
            value > MaxImageSide) {
            throw UsageError(std::string(option) + ": \"" + text +
                             "\" is not a whole number of pixels from " +
                             std::to_string(MinImageSide) + " to " + std::to_string(MaxImageSide));
        }
    };
    read("--width", size.width);
    read("--height", size.height);
    return size;
}

}  // namespace nerivane::cli
