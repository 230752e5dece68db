#include "cli/Cli.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <optional>
#include <sstream>

#include "app/Buildoutputs.h"
#include "app/Calculationdriver.h"
#include "app/Capacitorchoice.h"
#include "app/Controlstates.h"
#include "app/Initializevars.h"
#include "app/Optionnames.h"
#include "app/Picturefiles.h"
#include "app/Plotview.h"
#include "app/Requirementorders.h"
#include "cli/Applyoptions.h"
#include "cli/Batch.h"
#include "cli/CliBox.h"
#include "cli/JsonOutput.h"
#include "cli/Outputs.h"
#include "cli/Plotoutput.h"
#include "cli/Rasterplugin.h"
#include "files/Filesaveread.h"
#include "numerics/Matherrmain.h"

namespace nerivane::cli {
namespace {

// Everything a run has to say besides its outputs: the calculation's messages, math errors,
// notes and warnings, each a line on standard error and kept for the JSON's messages.
class Diagnostics : public MathErrorLog {
  public:
    explicit Diagnostics(std::ostream& err) : err_(err) {}
    void Show(const Message& message) {
        err_ << message.caption << ": " << message.text << "\n";
        texts.push_back(message.text);
    }
    void AppendLine(const std::string& line) override { Say("math error: " + line); }
    void Say(const std::string& line) {
        err_ << line << "\n";
        texts.push_back(line);
    }
    std::vector<std::string> texts;

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

const char* const ValueOptions[][2] = {
    {"--open", "Start from the design file FILE (.kq_opamp)"},
    {"--topology", "Circuit: vcvs-lpf, mfb-lpf, vcvs-hpf, mfb-hpf, vcvs-bpf, mfb-bpf, notch"},
    {"--response",
     "Response family: butterworth, chebyshev, papoulis, bessel, gaussian, adjustable-gauss"},
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
    {"--opamp-model",
     "Op-amp model: magnitude (a real gain, the default) or single-pole (with its phase, each "
     "circuit solved on its own nodes)"},
    {"--res-series",
     "Standard resistors: tolerance (the tolerance class's series, the default), e48, e96, e192"},
    {"--r-range", "Practical resistor range MIN,MAX in ohms, for warnings (default 100,10M)"},
    {"--amplitude", "Input amplitude in volts peak, for each stage's slew rate (default 1)"},
    {"--runs", "Worst-case runs (1 to 1000)"},
    {"--mask",
     "Requirement the design is checked against, with the orders that meet it: "
     "fp=1k,ap=1,fs=3k,as=40 (low pass; high pass when fp > fs) or "
     "fp1=9k,fp2=11k,fs1=7k,fs2=14k,ap=1,as=30 (band pass; a notch when fs1 and fs2 lie "
     "between fp1 and fp2; f0=... sets the centre). Attenuation counts from the response's "
     "peak"},
    {"--apply-order",
     "With --mask: design the fewest poles of this family that meet the requirement (a response "
     "name), at the F0 and band width of its row, as the requirement dialog's Apply does"},
    {"--seed", "Seed of the random tolerance draws (default 1)"},
    {"--sweep", "linear, half-to-double, two-octaves, three-octaves, one-decade, two-decades"},
    {"--threshold", "Phase plot threshold in dB"},
    {"--traces", "Traces shown, of mag10, mag1, phase, gd, pulse (default mag10)"},
    {"--mag", "Magnitude scale: db or linear"},
    {"--phase", "Phase trace: plain or hilbert"},
    {"--json", "Write the whole result as JSON to FILE, or - for standard output"},
    {"--csv", "Write the traces as CSV to FILE, or - for standard output"},
    {"--spice", "Write a SPICE netlist of the cascade to FILE, or - for standard output"},
    {"--plot",
     "Draw the plot into FILE: a picture (.png, .bmp) or a vector page (.svg, .pdf) with the "
     "same content"},
    {"--schematic", "Draw the cascade's schematic into FILE (.svg or .png)"},
    {"--bom", "Write the parts list as CSV to FILE, or - for standard output"},
    {"--save", "Save the design file FILE (.kq_opamp), as File > Save As does"},
    {"--width", "Width of the plot in pixels (points on a PDF page), 64 to 4000 (default 800)"},
    {"--height", "Height of the plot in pixels (points on a PDF page), 64 to 4000 (default 500)"},
};

// What a batch line may not ask for: its result is the JSON, on the line standard output gives
// it, so nothing else may go there.
void CheckBatchLine(const Options& options, bool report) {
    if (options.Has("--json")) throw UsageError("--json: a batch line's result is its JSON");
    if (report) throw UsageError("--report: the report is in the batch line's JSON");
    for (const char* output : {"--csv", "--spice", "--bom"})
        if (options.Has(output) && options.Get(output) == "-")
            throw UsageError(std::string(output) +
                             ": standard output carries the batch's results; name a file");
}

// Help and version: the text to standard output, exit status 0 (1 when it cannot be written).
int PrintOnly(const std::string& text, const char* what, std::ostream& out, std::ostream& err) {
    try {
        WriteText("-", text, out, what);
    } catch (const std::exception& e) {
        err << "nerivane-cli: " << e.what() << "\n";
        return 1;
    }
    return 0;
}

int RunDesign(const std::vector<std::string>& args, int batchLine, std::istream& in,
              std::ostream& out, std::ostream& err);

// Every line runs as a design of its own, so nothing one line sets reaches the next.
int RunBatchOf(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
               std::ostream& err) {
    if (args.size() > 2) {
        err << "nerivane-cli: --batch: the designs come from standard input, one a line; give "
               "their options there\n";
        return 2;
    }
    return RunBatch(
        in, out, err,
        [&in](const std::vector<std::string>& lineArgs, int line, std::ostream& lineOut,
              std::ostream& lineErr) { return RunDesign(lineArgs, line, in, lineOut, lineErr); });
}

int RunDesign(const std::vector<std::string>& args, int batchLine, std::istream& in,
              std::ostream& out, std::ostream& err) {
    CLI::App app{"Designs an active op-amp filter and writes what is asked for.", "nerivane-cli"};
    std::map<std::string, std::string> given;
    for (const auto& [name, help] : ValueOptions) app.add_option(name, given[name], help);
    bool report = false;
    app.add_flag("--report", report, "Write the circuit values report to standard output");
    app.footer(
        "An option that stands for one of the window's boxes (poles, frequencies, gain, ripple,\n"
        "gamma, capacitors, op amp, runs, threshold) is read as the box reads typing: a value\n"
        "it cannot take is replaced as the box replaces it, with a warning on standard error\n"
        "(exit 0; --strict makes it exit 2). Any other option that cannot be read is a usage\n"
        "error (exit 2). Exit status: 0 done, 1 a file could not be read or written, 2 usage.");
    bool autoCaps = false;
    app.add_flag("--auto-caps", autoCaps,
                 "Choose each section's capacitors from the capacitor series so that its "
                 "resistors sit nearest the middle of the practical range");
    bool notchIndependent = false;
    app.add_flag("--notch-independent", notchIndependent,
                 "Worst-case runs vary each of the notch's resistors and capacitors on its own");
    bool bestStandard = false;
    app.add_flag("--best-std", bestStandard,
                 "In standard and worst-case modes, try each section's resistors at the standard "
                 "values below and above their exact ones together and keep the combination "
                 "whose f0 and Q come nearest the exact design's, instead of rounding each "
                 "resistor alone; the report and the JSON give each section's errors before and "
                 "after");
    app.set_version_flag("--version", "nerivane-cli " NERIVANE_VERSION,
                         "Print the program's name and version and exit");
    bool strict = false;
    app.add_flag("--strict", strict,
                 "Treat every warning, note or message as a usage error: exit 2, write nothing");
    bool batch = false;
    app.add_flag("--batch", batch,
                 "Read one design a line from standard input, as a JSON object of these options "
                 "without their dashes ({\"poles\": 20, \"f0\": \"5k\"}) or as options "
                 "(--poles 20 --f0 5k), and write each one's JSON result on a line of its own, "
                 "in order, with \"line\" its input line; a line that fails gives "
                 "{\"line\", \"error\", \"exit_status\"} and the batch goes on");

    // As a program's arguments, so that a message lists them in the order they were given.
    std::vector<const char*> argv;
    for (const std::string& arg : args) argv.push_back(arg.c_str());
    try {
        app.parse(static_cast<int>(argv.size()), argv.data());
    } catch (const CLI::ExtrasError&) {
        // The parser lists what it could not place last first; say it in the order typed.
        std::string extras;
        for (const std::string& extra : app.remaining()) extras += " " + extra;
        err << "nerivane-cli: not an option or a value of one:" << extras << "\n";
        return 2;
    } catch (const CLI::CallForHelp&) {
        if (batchLine > 0) {
            err << "nerivane-cli: --help: not on a batch line\n";
            return 2;
        }
        return PrintOnly(app.help(), "help", out, err);
    } catch (const CLI::CallForVersion& version) {
        if (batchLine > 0) {
            err << "nerivane-cli: --version: not on a batch line\n";
            return 2;
        }
        return PrintOnly(std::string(version.what()) + "\n", "version", out, err);
    } catch (const CLI::ParseError& e) {
        err << "nerivane-cli: " << e.what() << "\n";
        return 2;
    }
    if (batch && batchLine > 0) {
        err << "nerivane-cli: --batch: not on a batch line\n";
        return 2;
    }
    if (batch) return RunBatchOf(args, in, out, err);
    Options options;
    for (const auto& [name, help] : ValueOptions) {
        if (app.count(name)) options.values[name] = given[name];
    }

    DesignState state = DefaultDesignState();
    auto boxes = std::make_unique<CliBoxes>();
    ComponentSettings settings;
    std::uint32_t seed = 1;
    ImageSize plotSize;
    std::vector<std::string> fileRepairs;
    if (options.Has("--open")) {
        try {
            fileRepairs = OpenDesign(options.Get("--open"), state, *boxes, settings);
        } catch (const std::runtime_error& e) {
            err << "nerivane-cli: " << e.what() << "\n";
            return 1;
        }
    }
    std::vector<Repair> capacitorRepairs;
    std::optional<RequirementMask> mask;
    std::optional<int> family;  // of --apply-order
    try {
        if (batchLine > 0) CheckBatchLine(options, report);
        if (options.Has("--mask")) {
            const ParsedMask parsed = ParseMask(options.Get("--mask"));
            if (!parsed.mask) throw UsageError("--mask: " + parsed.problem);
            mask = parsed.mask;
        }
        if (options.Has("--apply-order")) {
            if (!mask) throw UsageError("--apply-order: needs a requirement (--mask)");
            family = IndexOfName(ResponseNames, options.Get("--apply-order"));
            if (!family)
                throw UsageError("--apply-order: \"" + options.Get("--apply-order") +
                                 "\" is not one of " + JoinNames(ResponseNames));
        }
        capacitorRepairs = ApplyOptions(options, state, *boxes, settings);
        settings.build.notchPartsIndependent = notchIndependent;
        settings.build.bestStandardValues = bestStandard;
        if (options.Has("--seed")) seed = SeedOption(options);
        plotSize = PlotSizeOption(options);
        if (options.Has("--plot") && !IsPlotFileName(options.Get("--plot")))
            throw UsageError("--plot: \"" + options.Get("--plot") +
                             "\" does not end in .png, .bmp, .svg or .pdf");
        if (options.Has("--schematic") && !IsSchematicFileName(options.Get("--schematic")))
            throw UsageError("--schematic: \"" + options.Get("--schematic") +
                             "\" does not end in .svg or .png");
    } catch (const UsageError& e) {
        err << "nerivane-cli: " << e.what() << "\n";
        return 2;
    }

    Diagnostics diagnostics(err);
    ScopedInstall<MathErrorLog, InstallMathErrorLog> mathErrorScope(&diagnostics);

    auto results = std::make_unique<DesignResults>();
    if (family) {
        // The search reads the design's ripple and gamma as the boxes give them.
        ToleranceRandom scratch(seed);
        Calculate(state, boxes->Parameters(), settings, *results, scratch, {true, nullptr});
        const std::vector<OrderRow> rows = RequirementOrders(OrderSearchFor(*mask, state));
        const auto row = std::find_if(rows.begin(), rows.end(), [&](const OrderRow& r) {
            return Index(r.family) == *family;
        });
        if (row != rows.end() && row->Meets())
            ApplyOrderRow(*row, mask->kind, state, boxes->Parameters());
        else
            diagnostics.Say("warning: --apply-order: no " + options.Get("--apply-order") +
                            " order meets the requirement; the design is left as it was");
    }
    const ControlStates controls = UpdateControlStates(state);
    std::unique_ptr<PlotOutput> plot;
    try {
        if (options.Has("--plot"))
            plot = std::make_unique<PlotOutput>(plotSize, options.Get("--plot"));
    } catch (const std::runtime_error& e) {
        err << "nerivane-cli: " << e.what() << "\n";
        return 1;
    }
    CalculationOptions calculation;
    calculation.mask = mask ? &*mask : nullptr;
    calculation.perRun = [&](int run, const Traces& traces) {
        if (plot) {
            PlotView view = PlotViewFor(state, controls, *results, plotSize.width, plotSize.height);
            if (run > 0) view.groupDelayScale = results->traces.groupDelayScale;
            plot->DrawRun(view, traces, run == 0);
        }
    };
    if (autoCaps) {
        // The prototype comes from a calculation; the capacitors then go into the real one.
        ToleranceRandom scratch(seed);
        Calculate(state, boxes->Parameters(), settings, *results, scratch, {true, nullptr});
        ChooseCapacitors(state, settings);
    }
    ToleranceRandom random(seed);
    Calculate(state, boxes->Parameters(), settings, *results, random, calculation);
    const bool worstCase = state.Tolerance == ToleranceMode::WorstCase;
    if (plot && worstCase) {
        PlotView view = PlotViewFor(state, controls, *results, plotSize.width, plotSize.height);
        plot->DrawEnvelope(view, results->envelope);
    }
    std::vector<OrderRow> orders;
    const OrderSearch search = mask ? OrderSearchFor(*mask, state) : OrderSearch{};
    if (mask) orders = RequirementOrders(search);

    for (const Message& message : results->messages) diagnostics.Show(message);
    CliOutcome outcome{state,  *results,         settings, worstCase,
                       orders, capacitorRepairs, {},       batchLine};
    for (const BoxRule& rule : BoxRules()) {
        const CliBox& box = (*boxes)[rule.id];
        if (rule.adjusted && box.Repaired())
            outcome.repairs.push_back({rule.name, box.Typed(), box.Text()});
    }
    for (const std::string& repair : fileRepairs)
        diagnostics.Say("warning: " + options.Get("--open") + ": " + repair);
    for (const Repair& repair : outcome.repairs)
        diagnostics.Say("warning: " + repair.box + ": \"" + repair.typed + "\" replaced by \"" +
                        repair.repaired + "\"");
    for (const auto* notes : {&results->reportNotes, &results->capacitorNotes})
        for (const std::string& note : *notes) diagnostics.Say("note: " + note);
    for (const std::string& warning : results->checks.warnings)
        diagnostics.Say("warning: " + warning);
    outcome.messages = diagnostics.texts;
    if (strict && !outcome.messages.empty()) {
        err << "nerivane-cli: --strict: the run had " << outcome.messages.size()
            << " warning(s), note(s) or message(s); nothing written\n";
        return 2;
    }

    try {
        // A batch line's result: the batch puts it out only if the line's files are written
        // too, so that a line has one result, its JSON or its error.
        if (batchLine > 0)
            WriteText(
                "-",
                [&outcome](const PieceWriter& write) {
                    WriteResultJson(outcome, write, JsonLayout::OneLine);
                },
                out, "JSON");
        const bool anyOutput = batchLine > 0 || report || options.Has("--json") ||
                               options.Has("--csv") || options.Has("--spice") ||
                               options.Has("--plot") || options.Has("--schematic") ||
                               options.Has("--bom") || options.Has("--save");
        if (report || !anyOutput) {
            std::string text = ReportText(*results);
            if (mask)
                for (const std::string& line : OrderTableLines(orders, search.maxPoles))
                    text += line + "\n";
            WriteText("-", text, out, "report");
        }
        if (options.Has("--json"))
            WriteText(
                options.Get("--json"),
                [&outcome](const PieceWriter& write) { WriteResultJson(outcome, write); }, out,
                "JSON");
        if (options.Has("--csv"))
            WriteText(options.Get("--csv"), CsvText(*results, worstCase), out, "CSV");
        if (options.Has("--spice"))
            WriteText(options.Get("--spice"), DesignSpiceNetlist(state, *results, settings), out,
                      "SPICE");
        if (plot) plot->Save();
        if (options.Has("--schematic"))
            SaveSchematic(DesignSchematic(state, *results, ProposedFileName(state)),
                          options.Get("--schematic"), MakePluginRaster);
        if (options.Has("--bom"))
            WriteText(options.Get("--bom"),
                      PartsListCsv(DesignPartsList(state, *results, settings)), out, "parts list");
        if (options.Has("--save")) {
            const std::string path = WithDesignExtension(options.Get("--save"));
            std::string reason;
            if (!WriteDesignFile(path, state, &reason))
                throw std::runtime_error(SaveFailedText(path, reason));
        }
    } catch (const std::exception& e) {
        err << "nerivane-cli: " << e.what() << "\n";
        return 1;
    }
    return 0;
}

}  // namespace

int RunCli(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
           std::ostream& err) {
    return RunDesign(args, 0, in, out, err);
}

int RunCli(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    std::istringstream nothing;
    return RunCli(args, nothing, out, err);
}

}  // namespace nerivane::cli
