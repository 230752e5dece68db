// The one record of the design on screen: every input and selection, in SI units, with typed
// choices. The design file stores it through its record (files/Designrecord.h); the reference
// design is a copy.
#pragma once

#include <cstdint>

#include "circuit/Circuitanalysis.h"
#include "circuit/Components.h"
#include "circuit/Componentsettings.h"
#include "numerics/Polymain.h"

namespace nerivane {

enum class ReadOutMode : std::int32_t { GraphPosition = 0, ValueAtFrequency = 1 };
enum class MagnitudeMode : std::int32_t { Db = 0, Linear = 1 };
enum class PhaseMode : std::int32_t { Plain = 0, Hilbert = 1 };

inline constexpr std::int32_t FocusSection = 0;
inline constexpr std::int32_t FocusC1 = 1;
inline constexpr std::int32_t FocusC2 = 2;
inline constexpr std::int32_t FocusNothing = 1000;

struct DesignState {
    Response ResponseIndex = Response::AdjustableGauss;
    Topology TopologyIndex = Topology::VcvsLowPass;
    std::int32_t NumPoles = 3;
    std::int32_t NumSections = 0;  // set from the poles
    std::int32_t SelectedSection = 0;
    double F0 = 5000.0;         // Hz
    double BandWidth = 2000.0;  // Hz
    double Ripple = 0.2;        // dB
    double Gamma = 0.0;
    double SectionGain = 1.0;            // ratio, 10^(dB/20)
    double OpAmpGainBandwidth = 1e8;     // Hz
    double OpAmpOutputResistance = 0.0;  // ohms
    double SectionC1[MaxSections] = {};  // farads
    double SectionC2[MaxSections] = {};

    Sweep SweepIndex = Sweep::OneDecade;
    double PlotTopDb = 10.0;  // top of the magnitude scale
    bool IdealOpAmp = true;
    ToleranceMode Tolerance = ToleranceMode::Exact;
    // The component classes the design was calculated with, in percent.
    std::int32_t CapacitorTolerancePercent = 10;
    std::int32_t ResistorTolerancePercent = 1;
    double PhaseThreshold = -30.0;  // dB, always negative
    std::int32_t AdjustFocus = FocusSection;
    double FreqMin = 0.0;  // Hz, laid out with the sweep
    double FreqMax = 0.0;
    bool PlotMag = true;
    bool PlotMag1dB = false;
    bool PlotPhase = false;
    bool PlotGroupDelay = false;
    bool PlotPulse = false;
    bool PlotReference = false;
    bool AutoScale = true;
    ReadOutMode ReadOut = ReadOutMode::GraphPosition;
    MagnitudeMode Magnitude = MagnitudeMode::Db;
    PhaseMode Phase = PhaseMode::Plain;
    double GroupDelayScale = 1.0;  // seconds at the top of the group-delay scale
    double TestValue = 0.0;        // the hidden test panel's value

    ProtoSections Sections{};
};

// The F5 and F7 keys: the next family (through the three numbers past Adjustable Gauss that
// build no prototype) and the next sweep, each back to the first after the last.
Response NextFamily(Response response);
Sweep NextSweep(Sweep sweep);

// Number of op-amp sections for a number of poles: one per pole pair (and one for an odd
// pole) for low and high pass, one per pole for band pass and notch.
std::int32_t SectionsForPoles(Topology topologyIndex, std::int32_t numPoles);

}  // namespace nerivane
