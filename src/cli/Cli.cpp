#include "cli/Cli.h"

#include <CLI/CLI.hpp>
#include <fstream>
#include <iomanip>

#include "app/Calculationdriver.h"
#include "app/Initializevars.h"
#include "cli/CliBox.h"
#include "cli/JsonOutput.h"
#include "cli/Names.h"
#include "numerics/Matherrmain.h"
#include "numerics/MessageSink.h"

namespace nerivane::cli {
namespace {

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

// Installs a sink for the life of one run and restores the previous state afterwards, so
// that in-process callers (tests) are left as they were.
template <typename Sink, void (*Install)(Sink*)>
class ScopedInstall {
  public:
    explicit ScopedInstall(Sink* sink) { Install(sink); }
    ~ScopedInstall() { Install(nullptr); }
    ScopedInstall(const ScopedInstall&) = delete;
    ScopedInstall& operator=(const ScopedInstall&) = delete;
};

struct Options {
    std::string response;
    std::string poles;
    std::string ripple;
    std::string gamma;
    std::string jsonPath;
};

void WriteJson(const std::string& path, const nlohmann::json& document, std::ostream& out) {
    const std::string text = document.dump(2) + "\n";
    if (path == "-") {
        out << text;
        return;
    }
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file) throw std::runtime_error("Cannot write the JSON file \"" + path + "\".");
}

void WritePrototypeListing(const DesignState& state, const CalculationResult& result,
                           std::ostream& out) {
    const ProtoSections& p = state.Sections;
    out << std::setprecision(6);
    for (int i = 0; i < result.prototype.sectionCount; ++i) {
        out << "Section " << i << ": (" << p.NumS2[i] << " s^2 + " << p.NumS1[i] << " s + "
            << p.NumS0[i] << ") / (" << p.DenS2[i] << " s^2 + " << p.DenS1[i] << " s + "
            << p.DenS0[i] << ")  damping " << SectionDamping(p, i) << "\n";
    }
}

}  // namespace

int RunCli(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    CLI::App app{"Designs an active op-amp filter and writes what is asked for.", "nerivane-cli"};
    Options options;
    app.add_option("--response", options.response, "Response family: " + JoinNames(ResponseNames));
    app.add_option("--poles", options.poles, "Number of poles (1 to 20; 10 for band pass)");
    app.add_option("--ripple", options.ripple, "Pass-band ripple in dB (Chebyshev, Papoulis)");
    app.add_option("--gamma", options.gamma, "Adjustable Gauss argument, -1 to 1");
    app.add_option("--json", options.jsonPath, "Write the result as JSON to FILE, or - for stdout");

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

    DesignState state = DefaultDesignState();
    CliBox numPoles("NumPolesBox", DefaultNumPolesText);
    CliBox ripple("RippleBox", DefaultRippleText);
    CliBox gamma("GammaBox", DefaultGammaText);
    CliBox threshold("PhaseThresholdBox", DefaultPhaseThresholdText);

    if (app.count("--response")) {
        const std::optional<int> index = IndexOfName(ResponseNames, options.response);
        if (!index) {
            err << "nerivane-cli: --response: \"" << options.response << "\" is not one of "
                << JoinNames(ResponseNames) << "\n";
            return 2;
        }
        state.ResponseIndex = *index;
    }
    if (app.count("--poles")) numPoles.Type(options.poles);
    if (app.count("--ripple")) ripple.Type(options.ripple);
    if (app.count("--gamma")) gamma.Type(options.gamma);

    CliMessageSink messages(err);
    CliMathErrorLog mathErrors(err);
    ScopedInstall<MessageSink, InstallMessageSink> messageScope(&messages);
    ScopedInstall<MathErrorLog, InstallMathErrorLog> mathErrorScope(&mathErrors);

    ParameterBoxes boxes{numPoles, ripple, gamma, threshold};
    const CalculationResult result = Calculate(state, boxes);

    std::vector<Repair> repairs;
    for (const CliBox* box : {&numPoles, &ripple, &gamma, &threshold}) {
        if (!box->Repaired()) continue;
        repairs.push_back({box->Name(), box->Typed(), box->Text()});
        err << "warning: " << box->Name() << ": \"" << box->Typed() << "\" replaced by \""
            << box->Text() << "\"\n";
    }
    std::vector<std::string> messageTexts = messages.texts;
    for (const std::string& note : result.reportNotes) {
        err << "note: " << note << "\n";
        messageTexts.push_back(note);
    }

    try {
        if (app.count("--json")) {
            WriteJson(options.jsonPath, ResultJson(state, result, repairs, messageTexts), out);
        } else {
            WritePrototypeListing(state, result, out);
        }
    } catch (const std::exception& e) {
        err << "nerivane-cli: " << e.what() << "\n";
        return 1;
    }
    return 0;
}

}  // namespace nerivane::cli
