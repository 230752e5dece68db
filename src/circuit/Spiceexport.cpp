#include "circuit/Spiceexport.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>

#include "numerics/Mathfunctions.h"

namespace nerivane {
namespace {

constexpr double SinglePoleDcGain = 1e5;
constexpr double IdealGain = 1e9;
// The rounding to a standard resistor may move the failure marker by a few ulps.
constexpr double FailMarkerTolerance = 1e-9;

// Seventeen significant digits, always with a '.', whatever the locale: the netlist must
// carry the doubles exactly and read the same in every SPICE.
std::string Number(double x) {
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), x,
                                      std::chars_format::general, 17);
    return std::string(buffer.data(), result.ptr);
}

// The failure marker, or the not-a-number a square root of a negative value leaves.
bool HasNoRealValue(double r) {
    return std::isnan(r) || std::abs(r - FailMarker) <= FailMarker * FailMarkerTolerance;
}

bool HasFailed(const WorkingComponents& c) {
    return HasNoRealValue(c.R1) || HasNoRealValue(c.R2) || HasNoRealValue(c.R3) ||
           HasNoRealValue(c.R4);
}

// Writes one section's subcircuit body, turning the markers of the value calculation into
// what the circuit becomes: open parts and parts the topology lacks are left out, a 0-ohm
// resistor is a wire (a 0 V source, which SPICE solves exactly).
class SectionWriter {
  public:
    explicit SectionWriter(std::string& out) : out_(out) {}

    void Resistor(const char* name, double value, const char* a, const char* b) {
        if (!Usable(name, value)) return;
        if (value >= NotUsedThreshold) return Note(name, "open: left out");
        if (value == 0.0) return Wire(name, "= 0: a wire", a, b);
        Element(name, a, b, value);
    }

    void Capacitor(const char* name, double value, const char* a, const char* b) {
        if (!Usable(name, value)) return;
        if (value >= NotUsedThreshold) return Note(name, "open: left out");
        if (value == 0.0) return Note(name, "= 0: left out");
        Element(name, a, b, value);
    }

    void Wire(const char* name, const char* why, const char* a, const char* b) {
        Note(name, why);
        out_ += std::string("V") + name + " " + a + " " + b + " 0\n";
    }

    // Pins: non-inverting input, inverting input, output.
    void OpAmp(const char* p, const char* m, const char* output) {
        out_ += std::string("Xopamp ") + p + " " + m + " " + output + " opamp\n";
    }

  private:
    // Absent parts vanish silently; a value that is not a number cannot be placed.
    bool Usable(const char* name, double value) {
        if (std::isnan(value)) {
            Note(name, "has no value: left out");
            return false;
        }
        return value >= 0.0;
    }

    void Note(const char* name, const char* text) {
        out_ += std::string("* ") + name + " " + text + "\n";
    }

    void Element(const char* name, const char* a, const char* b, double value) {
        out_ += std::string(name) + " " + a + " " + b + " " + Number(value) + "\n";
    }

    std::string& out_;
};

void WriteVcvsLowPass(SectionWriter& w, const WorkingComponents& c) {
    w.Resistor("R1", c.R1, "in", "a");
    w.Resistor("R2", c.R2, "a", "p");
    w.Capacitor("C1", c.C1, "p", "gnd");
    w.Capacitor("C2", c.C2, "a", "out");
    w.Resistor("R3", c.R3, "m", "gnd");
    w.Resistor("R4", c.R4, "out", "m");
    w.OpAmp("p", "m", "out");
}

void WriteMfbLowPass(SectionWriter& w, const WorkingComponents& c) {
    w.Resistor("R1", c.R1, "in", "a");
    w.Resistor("R2", c.R2, "a", "out");
    w.Resistor("R3", c.R3, "a", "m");
    w.Capacitor("C2", c.C2, "a", "gnd");
    w.Capacitor("C1", c.C1, "m", "out");
    w.OpAmp("gnd", "m", "out");
}

void WriteVcvsHighPass(SectionWriter& w, const WorkingComponents& c) {
    // A first-order section has no series capacitor: its marker stands for a wire.
    if (c.C1 >= NotUsedThreshold) {
        w.Wire("C1", "not used: a wire", "in", "a");
    } else {
        w.Capacitor("C1", c.C1, "in", "a");
    }
    w.Capacitor("C2", c.C2, "a", "p");
    w.Resistor("R2", c.R2, "p", "gnd");
    w.Resistor("R1", c.R1, "a", "out");
    w.Resistor("R3", c.R3, "m", "gnd");
    w.Resistor("R4", c.R4, "out", "m");
    w.OpAmp("p", "m", "out");
}

void WriteMfbHighPass(SectionWriter& w, const WorkingComponents& c) {
    w.Capacitor("C1", c.C1, "in", "a");
    // The open R1 of a first-order section makes a and m one node.
    if (c.R1 >= NotUsedThreshold) {
        w.Wire("C1b", "a wire (R1 open)", "a", "m");
    } else {
        w.Capacitor("C1b", c.C1, "a", "m");
    }
    w.Capacitor("C2", c.C2, "a", "out");
    w.Resistor("R1", c.R1, "a", "gnd");
    w.Resistor("R2", c.R2, "m", "out");
    w.OpAmp("gnd", "m", "out");
}

void WriteVcvsBandPass(SectionWriter& w, const WorkingComponents& c) {
    w.Resistor("R1", c.R1, "in", "a");
    w.Capacitor("C1", c.C1, "a", "gnd");
    w.Capacitor("C1b", c.C1, "a", "p");
    w.Resistor("R3", c.R3, "p", "gnd");
    w.Resistor("R2", c.R2, "a", "out");
    w.Resistor("R4", c.R4, "out", "m");
    w.Resistor("R4b", c.R4, "m", "gnd");
    w.OpAmp("p", "m", "out");
}

void WriteMfbBandPass(SectionWriter& w, const WorkingComponents& c) {
    w.Resistor("R1", c.R1, "in", "a");
    w.Resistor("R2", c.R2, "a", "gnd");
    w.Capacitor("C2", c.C2, "a", "m");
    w.Capacitor("C1", c.C1, "a", "out");
    w.Resistor("R3", c.R3, "m", "out");
    w.OpAmp("gnd", "m", "out");
}

void WriteNotch(SectionWriter& w, const WorkingComponents& c) {
    w.Resistor("R1", c.R1, "in", "a");
    w.Resistor("R2", c.R2, "a", "p");
    w.Capacitor("C2", c.C2, "a", "gnd");
    w.Capacitor("C1", c.C1, "in", "b");
    w.Capacitor("C1b", c.C1, "b", "p");
    w.Resistor("R3", c.R3, "b", "out");
    w.OpAmp("p", "out", "out");
}

struct Topology {
    const char* name;
    void (*write)(SectionWriter&, const WorkingComponents&);
};

constexpr std::array<Topology, 7> Topologies = {{
    {"VCVS low pass (Sallen-Key)", WriteVcvsLowPass},
    {"MFB low pass", WriteMfbLowPass},
    {"VCVS high pass (Sallen-Key, equal capacitors)", WriteVcvsHighPass},
    {"MFB high pass", WriteMfbHighPass},
    {"VCVS band pass (Sallen-Key, stage gain 2)", WriteVcvsBandPass},
    {"MFB band pass", WriteMfbBandPass},
    {"VCVS notch (twin-T, unity-gain follower)", WriteNotch},
}};

std::string OpAmpDescription(const SpiceDesign& design) {
    const std::string ro = Number(design.outputResistance) + " ohms";
    if (design.constantGain) {
        return "constant gain " + Number(*design.constantGain) + ", output resistance " + ro;
    }
    if (design.idealOpAmp) return "ideal, constant gain " + Number(IdealGain) + ", 0 ohms";
    return "single pole, DC gain " + Number(SinglePoleDcGain) + ", GBW " +
           Number(design.gainBandwidth) + " Hz (pole at " +
           Number(design.gainBandwidth / SinglePoleDcGain) + " Hz), output resistance " + ro;
}

// The output stage: the internal node x behind Ro, or the output itself when Ro is 0.
std::string OutputStage(double outputResistance) {
    if (outputResistance <= 0.0) return "out";
    return "x";
}

std::string OutputResistor(double outputResistance) {
    if (outputResistance <= 0.0) return "";
    return "Ro x out " + Number(outputResistance) + "\n";
}

std::string OpAmpSubcircuit(const SpiceDesign& design) {
    std::string s =
        "* The op amp. Pins in this order: non-inverting input, inverting input, output.\n"
        "* Replace this subcircuit by a vendor model with the same pins to simulate a real part\n"
        "* (a model with supply pins needs a wrapper that adds the supplies).\n"
        "* Model: " +
        OpAmpDescription(design) + ".\n.subckt opamp inp inn out\n";
    if (design.constantGain || design.idealOpAmp) {
        const double gain = design.constantGain ? *design.constantGain : IdealGain;
        const double ro = design.constantGain ? design.outputResistance : 0.0;
        s += "Egain " + OutputStage(ro) + " 0 inp inn " + Number(gain) + "\n" + OutputResistor(ro);
    } else {
        // A transconductance into R || C sets the DC gain and the pole; a buffer drives Ro.
        const double ro = design.outputResistance;
        s += "Gpole 0 pole inp inn 1\n";
        s += "Rpole pole 0 " + Number(SinglePoleDcGain) + "\n";
        s += "Cpole pole 0 " + Number(1.0 / (2.0 * Pi * design.gainBandwidth)) + "\n";
        s += "Ebuffer " + OutputStage(ro) + " 0 pole 0 1\n" + OutputResistor(ro);
    }
    return s + ".ends opamp\n";
}

std::string SectionSubcircuit(const Topology& topology, int index, const WorkingComponents& c) {
    const std::string name = "section" + std::to_string(index);
    std::string s = "* Section " + std::to_string(index) + ": " + topology.name + ".\n";
    if (HasFailed(c)) {
        s += "* The values of this section have no real solution; they are written as they "
             "stand.\n";
    }
    s += ".subckt " + name + " in out gnd\n";
    SectionWriter writer(s);
    topology.write(writer, c);
    return s + ".ends " + name + "\n";
}

// SPICE reads the whole first line as the title, so the title must stay on it.
std::string TitleLine(std::string title) {
    std::replace_if(
        title.begin(), title.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return title + "\n";
}

std::string AcLine(const SpiceDesign& design) {
    const int points = std::max(design.points, 1);
    if (design.linearSweep) {
        return ".ac lin " + std::to_string(points) + " " + Number(design.freqMin) + " " +
               Number(design.freqMax) + "\n";
    }
    const double decades = std::log10(design.freqMax / design.freqMin);
    const int perDecade = std::max(1, static_cast<int>(std::ceil(points / decades)));
    return ".ac dec " + std::to_string(perDecade) + " " + Number(design.freqMin) + " " +
           Number(design.freqMax) + "\n";
}

}  // namespace

std::string SpiceNetlist(const SpiceDesign& design, const SectionComponents& parts) {
    const Topology& topology = Topologies.at(static_cast<std::size_t>(design.topology));
    if (design.numSections < 1 || design.numSections > MaxSections) {
        throw std::out_of_range("SpiceNetlist: section count out of range");
    }
    const int n = design.numSections;
    const std::string last = "s" + std::to_string(n - 1);

    std::string s = TitleLine(design.title);
    s += "* " + std::string(topology.name) + ", " + std::to_string(n) + " section" +
         (n == 1 ? "" : "s") + " in cascade.\n";
    s += "* Nodes: the input in (a 1 V AC source), the output of section k is sk; " + last +
         " is the filter's output.\n";
    s += "* Inside a section: in, out, gnd, a, b, p (non-inverting input), m (inverting input).\n";
    s += "* Every op amp is the subcircuit opamp below.\n\n";
    s += OpAmpSubcircuit(design) + "\n";
    for (int i = 0; i < n; ++i) s += SectionSubcircuit(topology, i, parts.Section(i)) + "\n";

    s += "Vin in 0 dc 0 ac 1\n";
    for (int i = 0; i < n; ++i) {
        const std::string input = i == 0 ? "in" : "s" + std::to_string(i - 1);
        s += "X" + std::to_string(i) + " " + input + " s" + std::to_string(i) + " 0 section" +
             std::to_string(i) + "\n";
    }
    s += AcLine(design);
    s += "* A batch run prints the output's magnitude (dB) and phase (radians).\n";
    s += ".print ac vdb(" + last + ") vp(" + last + ")\n";
    return s + ".end\n";
}

}  // namespace nerivane
