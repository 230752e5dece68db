#include "circuit/Spiceexport.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>

#include "circuit/Sectionchains.h"
#include "circuit/Sectioncircuits.h"
#include "numerics/Mathfunctions.h"

namespace nerivane {
namespace {

// Seventeen significant digits, always with a '.', whatever the locale: the netlist must
// carry the doubles exactly and read the same in every SPICE.
std::string Number(double x) {
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), x,
                                      std::chars_format::general, 17);
    return std::string(buffer.data(), result.ptr);
}

std::string Note(const CircuitPart& part, const std::string& text) {
    return std::string("* ") + part.name + " " + text + "\n";
}

// One part as its condition makes it: a placed element, a wire (a 0 V source, which SPICE
// solves exactly), or a note that it is left out. A value without a real solution is written
// as it stands, so the netlist still runs.
std::string PartLine(const CircuitPart& part, const WorkingComponents& values) {
    const PartCondition condition = ConditionOf(part, values);
    const char* a = NodeName(part.from);
    const char* b = NodeName(part.to);
    switch (condition.state) {
        case PartState::Placed:
        case PartState::NoSolution:
            return std::string(part.name) + " " + a + " " + b + " " +
                   Number(ValueOf(values, part.value)) + "\n";
        case PartState::Wire:
            return Note(part, std::string(condition.reason) + ": a wire") + "V" + part.name + " " +
                   a + " " + b + " 0\n";
        case PartState::LeftOut:
        case PartState::NoValue: return Note(part, std::string(condition.reason) + ": left out");
        case PartState::Absent: return "";
    }
    return "";
}

// The op amp the program simulates: an ideal one is its 100 MHz, 0 ohm part.
SpiceDesign WithProgramOpAmp(SpiceDesign design) {
    if (design.idealOpAmp && !design.constantGain) {
        design.gainBandwidth = 1e8;
        design.outputResistance = 0.0;
    }
    return design;
}

std::string OpAmpDescription(const SpiceDesign& design) {
    const std::string ro = Number(design.outputResistance) + " ohms";
    if (design.constantGain) {
        return "constant gain " + Number(*design.constantGain) + ", output resistance " + ro;
    }
    const SinglePoleOpAmp pole = SinglePoleOf(design.gainBandwidth);
    return std::string(design.idealOpAmp ? "the ideal op amp as simulated: " : "") +
           "single pole, DC gain " + Number(pole.dcGain) + ", GBW " + Number(design.gainBandwidth) +
           " Hz (pole at " + Number(pole.poleHz) + " Hz), output resistance " + ro;
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
    const double ro = design.outputResistance;
    if (design.constantGain) {
        s += "Egain " + OutputStage(ro) + " 0 inp inn " + Number(*design.constantGain) + "\n" +
             OutputResistor(ro);
    } else {
        // A transconductance into R || C sets the DC gain and the pole (the same gain-bandwidth
        // product and magnitude as the program's op amp); a buffer drives Ro.
        const SinglePoleOpAmp pole = SinglePoleOf(design.gainBandwidth);
        s += "Gpole 0 pole inp inn 1\n";
        s += "Rpole pole 0 " + Number(pole.dcGain) + "\n";
        s += "Cpole pole 0 " + Number(1.0 / (2.0 * Pi * pole.poleHz * pole.dcGain)) + "\n";
        s += "Ebuffer " + OutputStage(ro) + " 0 pole 0 1\n" + OutputResistor(ro);
    }
    return s + ".ends opamp\n";
}

std::string SectionSubcircuit(const SectionCircuit& circuit, int index,
                              const WorkingComponents& values) {
    const std::string name = "section" + std::to_string(index);
    std::string s = "* Section " + std::to_string(index) + ": " + circuit.title + ".\n";
    if (SectionHasFailed(values)) {
        s += "* The values of this section have no real solution; they are written as they "
             "stand.\n";
    }
    s += ".subckt " + name + " in out gnd\n";
    for (const CircuitPart& part : circuit.Parts()) s += PartLine(part, values);
    // Pins: non-inverting input, inverting input, output.
    s += std::string("Xopamp ") + NodeName(circuit.opAmp.plus) + " " +
         NodeName(circuit.opAmp.minus) + " " + NodeName(circuit.opAmp.output) + " opamp\n";
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

std::string SpiceNetlist(const SpiceDesign& asGiven, const SectionComponents& parts) {
    const SpiceDesign design = WithProgramOpAmp(asGiven);
    const SectionCircuit& circuit = CircuitOf(design.topology);
    if (design.numSections < 1 || design.numSections > MaxSections) {
        throw std::out_of_range("SpiceNetlist: section count out of range");
    }
    const int n = design.numSections;
    const std::string last = "s" + std::to_string(n - 1);

    std::string s = TitleLine(design.title);
    s += "* " + std::string(circuit.title) + ", " + std::to_string(n) + " section" +
         (n == 1 ? "" : "s") + " in cascade.\n";
    s += "* Nodes: the input in (a 1 V AC source), the output of section k is sk; " + last +
         " is the filter's output.\n";
    s += "* Inside a section: in, out, gnd, a, b, p (non-inverting input), m (inverting input).\n";
    s += "* Every op amp is the subcircuit opamp below.\n\n";
    s += OpAmpSubcircuit(design) + "\n";
    for (int i = 0; i < n; ++i) s += SectionSubcircuit(circuit, i, parts.Section(i)) + "\n";

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
