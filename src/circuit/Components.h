// The component values of every section as the value calculation leaves them: four resistors
// and two capacitors per section, in ohms and farads, with markers for parts that are open,
// absent from the topology, or impossible to compute.
#pragma once

#include <array>
#include <cstdint>

#include "numerics/Enumindex.h"
#include "numerics/Protofunctions.h"

namespace nerivane {

// The seven section circuits, numbered as the design record and the Circuit menu number them.
enum class Topology : std::int32_t {
    VcvsLowPass = 0,
    MfbLowPass = 1,
    VcvsHighPass = 2,
    MfbHighPass = 3,
    VcvsBandPass = 4,
    MfbBandPass = 5,
    VcvsNotch = 6,
};
inline constexpr int TopologyCount = 7;
inline constexpr std::array<Topology, TopologyCount> Topologies = {
    Topology::VcvsLowPass,  Topology::MfbLowPass,  Topology::VcvsHighPass, Topology::MfbHighPass,
    Topology::VcvsBandPass, Topology::MfbBandPass, Topology::VcvsNotch};

// The capacitors a section can be built with, whoever gives them: the window's boxes, the
// command line or a design file.
inline constexpr double MinCapacitance = 1e-15;  // farads
inline constexpr double MaxCapacitance = 1.0;
constexpr bool IsUsableCapacitance(double farads) {
    return farads >= MinCapacitance && farads <= MaxCapacitance;
}

inline constexpr double OpenMarker = 1e50;        // an open circuit
inline constexpr double AbsentMarker = -1e50;     // the topology has no such part
inline constexpr double FailMarker = 1e12;        // the formula has no real solution
inline constexpr double NotUsedThreshold = 1e47;  // anything above is shown as not used

// One section's parts.
struct WorkingComponents {
    double R1 = 0.0;
    double R2 = 0.0;
    double R3 = 0.0;
    double R4 = 0.0;
    double C1 = 0.0;
    double C2 = 0.0;
    // The notch's second series capacitor when a tolerance run moves it apart from C1; 0 when
    // both are C1.
    double SecondC1 = 0.0;
};

// Every section's parts, as six parallel arrays (the layout the reference copy keeps).
struct SectionComponents {
    double R1[MaxSections];
    double R2[MaxSections];
    double R3[MaxSections];
    double R4[MaxSections];
    double C1[MaxSections];
    double C2[MaxSections];

    WorkingComponents Section(int i) const { return {R1[i], R2[i], R3[i], R4[i], C1[i], C2[i]}; }
    void Store(int i, const WorkingComponents& c) {
        R1[i] = c.R1;
        R2[i] = c.R2;
        R3[i] = c.R3;
        R4[i] = c.R4;
        C1[i] = c.C1;
        C2[i] = c.C2;
    }
};

}  // namespace nerivane
