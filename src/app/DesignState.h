// The one record of the design on screen: every input and selection, in SI units, laid out
// byte for byte as the design file stores it (2016 bytes, little-endian, identity text and
// format version first), so that saving is one block write and the reference is a copy.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "circuit/Circuitanalysis.h"
#include "circuit/Components.h"
#include "circuit/Componentsettings.h"
#include "numerics/Polymain.h"

namespace nerivane {

inline constexpr std::int32_t FormatVersionMajor = 2;
inline constexpr std::int32_t FormatVersionMinor = 2;
inline constexpr std::int32_t DesignRecordSize = 2016;
inline constexpr int IdentityTextUnits = 68;  // 136 bytes of UTF-16
inline constexpr char IdentityText[] = "Nerivane Active Filter Design";

enum class ReadOutMode : std::int32_t { GraphPosition = 0, ValueAtFrequency = 1 };
enum class MagnitudeMode : std::int32_t { Db = 0, Linear = 1 };
enum class PhaseMode : std::int32_t { Plain = 0, Hilbert = 1 };

inline constexpr std::int32_t FocusSection = 0;
inline constexpr std::int32_t FocusC1 = 1;
inline constexpr std::int32_t FocusC2 = 2;
inline constexpr std::int32_t FocusNothing = 1000;

// Flags are 32-bit integers (0 or 1) so that the byte image has no implementation-defined
// bool representation and no hidden padding.
struct DesignState {
    char16_t Identity[IdentityTextUnits];
    std::int32_t VersionMajor;
    std::int32_t VersionMinor;
    std::int32_t RecordSize;
    Response ResponseIndex;
    Topology TopologyIndex;
    std::int32_t NumPoles;
    std::int32_t NumSections;
    std::int32_t SelectedSection;
    double F0;         // Hz
    double BandWidth;  // Hz
    double Ripple;     // dB
    double Gamma;
    double SectionGain;             // ratio, 10^(dB/20)
    double OpAmpGainBandwidth;      // Hz
    double OpAmpOutputResistance;   // ohms
    double SectionC1[MaxSections];  // farads
    double SectionC2[MaxSections];  // farads

    Sweep SweepIndex;
    std::int32_t ReservedAfterSweep;  // keeps the next double aligned; always 0
    double PlotTopDb;                 // top of the magnitude scale
    std::int32_t IdealOpAmp;
    ToleranceMode Tolerance;
    double PhaseThreshold;  // dB, always negative
    std::int32_t AdjustFocus;
    std::int32_t ReservedAfterFocus;  // keeps the next double aligned; always 0
    double FreqMin;                   // Hz
    double FreqMax;                   // Hz
    std::int32_t PlotMag;
    std::int32_t PlotMag1dB;
    std::int32_t PlotPhase;
    std::int32_t PlotGroupDelay;
    std::int32_t PlotPulse;
    std::int32_t PlotReference;
    std::int32_t AutoScale;
    ReadOutMode ReadOut;
    MagnitudeMode Magnitude;
    PhaseMode Phase;
    double GroupDelayScale;  // seconds at the top of the group-delay scale
    double TestValue;        // the hidden test panel's value

    ProtoSections Sections;

    // The captions the tolerance choices are recorded as, so a loaded design can restore
    // the radio buttons: "Exact R" or "Standard R", and the capacitor and resistor classes
    // ("10 %", "1 %").
    char16_t ToleranceText[16];
    char16_t CapacitorToleranceText[8];
    char16_t ResistorToleranceText[8];
    char16_t VersionText[32];  // "Version 2.2"

    std::uint8_t Reserved[272];  // room for later fields; written as zeros
};

static_assert(sizeof(ToleranceMode) == 4);
static_assert(std::is_standard_layout_v<DesignState>);
static_assert(std::is_trivially_copyable_v<DesignState>);
static_assert(sizeof(DesignState) == DesignRecordSize);
static_assert(offsetof(DesignState, VersionMajor) == 136);
static_assert(offsetof(DesignState, VersionMinor) == 140);
static_assert(offsetof(DesignState, RecordSize) == 144);
static_assert(offsetof(DesignState, ResponseIndex) == 148);
static_assert(offsetof(DesignState, TopologyIndex) == 152);
static_assert(offsetof(DesignState, NumPoles) == 156);
static_assert(offsetof(DesignState, NumSections) == 160);
static_assert(offsetof(DesignState, SelectedSection) == 164);
static_assert(offsetof(DesignState, F0) == 168);
static_assert(offsetof(DesignState, BandWidth) == 176);
static_assert(offsetof(DesignState, Ripple) == 184);
static_assert(offsetof(DesignState, Gamma) == 192);
static_assert(offsetof(DesignState, SectionGain) == 200);
static_assert(offsetof(DesignState, OpAmpGainBandwidth) == 208);
static_assert(offsetof(DesignState, OpAmpOutputResistance) == 216);
static_assert(offsetof(DesignState, SectionC1) == 224);
static_assert(offsetof(DesignState, SectionC2) == 384);
static_assert(offsetof(DesignState, SweepIndex) == 544);
static_assert(offsetof(DesignState, Sections) == 656);
static_assert(offsetof(DesignState, Reserved) + sizeof(DesignState::Reserved) == DesignRecordSize);

// The F5 and F7 keys: the next family (through the three numbers past Adjustable Gauss that
// build no prototype) and the next sweep, each back to the first after the last.
Response NextFamily(Response response);
Sweep NextSweep(Sweep sweep);

// Number of op-amp sections for a number of poles: one per pole pair (and one for an odd
// pole) for low and high pass, one per pole for band pass and notch.
std::int32_t SectionsForPoles(Topology topologyIndex, std::int32_t numPoles);

}  // namespace nerivane
