// The drawn cascade is the exported netlist: nodes found from the drawing's geometry against
// the netlist's, for every topology with followers, first-order and complete sections.
#include "response/Schematic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numeric>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "app/DesignState.h"
#include "circuit/Spiceexport.h"
#include "circuit/Valuecalculations.h"
#include "support/ChebyshevDesign.h"

namespace nerivane {
namespace {

// Which terminals share a node: each terminal ("2/R1.0", "2/opamp.p", "input") is given
// the alphabetically first terminal of its node.
using Nets = std::map<std::string, std::string>;

class Joins {
  public:
    std::string Find(const std::string& x) {
        if (!parent_.count(x)) parent_[x] = x;
        return parent_[x] == x ? x : parent_[x] = Find(parent_[x]);
    }
    void Join(const std::string& a, const std::string& b) { parent_[Find(a)] = Find(b); }

  private:
    std::map<std::string, std::string> parent_;
};

Nets Partition(Joins& joins, const std::vector<std::string>& terminals) {
    std::map<std::string, std::string> first;
    for (const std::string& t : terminals) {
        auto [entry, added] = first.try_emplace(joins.Find(t), t);
        if (!added) entry->second = std::min(entry->second, t);
    }
    Nets nets;
    for (const std::string& t : terminals) nets[t] = first[joins.Find(t)];
    return nets;
}

// ---- The netlist's nodes -----------------------------------------------------------------

Nets NetlistNets(const std::string& netlist) {
    Joins joins;
    std::vector<std::string> terminals;
    const auto terminal = [&](const std::string& name, const std::string& node) {
        terminals.push_back(name);
        joins.Join(name, node);
    };
    std::map<int, std::vector<std::string>> bodies;
    std::istringstream lines(netlist);
    std::string line;
    int section = -1;
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        std::string element, a, b, c;
        fields >> element >> a >> b >> c;
        if (element == ".subckt" && a.starts_with("section")) section = std::stoi(a.substr(7));
        if (element == ".ends") section = -1;
        if (section >= 0 && element != ".subckt" && !element.starts_with("*"))
            bodies[section].push_back(line);
        // An instance of a section: Xk input output ground sectionk.
        if (section < 0 && element.size() > 1 && element[0] == 'X' && c == "0") {
            const int k = std::stoi(element.substr(1));
            const auto node = [k, &a, &b](const std::string& local) {
                if (local == "in") return "net " + a;
                if (local == "out") return "net " + b;
                if (local == "gnd") return std::string("net 0");
                return "net " + std::to_string(k) + "." + local;
            };
            for (const std::string& body : bodies[k]) {
                std::istringstream part(body);
                std::string name, n1, n2, n3;
                part >> name >> n1 >> n2 >> n3;
                const std::string id = std::to_string(k) + "/";
                if (name == "Xopamp") {
                    terminal(id + "opamp.p", node(n1));
                    terminal(id + "opamp.m", node(n2));
                    terminal(id + "opamp.out", node(n3));
                } else if (name[0] == 'V') {
                    terminal(id + name.substr(1) + ".0", node(n1));
                    terminal(id + name.substr(1) + ".1", node(n2));
                    joins.Join(node(n1), node(n2));
                } else {
                    terminal(id + name + ".0", node(n1));
                    terminal(id + name + ".1", node(n2));
                }
            }
        }
    }
    terminal("input", "net in");
    terminal("ground", "net 0");
    std::string last;
    for (const auto& [k, body] : bodies) last = "net s" + std::to_string(k);
    terminal("output", last);
    return Partition(joins, terminals);
}

// ---- The drawing's nodes -----------------------------------------------------------------

std::string Point(GridPoint p) {
    return "at " + std::to_string(p.x) + "," + std::to_string(p.y);
}

bool Inside(GridPoint p, GridPoint a, GridPoint b) {
    return (a.x == b.x && p.x == a.x && p.y > std::min(a.y, b.y) && p.y < std::max(a.y, b.y)) ||
           (a.y == b.y && p.y == a.y && p.x > std::min(a.x, b.x) && p.x < std::max(a.x, b.x));
}

// Only what is drawn counts: a terminal is joined to whatever line ends on it or runs
// through it.
Nets DrawingNets(const Schematic& schematic, Topology topology) {
    Joins joins;
    std::vector<std::string> terminals;
    std::vector<GridPoint> points;
    const auto terminal = [&](const std::string& name, GridPoint p) {
        terminals.push_back(name);
        points.push_back(p);
        joins.Join(name, Point(p));
    };
    std::vector<GridPath> lines = schematic.wires;
    const SectionCircuit& circuit = CircuitOf(topology);
    for (const SchematicPart& part : schematic.parts) {
        const std::string id =
            std::to_string(part.section) + "/" + circuit.parts[part.partIndex].name;
        terminal(id + ".0", part.path.points[0]);
        terminal(id + ".1", part.path.points[part.path.count - 1]);
        if (part.asWire) lines.push_back(part.path);
    }
    for (std::size_t k = 0; k < schematic.opAmps.size(); ++k) {
        const OpAmpPlacement& op = schematic.opAmps[k].placement;
        const std::string id = std::to_string(k) + "/opamp.";
        terminal(id + "p", op.PlusPin());
        terminal(id + "m", op.MinusPin());
        terminal(id + "out", op.OutputPin());
    }
    for (const GridPoint& ground : schematic.grounds) joins.Join(Point(ground), "ground");
    terminals.push_back("ground");
    terminal("input", schematic.ports.front().at);
    terminal("output", schematic.ports.back().at);
    for (const GridPath& line : lines) {
        for (int i = 0; i < line.count; ++i) points.push_back(line.points[i]);
    }
    for (const GridPath& line : lines) {
        for (int i = 1; i < line.count; ++i) {
            joins.Join(Point(line.points[i - 1]), Point(line.points[i]));
            for (const GridPoint& p : points)
                if (Inside(p, line.points[i - 1], line.points[i]))
                    joins.Join(Point(p), Point(line.points[i]));
        }
    }
    return Partition(joins, terminals);
}

struct Case {
    Topology topology;
    int poles;
    double gainDb;
};

class DrawingAndNetlist : public testing::TestWithParam<Case> {};

TEST_P(DrawingAndNetlist, AreTheSameCircuit) {
    const Case c = GetParam();
    const int sections = SectionsForPoles(c.topology, c.poles);
    const SectionComponents parts = ChebyshevDesign(c.topology, c.poles, c.gainDb);
    SpiceDesign spice;
    spice.topology = c.topology;
    spice.numSections = sections;
    const Nets netlist = NetlistNets(SpiceNetlist(spice, parts));
    const Nets drawing = DrawingNets(CascadeSchematic(c.topology, parts, sections, ""), c.topology);
    EXPECT_EQ(drawing, netlist);
}

// Every topology: first-order sections and followers (three poles at unity gain), complete
// second-order sections with a gain pair (four poles, 6 dB), a cascade over several rows.
std::vector<Case> Cases() {
    std::vector<Case> cases;
    for (const Topology topology : Topologies)
        for (const Case& c :
             {Case{topology, 3, 0.0}, Case{topology, 4, 6.0}, Case{topology, 8, 0.0}})
            cases.push_back(c);
    return cases;
}

INSTANTIATE_TEST_SUITE_P(AllTopologies, DrawingAndNetlist, testing::ValuesIn(Cases()),
                         [](const testing::TestParamInfo<Case>& info) {
                             return "topology" + std::to_string(Index(info.param.topology)) + "_" +
                                    std::to_string(info.param.poles) + "poles";
                         });

}  // namespace
}  // namespace nerivane
