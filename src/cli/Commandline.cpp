#include "cli/Commandline.h"

#include <CLI/CLI.hpp>

#include "cli/Outputs.h"

namespace nerivane::cli {
namespace {

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

// The parser and the variables it fills, which a parse sets only for the words given.
class Parser {
  public:
    Parser();
    CLI::App app{"Designs an active op-amp filter and writes what is asked for.", "nerivane-cli"};
    std::map<std::string, std::string> given;
    CommandLine read;
};

Parser::Parser() {
    for (const auto& [name, help] : ValueOptions) app.add_option(name, given[name], help);
    app.add_flag("--report", read.report, "Write the circuit values report to standard output");
    app.footer(
        "An option that stands for one of the window's boxes (poles, frequencies, gain, ripple,\n"
        "gamma, capacitors, op amp, runs, threshold) is read as the box reads typing: a value\n"
        "it cannot take is replaced as the box replaces it, with a warning on standard error\n"
        "(exit 0; --strict makes it exit 2). Any other option that cannot be read is a usage\n"
        "error (exit 2). Exit status: 0 done, 1 a file could not be read or written, 2 usage.");
    app.add_flag("--auto-caps", read.autoCaps,
                 "Choose each section's capacitors from the capacitor series so that its "
                 "resistors sit nearest the middle of the practical range");
    app.add_flag("--notch-independent", read.notchIndependent,
                 "Worst-case runs vary each of the notch's resistors and capacitors on its own");
    app.add_flag("--best-std", read.bestStandard,
                 "In standard and worst-case modes, try each section's resistors at the standard "
                 "values below and above their exact ones together and keep the combination "
                 "whose f0 and Q come nearest the exact design's, instead of rounding each "
                 "resistor alone; the report and the JSON give each section's errors before and "
                 "after");
    app.set_version_flag("--version", "nerivane-cli " NERIVANE_VERSION,
                         "Print the program's name and version and exit");
    app.add_flag("--strict", read.strict,
                 "Treat every warning, note or message as a usage error: exit 2, write nothing");
    app.add_flag("--batch", read.batch,
                 "Read one design a line from standard input, as a JSON object of these options "
                 "without their dashes ({\"poles\": 20, \"f0\": \"5k\"}) or as options "
                 "(--poles 20 --f0 5k), and write each one's JSON result on a line of its own, "
                 "in order, with \"line\" its input line; a line that fails gives "
                 "{\"line\", \"error\", \"exit_status\"} and the batch goes on");
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

}  // namespace

std::optional<CommandLine> ReadCommandLine(const std::vector<std::string>& args, bool batchLine,
                                           std::ostream& out, std::ostream& err, int& status) {
    thread_local Parser parser;
    parser.read = CommandLine{};
    // As a program's arguments, so that a message lists them in the order they were given.
    std::vector<const char*> argv;
    for (const std::string& arg : args) argv.push_back(arg.c_str());
    status = 2;
    try {
        parser.app.parse(static_cast<int>(argv.size()), argv.data());
    } catch (const CLI::ExtrasError&) {
        // The parser lists what it could not place last first; say it in the order typed.
        std::string extras;
        for (const std::string& extra : parser.app.remaining()) extras += " " + extra;
        err << "nerivane-cli: not an option or a value of one:" << extras << "\n";
        return std::nullopt;
    } catch (const CLI::CallForHelp&) {
        if (batchLine) {
            err << "nerivane-cli: --help: not on a batch line\n";
            return std::nullopt;
        }
        status = PrintOnly(parser.app.help(), "help", out, err);
        return std::nullopt;
    } catch (const CLI::CallForVersion& version) {
        if (batchLine) {
            err << "nerivane-cli: --version: not on a batch line\n";
            return std::nullopt;
        }
        status = PrintOnly(std::string(version.what()) + "\n", "version", out, err);
        return std::nullopt;
    } catch (const CLI::ParseError& e) {
        err << "nerivane-cli: " << e.what() << "\n";
        return std::nullopt;
    }
    for (const auto& [name, help] : ValueOptions)
        if (parser.app.count(name)) parser.read.options.values[name] = parser.given[name];
    status = 0;
    return parser.read;
}

}  // namespace nerivane::cli
