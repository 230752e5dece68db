#include "response/Schematic.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "numerics/Formatfunctions.h"
#include "numerics/Sivalue.h"

namespace nerivane {
namespace {

constexpr const char* Ohm = "\u03A9";
constexpr Rgb Ink{0, 0, 0};
constexpr Rgb ValueInk{0, 0, 160};
constexpr Rgb Paper{255, 255, 255};

// The cascade: three sections to a row, the wire to the next section in the gap beside a
// section, the wire to the next row in the gap below it, a caption above each section.
constexpr int SectionsPerRow = 3;
constexpr int SectionGap = 4;
constexpr int RowGap = 4;
constexpr int CaptionHeight = 2;
constexpr int TitleHeight = 3;
constexpr int LeftMargin = 2;  // room for the wire that returns to the start of a row

// Symbol sizes in grid units.
constexpr double ResistorLength = 3.0;
constexpr double ZigzagAmplitude = 0.4;
constexpr int ZigzagPeaks = 6;
constexpr double PlateGap = 0.5;
constexpr double PlateHalfWidth = 0.9;
constexpr double LabelClearance = 1.0;
constexpr double SideLabelClearance = 1.3;  // beside a vertical part, clear of its plates
constexpr double PortRadius = 0.3;
constexpr double DotRadius = 0.25;

GridPoint Shifted(GridPoint p, GridPoint by) {
    return {p.x + by.x, p.y + by.y};
}

GridPath Shifted(GridPath path, GridPoint by) {
    for (int i = 0; i < path.count; ++i) path.points[i] = Shifted(path.points[i], by);
    return path;
}

int RoleNumber(const CircuitPart& part) {
    return part.name[1] - '0';
}

// Parts named by their role ("R1"), as the report names them, or by designator ("R101").
enum class Naming { Roles, Designators };

void AddSection(Schematic& schematic, const SectionCircuit& circuit, int section,
                const WorkingComponents* values, GridPoint origin, Naming naming) {
    const std::span<const CircuitPart> parts = circuit.Parts();
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const CircuitPart& part = parts[i];
        const PartCondition condition =
            values ? ConditionOf(part, *values) : PartCondition{PartState::Placed, ""};
        if (condition.state == PartState::LeftOut || condition.state == PartState::Absent) continue;
        SchematicPart drawn{};
        drawn.name = naming == Naming::Designators
                         ? Designator(circuit, static_cast<int>(i), section)
                         : RoleOf(part);
        drawn.exactValue = std::numeric_limits<double>::quiet_NaN();
        if (values) {
            drawn.value = PrintedValue(part, *values);
            if (condition.state == PartState::Placed)
                drawn.exactValue = ValueOf(*values, part.value);
        }
        drawn.kind = part.kind;
        drawn.asWire = condition.state == PartState::Wire;
        drawn.path = Shifted(part.placement.path, origin);
        drawn.symbolSegment = part.placement.symbolSegment;
        drawn.label = part.placement.label;
        drawn.section = section;
        drawn.partIndex = static_cast<int>(i);
        schematic.parts.push_back(drawn);
        if (part.to == Node::Gnd)
            schematic.grounds.push_back(drawn.path.points[drawn.path.count - 1]);
    }
    for (const NodeWire& wire : circuit.Wires())
        schematic.wires.push_back(Shifted(wire.path, origin));
    for (const GridPoint& ground : circuit.Grounds())
        schematic.grounds.push_back(Shifted(ground, origin));
    OpAmpPlacement placement = circuit.opAmpPlacement;
    placement.inputsMiddle = Shifted(placement.inputsMiddle, origin);
    schematic.opAmps.push_back(
        {placement, naming == Naming::Designators ? OpAmpDesignator(section) : std::string()});
}

Schematic SingleSection(Topology topology, int section, const WorkingComponents* values,
                        Naming naming) {
    const SectionCircuit& circuit = CircuitOf(topology);
    Schematic schematic;
    AddSection(schematic, circuit, section, values, {0, 0}, naming);
    schematic.ports.push_back({circuit.input, "in"});
    schematic.ports.push_back({circuit.output, "out"});
    schematic.extent = circuit.extent;
    return schematic;
}

// ---- Drawing ---------------------------------------------------------------------------

struct Pixel {
    double x, y;
};

class Pen {
  public:
    explicit Pen(Canvas& canvas) : canvas_(canvas) {}

    static Pixel At(GridPoint p) {
        return {SchematicMargin + p.x * double(SchematicPitch),
                SchematicMargin + p.y * double(SchematicPitch)};
    }
    void Line(Pixel a, Pixel b) {
        canvas_.MoveTo(Round(a.x), Round(a.y));
        canvas_.LineTo(Round(b.x), Round(b.y));
    }
    void Polyline(const GridPath& path) {
        for (int i = 1; i < path.count; ++i) Line(At(path.points[i - 1]), At(path.points[i]));
    }
    void Circle(Pixel centre, double radius, bool filled) {
        canvas_.Circle(Round(centre.x), Round(centre.y), std::max(1, Round(radius)), filled);
    }
    // Text with its box's top left at p.
    void Text(Pixel p, const std::string& text, Rgb colour) {
        canvas_.SetTextColour(colour);
        canvas_.TextOut(Round(p.x), Round(p.y), text);
    }
    TextSize Extent(const std::string& text) { return canvas_.TextExtent(text); }

  private:
    static int Round(double v) { return static_cast<int>(std::lround(v)); }
    Canvas& canvas_;
};

constexpr double Unit = SchematicPitch;

// A point along a segment: t grid units from its middle, side units to its left.
Pixel Along(Pixel middle, Pixel direction, double t, double side) {
    return {middle.x + (direction.x * t - direction.y * side) * Unit,
            middle.y + (direction.y * t + direction.x * side) * Unit};
}

void DrawSymbol(Pen& pen, const SchematicPart& part, Pixel a, Pixel b) {
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    const Pixel d{(b.x - a.x) / length, (b.y - a.y) / length};
    const Pixel middle{(a.x + b.x) / 2, (a.y + b.y) / 2};
    if (part.kind == PartKind::Resistor) {
        const double half = ResistorLength / 2;
        pen.Line(a, Along(middle, d, -half, 0));
        Pixel previous = Along(middle, d, -half, 0);
        for (int k = 1; k <= ZigzagPeaks; ++k) {
            const double t = -half + (k - 0.5) * ResistorLength / ZigzagPeaks;
            const Pixel next = Along(middle, d, t, k % 2 ? ZigzagAmplitude : -ZigzagAmplitude);
            pen.Line(previous, next);
            previous = next;
        }
        pen.Line(previous, Along(middle, d, half, 0));
        pen.Line(Along(middle, d, half, 0), b);
        return;
    }
    const double gap = PlateGap / 2;
    pen.Line(a, Along(middle, d, -gap, 0));
    pen.Line(Along(middle, d, gap, 0), b);
    for (const double t : {-gap, gap})
        pen.Line(Along(middle, d, t, -PlateHalfWidth), Along(middle, d, t, PlateHalfWidth));
}

void DrawLabel(Pen& pen, const SchematicPart& part, Pixel middle) {
    std::vector<std::pair<std::string, Rgb>> lines{{part.name, Ink}};
    if (!part.value.empty()) lines.emplace_back(part.value, ValueInk);
    const int lineHeight = pen.Extent(part.name).height;
    const double height = lineHeight * static_cast<double>(lines.size());
    const double clearance = LabelClearance * Unit;
    double top = 0.0;
    switch (part.label) {
        case LabelSide::Above: top = middle.y - clearance - height; break;
        case LabelSide::Below: top = middle.y + clearance; break;
        case LabelSide::Left:
        case LabelSide::Right: top = middle.y - height / 2; break;
    }
    for (const auto& [text, colour] : lines) {
        const double width = pen.Extent(text).width;
        double left = middle.x - width / 2;
        if (part.label == LabelSide::Left) left = middle.x - SideLabelClearance * Unit - width;
        if (part.label == LabelSide::Right) left = middle.x + SideLabelClearance * Unit;
        pen.Text({left, top}, text, colour);
        top += lineHeight;
    }
}

void DrawPart(Canvas& canvas, Pen& pen, const SchematicPart& part) {
    std::string description = part.name;
    if (!part.value.empty()) description += " = " + part.value;
    if (std::isfinite(part.exactValue))
        description += " (exact " + ExactText(part.exactValue) + " " +
                       (part.kind == PartKind::Resistor ? Ohm : "F") + ")";
    canvas.BeginGroup(part.name, description);
    if (part.asWire) {
        pen.Polyline(part.path);
    } else {
        for (int i = 1; i < part.path.count; ++i) {
            const Pixel a = Pen::At(part.path.points[i - 1]);
            const Pixel b = Pen::At(part.path.points[i]);
            if (i - 1 == part.symbolSegment) {
                DrawSymbol(pen, part, a, b);
                DrawLabel(pen, part, {(a.x + b.x) / 2, (a.y + b.y) / 2});
            } else {
                pen.Line(a, b);
            }
        }
    }
    canvas.EndGroup();
}

void DrawOpAmp(Pen& pen, const SchematicOpAmp& opAmp) {
    const OpAmpPlacement& place = opAmp.placement;
    const Pixel middle = Pen::At(place.inputsMiddle);
    const Pixel top{middle.x, middle.y - 4 * Unit};
    const Pixel bottom{middle.x, middle.y + 4 * Unit};
    const Pixel tip = Pen::At(place.OutputPin());
    pen.Line(top, bottom);
    pen.Line(bottom, tip);
    pen.Line(tip, top);
    const Pixel plus = Pen::At(place.PlusPin());
    const Pixel minus = Pen::At(place.MinusPin());
    const double signX = middle.x + 0.8 * Unit;
    const double half = 0.3 * Unit;
    pen.Line({signX - half, plus.y}, {signX + half, plus.y});
    pen.Line({signX, plus.y - half}, {signX, plus.y + half});
    pen.Line({signX - half, minus.y}, {signX + half, minus.y});
    if (!opAmp.name.empty())
        pen.Text({middle.x + 3.6 * Unit, middle.y + 1.7 * Unit}, opAmp.name, Ink);
}

void DrawGround(Pen& pen, GridPoint at) {
    const Pixel p = Pen::At(at);
    pen.Line(p, {p.x, p.y + 0.6 * Unit});
    const double bars[][2] = {{0.6, 0.8}, {0.9, 0.5}, {1.2, 0.2}};
    for (const auto& [down, half] : bars)
        pen.Line({p.x - half * Unit, p.y + down * Unit}, {p.x + half * Unit, p.y + down * Unit});
}

void DrawPort(Pen& pen, const SchematicPort& port) {
    const Pixel p = Pen::At(port.at);
    pen.Circle(p, PortRadius * Unit, false);
    const TextSize size = pen.Extent(port.label);
    pen.Text({p.x - size.width / 2.0, p.y - 0.5 * Unit - size.height}, port.label, Ink);
}

// ---- Junctions -------------------------------------------------------------------------

bool StrictlyInside(GridPoint p, GridPoint a, GridPoint b) {
    if (a.x == b.x) return p.x == a.x && p.y > std::min(a.y, b.y) && p.y < std::max(a.y, b.y);
    if (a.y == b.y) return p.y == a.y && p.x > std::min(a.x, b.x) && p.x < std::max(a.x, b.x);
    return false;
}

}  // namespace

std::string Designator(const SectionCircuit& circuit, int partIndex, int section) {
    const std::span<const CircuitPart> parts = circuit.Parts();
    const CircuitPart& part = parts[static_cast<std::size_t>(partIndex)];
    int number = RoleNumber(part);
    if (IsSecondPart(part)) {
        // After the highest role number of its kind, in the order the copies come.
        int highest = 0;
        int copiesBefore = 0;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (parts[i].kind != part.kind) continue;
            if (!IsSecondPart(parts[i])) highest = std::max(highest, RoleNumber(parts[i]));
            if (IsSecondPart(parts[i]) && static_cast<int>(i) < partIndex) ++copiesBefore;
        }
        number = highest + 1 + copiesBefore;
    }
    const char letter = part.kind == PartKind::Resistor ? 'R' : 'C';
    const std::string digits = number < 10 ? "0" + std::to_string(number) : std::to_string(number);
    return letter + std::to_string(section + 1) + digits;
}

std::string OpAmpDesignator(int section) {
    return "U" + std::to_string(section + 1) + "01";
}

std::string PrintedValue(const CircuitPart& part, const WorkingComponents& values) {
    switch (ConditionOf(part, values).state) {
        case PartState::Placed:
            return FormatEngineering(ValueOf(values, part.value), 2,
                                     part.kind == PartKind::Resistor ? Ohm : "F");
        case PartState::Wire: return "wire";
        case PartState::LeftOut:
        case PartState::Absent: return "open";
        case PartState::NoSolution: return "no solution";
        case PartState::NoValue: return "no value";
    }
    return "";
}

Schematic CircuitPicture(Topology topology) {
    return SingleSection(topology, 0, nullptr, Naming::Roles);
}

Schematic SectionSchematic(Topology topology, int section, const WorkingComponents& values) {
    return SingleSection(topology, section, &values, Naming::Roles);
}

Schematic BiasDividerPicture(bool decoupled) {
    const auto part = [](const char* name, PartKind kind, GridPath path, LabelSide label) {
        SchematicPart drawn{};
        drawn.name = name;
        drawn.exactValue = std::numeric_limits<double>::quiet_NaN();
        drawn.kind = kind;
        drawn.path = path;
        drawn.label = label;
        return drawn;
    };
    Schematic schematic;
    schematic.parts.push_back(
        part("R1", PartKind::Resistor, PathThrough({{7, 2}, {7, 9}}), LabelSide::Left));
    schematic.parts.push_back(
        part("R2", PartKind::Resistor, PathThrough({{7, 9}, {7, 16}}), LabelSide::Left));
    schematic.grounds.push_back({7, 16});
    if (decoupled) {
        schematic.parts.push_back(
            part("C", PartKind::Capacitor, PathThrough({{12, 9}, {12, 15}}), LabelSide::Right));
        schematic.grounds.push_back({12, 15});
    }
    schematic.wires.push_back(PathThrough({{7, 9}, {18, 9}}));
    schematic.ports.push_back({{7, 2}, "Vs"});
    schematic.ports.push_back({{18, 9}, "Vb"});
    schematic.extent = {20, 18};
    return schematic;
}

Schematic CascadeSchematic(Topology topology, const SectionComponents& parts, int numSections,
                           const std::string& title) {
    const SectionCircuit& circuit = CircuitOf(topology);
    const int sections = std::clamp(numSections, 1, MaxSections);
    const int columnWidth = circuit.extent.x + SectionGap;
    const int rowHeight = CaptionHeight + circuit.extent.y + RowGap;
    Schematic schematic;
    schematic.texts.push_back({{LeftMargin, 0}, title});
    GridPoint previousOutput{};
    int previousRowBottom = 0;
    for (int s = 0; s < sections; ++s) {
        const int row = s / SectionsPerRow;
        const GridPoint origin{LeftMargin + (s % SectionsPerRow) * columnWidth,
                               TitleHeight + row * rowHeight + CaptionHeight};
        schematic.texts.push_back(
            {{origin.x, origin.y - CaptionHeight}, "Section " + std::to_string(s)});
        const WorkingComponents values = parts.Section(s);
        AddSection(schematic, circuit, s, &values, origin, Naming::Designators);
        const GridPoint input = Shifted(circuit.input, origin);
        if (s > 0) {
            const GridPoint out = previousOutput;
            const int turn = out.x + 2;
            if (s % SectionsPerRow != 0) {
                schematic.wires.push_back(
                    PathThrough({out, {turn, out.y}, {turn, input.y}, input}));
            } else {
                // Down into the gap below the row, back to its start, down to the next input.
                const int gapY = previousRowBottom + 1;
                const int backX = LeftMargin - 1;
                schematic.wires.push_back(
                    PathThrough({out, {turn, out.y}, {turn, gapY}, {backX, gapY}}));
                schematic.wires.push_back(PathThrough({{backX, gapY}, {backX, input.y}, input}));
            }
        }
        if (s == 0) schematic.ports.push_back({input, "in"});
        previousOutput = Shifted(circuit.output, origin);
        previousRowBottom = origin.y + circuit.extent.y;
    }
    schematic.ports.push_back({previousOutput, "out"});
    const int rows = (sections + SectionsPerRow - 1) / SectionsPerRow;
    schematic.extent = {LeftMargin + std::min(sections, SectionsPerRow) * columnWidth,
                        TitleHeight + rows * rowHeight - RowGap};
    return schematic;
}

std::vector<GridPoint> Junctions(const Schematic& schematic) {
    const auto key = [](GridPoint p) { return std::pair(p.x, p.y); };
    std::map<std::pair<int, int>, int> ends;
    std::vector<GridPath> lines = schematic.wires;
    for (const SchematicPart& part : schematic.parts) {
        if (part.asWire) {
            lines.push_back(part.path);
        } else {
            ++ends[key(part.path.points[0])];
            ++ends[key(part.path.points[part.path.count - 1])];
        }
    }
    for (const GridPath& line : lines) {
        for (int i = 0; i < line.count; ++i)
            ends[key(line.points[i])] += i == 0 || i == line.count - 1 ? 1 : 2;
    }
    for (const SchematicOpAmp& opAmp : schematic.opAmps) {
        for (const GridPoint pin :
             {opAmp.placement.PlusPin(), opAmp.placement.MinusPin(), opAmp.placement.OutputPin()})
            ++ends[key(pin)];
    }
    for (const GridPoint& ground : schematic.grounds) ++ends[key(ground)];
    for (const SchematicPort& port : schematic.ports) ++ends[key(port.at)];
    // A line running through a point where something ends joins it from two sides.
    std::map<std::pair<int, int>, int> through;
    for (const GridPath& line : lines) {
        for (int i = 1; i < line.count; ++i) {
            for (const auto& [point, count] : ends) {
                if (StrictlyInside({point.first, point.second}, line.points[i - 1], line.points[i]))
                    through[point] += 2;
            }
        }
    }
    std::vector<GridPoint> junctions;
    for (const auto& [point, count] : ends) {
        const auto passing = through.find(point);
        if (count + (passing == through.end() ? 0 : passing->second) >= 3)
            junctions.push_back({point.first, point.second});
    }
    return junctions;
}

TextSize SchematicSize(const Schematic& schematic) {
    return {2 * SchematicMargin + schematic.extent.x * SchematicPitch,
            2 * SchematicMargin + schematic.extent.y * SchematicPitch};
}

void DrawSchematic(Canvas& canvas, const Schematic& schematic) {
    const TextSize size = SchematicSize(schematic);
    canvas.FillRect(0, 0, size.width, size.height, Paper);
    canvas.SetPen(Ink, 1, PenStyle::Solid);
    Pen pen(canvas);
    for (const SchematicText& text : schematic.texts) pen.Text(Pen::At(text.at), text.text, Ink);
    for (const SchematicPart& part : schematic.parts) DrawPart(canvas, pen, part);
    for (const GridPath& wire : schematic.wires) pen.Polyline(wire);
    for (const SchematicOpAmp& opAmp : schematic.opAmps) DrawOpAmp(pen, opAmp);
    for (const GridPoint& ground : schematic.grounds) DrawGround(pen, ground);
    for (const SchematicPort& port : schematic.ports) DrawPort(pen, port);
    for (const GridPoint& junction : Junctions(schematic))
        pen.Circle(Pen::At(junction), DotRadius * Unit, true);
}

}  // namespace nerivane
