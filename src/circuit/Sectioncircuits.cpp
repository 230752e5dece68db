#include "circuit/Sectioncircuits.h"

#include <array>
#include <cmath>
#include <stdexcept>

namespace nerivane {
namespace {

// The rounding to a standard resistor may move the failure marker by a few ulps.
constexpr double FailMarkerTolerance = 1e-9;

CircuitPart Part(const char* name, PartValue value, Node from, Node to, GridPath path,
                 int symbolSegment, LabelSide label) {
    const PartKind kind =
        value == PartValue::C1 || value == PartValue::C2 ? PartKind::Capacitor : PartKind::Resistor;
    return {name, kind, value, from, to, false, {path, symbolSegment, label}};
}

void Add(SectionCircuit& circuit, const CircuitPart& part) {
    circuit.parts[circuit.partCount++] = part;
}

void Add(SectionCircuit& circuit, Node node, GridPath path) {
    circuit.wires[circuit.wireCount++] = {node, path};
}

// The non-inverting stages (low pass, high pass, band pass): a series part from the input to
// a, a second from a to the non-inverting input p with its shunt from p to ground, a
// feedback part from a over the top to the output, and the gain pair R4 (out to m) and R3
// (m to ground) below the op amp.
struct NonInvertingParts {
    const char* inputName;
    PartValue inputValue;
    const char* seriesName;
    PartValue seriesValue;
    const char* shuntName;
    PartValue shuntValue;
    const char* feedbackName;
    PartValue feedbackValue;
    const char* gainToGroundName;  // R3, or the band pass's second R4
    PartValue gainToGroundValue;
};

SectionCircuit NonInvertingStage(const char* title, const char* picture,
                                 const NonInvertingParts& p) {
    SectionCircuit c{};
    c.title = title;
    c.pictureName = picture;
    Add(c, Part(p.inputName, p.inputValue, Node::In, Node::A, PathThrough({{0, 8}, {8, 8}}), 0,
                LabelSide::Above));
    Add(c, Part(p.seriesName, p.seriesValue, Node::A, Node::P, PathThrough({{8, 8}, {16, 8}}), 0,
                LabelSide::Above));
    Add(c, Part(p.shuntName, p.shuntValue, Node::P, Node::Gnd, PathThrough({{16, 8}, {16, 13}}), 0,
                LabelSide::Left));
    Add(c, Part(p.feedbackName, p.feedbackValue, Node::A, Node::Out,
                PathThrough({{8, 8}, {8, 3}, {28, 3}, {28, 10}}), 1, LabelSide::Above));
    Add(c, Part("R4", PartValue::R4, Node::Out, Node::M,
                PathThrough({{28, 10}, {28, 16}, {19, 16}}), 1, LabelSide::Below));
    Add(c, Part(p.gainToGroundName, p.gainToGroundValue, Node::M, Node::Gnd,
                PathThrough({{19, 16}, {19, 21}}), 0, LabelSide::Left));
    c.opAmp = {Node::P, Node::M, Node::Out};
    c.opAmpPlacement = {{19, 10}, true};
    Add(c, Node::P, PathThrough({{16, 8}, {19, 8}}));
    Add(c, Node::M, PathThrough({{19, 12}, {19, 16}}));
    Add(c, Node::Out, PathThrough({{25, 10}, {31, 10}}));
    c.input = {0, 8};
    c.output = {31, 10};
    c.extent = {32, 23};
    return c;
}

// The inverting stages: a series part from the input to a, a shunt from a to ground, a
// second series part from a to the inverting input m, an inner feedback part from m and an
// outer one from a, both to the output; the non-inverting input is grounded.
struct InvertingParts {
    const char* inputName;
    PartValue inputValue;
    const char* shuntName;
    PartValue shuntValue;
    const char* seriesName;
    PartValue seriesValue;
    const char* innerName;
    PartValue innerValue;
    const char* outerName;
    PartValue outerValue;
};

SectionCircuit InvertingStage(const char* title, const char* picture, const InvertingParts& p) {
    SectionCircuit c{};
    c.title = title;
    c.pictureName = picture;
    Add(c, Part(p.inputName, p.inputValue, Node::In, Node::A, PathThrough({{0, 13}, {8, 13}}), 0,
                LabelSide::Above));
    Add(c, Part(p.shuntName, p.shuntValue, Node::A, Node::Gnd, PathThrough({{8, 13}, {8, 18}}), 0,
                LabelSide::Left));
    Add(c, Part(p.seriesName, p.seriesValue, Node::A, Node::M, PathThrough({{8, 13}, {16, 13}}), 0,
                LabelSide::Above));
    Add(c, Part(p.innerName, p.innerValue, Node::M, Node::Out,
                PathThrough({{16, 13}, {16, 8}, {28, 8}, {28, 15}}), 1, LabelSide::Above));
    Add(c, Part(p.outerName, p.outerValue, Node::A, Node::Out,
                PathThrough({{8, 13}, {8, 3}, {30, 3}, {30, 15}}), 1, LabelSide::Above));
    c.opAmp = {Node::Gnd, Node::M, Node::Out};
    c.opAmpPlacement = {{19, 15}, false};
    Add(c, Node::M, PathThrough({{16, 13}, {19, 13}}));
    Add(c, Node::Gnd, PathThrough({{19, 17}, {17, 17}, {17, 19}}));
    Add(c, Node::Out, PathThrough({{25, 15}, {33, 15}}));
    c.grounds[c.groundCount++] = {17, 19};
    c.input = {0, 13};
    c.output = {33, 15};
    c.extent = {34, 21};
    return c;
}

// Twin T from the input to p: R1, R2 with C2 to ground above; C1, C1 with R3 to the output
// below, which bootstraps the lower T. The op amp follows p.
SectionCircuit Notch() {
    SectionCircuit c{};
    c.title = "VCVS notch (twin-T, unity-gain follower)";
    c.pictureName = "NOTCH.bmp";
    Add(c, Part("R1", PartValue::R1, Node::In, Node::A, PathThrough({{2, 9}, {2, 3}, {10, 3}}), 1,
                LabelSide::Above));
    Add(c, Part("R2", PartValue::R2, Node::A, Node::P, PathThrough({{10, 3}, {18, 3}, {18, 9}}), 0,
                LabelSide::Above));
    Add(c, Part("C2", PartValue::C2, Node::A, Node::Gnd, PathThrough({{10, 3}, {10, 8}}), 0,
                LabelSide::Left));
    Add(c, Part("C1", PartValue::C1, Node::In, Node::B, PathThrough({{2, 9}, {2, 15}, {10, 15}}), 1,
                LabelSide::Below));
    Add(c, Part("C1b", PartValue::C1, Node::B, Node::P, PathThrough({{10, 15}, {18, 15}, {18, 9}}),
                0, LabelSide::Below));
    Add(c, Part("R3", PartValue::R3, Node::B, Node::Out,
                PathThrough({{10, 15}, {10, 21}, {28, 21}, {28, 17}}), 1, LabelSide::Below));
    c.opAmp = {Node::P, Node::Out, Node::Out};
    c.opAmpPlacement = {{21, 11}, true};
    Add(c, Node::In, PathThrough({{0, 9}, {2, 9}}));
    Add(c, Node::P, PathThrough({{18, 9}, {21, 9}}));
    Add(c, Node::Out, PathThrough({{21, 13}, {21, 17}, {28, 17}}));
    Add(c, Node::Out, PathThrough({{28, 17}, {28, 11}}));
    Add(c, Node::Out, PathThrough({{27, 11}, {31, 11}}));
    c.input = {0, 9};
    c.output = {31, 11};
    c.extent = {32, 24};
    return c;
}

std::array<SectionCircuit, TopologyCount> BuildCircuits() {
    using V = PartValue;
    std::array<SectionCircuit, TopologyCount> circuits{};
    circuits[Index(Topology::VcvsLowPass)] =
        NonInvertingStage("VCVS low pass (Sallen-Key)", "VCVS_LPF.bmp",
                          {"R1", V::R1, "R2", V::R2, "C1", V::C1, "C2", V::C2, "R3", V::R3});
    circuits[Index(Topology::MfbLowPass)] =
        InvertingStage("MFB low pass", "MFB_LPF.bmp",
                       {"R1", V::R1, "C2", V::C2, "R3", V::R3, "C1", V::C1, "R2", V::R2});
    circuits[Index(Topology::VcvsHighPass)] =
        NonInvertingStage("VCVS high pass (Sallen-Key, equal capacitors)", "VCVS_HPF.bmp",
                          {"C1", V::C1, "C2", V::C2, "R2", V::R2, "R1", V::R1, "R3", V::R3});
    circuits[Index(Topology::VcvsHighPass)].parts[0].wiredWhenR1Open = true;
    circuits[Index(Topology::MfbHighPass)] =
        InvertingStage("MFB high pass", "MFB_HPF.bmp",
                       {"C1", V::C1, "R1", V::R1, "C1b", V::C1, "R2", V::R2, "C2", V::C2});
    circuits[Index(Topology::MfbHighPass)].parts[2].wiredWhenR1Open = true;
    circuits[Index(Topology::VcvsBandPass)] =
        NonInvertingStage("VCVS band pass (Sallen-Key, stage gain 2)", "VCVS_BPF.bmp",
                          {"R1", V::R1, "C1b", V::C1, "R3", V::R3, "R2", V::R2, "R4b", V::R4});
    // The band pass's second C1 runs from a to ground beside the input resistor.
    Add(circuits[Index(Topology::VcvsBandPass)],
        Part("C1", V::C1, Node::A, Node::Gnd, PathThrough({{8, 8}, {8, 13}}), 0, LabelSide::Left));
    circuits[Index(Topology::MfbBandPass)] =
        InvertingStage("MFB band pass", "MFB_BPF.bmp",
                       {"R1", V::R1, "R2", V::R2, "C2", V::C2, "R3", V::R3, "C1", V::C1});
    circuits[Index(Topology::VcvsNotch)] = Notch();
    constexpr const char* HelpPages[TopologyCount] = {"VCVS_LPF.md", "MFB_LPF.md",  "VCVS_HPF.md",
                                                      "MFB_HPF.md",  "VCVS_BPF.md", "MFB_BPF.md",
                                                      "NOTCH.md"};
    for (int t = 0; t < TopologyCount; ++t) circuits[t].helpPage = HelpPages[t];
    return circuits;
}

bool IsFailMarker(double value) {
    return std::abs(value - FailMarker) <= FailMarker * FailMarkerTolerance;
}

}  // namespace

GridPath PathThrough(std::initializer_list<GridPoint> points) {
    GridPath path;
    for (const GridPoint& point : points) {
        if (path.count > 0 && path.points[path.count - 1] == point) continue;
        if (path.count == MaxPathPoints) throw std::length_error("a path of too many points");
        path.points[path.count++] = point;
    }
    return path;
}

std::string RoleOf(const CircuitPart& part) {
    return std::string(part.name, 2);
}

bool IsSecondPart(const CircuitPart& part) {
    return part.name[2] != '\0';
}

const char* NodeName(Node node) {
    switch (node) {
        case Node::In: return "in";
        case Node::Out: return "out";
        case Node::Gnd: return "gnd";
        case Node::A: return "a";
        case Node::B: return "b";
        case Node::P: return "p";
        case Node::M: return "m";
    }
    return "?";
}

double ValueOf(const WorkingComponents& values, PartValue which) {
    switch (which) {
        case PartValue::R1: return values.R1;
        case PartValue::R2: return values.R2;
        case PartValue::R3: return values.R3;
        case PartValue::R4: return values.R4;
        case PartValue::C1: return values.C1;
        case PartValue::C2: return values.C2;
    }
    return 0.0;
}

const SectionCircuit& CircuitOf(Topology topology) {
    static const std::array<SectionCircuit, TopologyCount> circuits = BuildCircuits();
    if (Index(topology) < 0 || Index(topology) >= TopologyCount)
        throw std::out_of_range("no section circuit for topology " +
                                std::to_string(Index(topology)));
    return circuits[static_cast<std::size_t>(Index(topology))];
}

PartCondition ConditionOf(const CircuitPart& part, const WorkingComponents& values) {
    const double value = ValueOf(values, part.value);
    if (part.wiredWhenR1Open && values.R1 >= NotUsedThreshold) return {PartState::Wire, "R1 open"};
    if (std::isnan(value)) return {PartState::NoValue, "has no value"};
    if (value >= NotUsedThreshold) return {PartState::LeftOut, "open"};
    // The absent marker names a part the section lacks; any other negative value is one the
    // formulas could not make real.
    if (value <= -NotUsedThreshold) return {PartState::Absent, "absent"};
    if (value < 0.0 || (part.kind == PartKind::Resistor && IsFailMarker(value)))
        return {PartState::NoSolution, "no real solution"};
    if (value == 0.0)
        return part.kind == PartKind::Resistor ? PartCondition{PartState::Wire, "= 0"}
                                               : PartCondition{PartState::LeftOut, "= 0"};
    return {PartState::Placed, ""};
}

bool SectionHasFailed(const WorkingComponents& values) {
    for (const double r : {values.R1, values.R2, values.R3, values.R4})
        if (std::isnan(r) || IsFailMarker(r) || (r < 0.0 && r > -NotUsedThreshold)) return true;
    return false;
}

}  // namespace nerivane
