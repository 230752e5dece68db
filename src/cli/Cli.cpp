#include "cli/Cli.h"

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
#include "cli/Commandline.h"
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
    int status = 0;
    const std::optional<CommandLine> read = ReadCommandLine(args, batchLine > 0, out, err, status);
    if (!read) return status;
    const Options& options = read->options;
    const bool report = read->report, strict = read->strict;
    if (read->batch && batchLine > 0) {
        err << "nerivane-cli: --batch: not on a batch line\n";
        return 2;
    }
    if (read->batch) return RunBatchOf(args, in, out, err);

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
        settings.build.notchPartsIndependent = read->notchIndependent;
        settings.build.bestStandardValues = read->bestStandard;
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
    if (read->autoCaps) {
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
