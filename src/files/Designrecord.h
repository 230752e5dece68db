// The design file's record: 2016 bytes, little-endian, identity text and format version first,
// every field at the offset earlier versions of the program wrote it. The rest of the program
// works on the typed design state; this unit is the one place the two meet.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

#include "app/DesignState.h"

namespace nerivane {

inline constexpr std::int32_t FormatVersionMajor = 2;
inline constexpr std::int32_t FormatVersionMinor = 2;
inline constexpr std::int32_t DesignRecordSize = 2016;
inline constexpr int IdentityTextUnits = 68;  // 136 bytes of UTF-16
inline constexpr char IdentityText[] = "Nerivane Active Filter Design";

// Flags are 32-bit integers (0 or 1) so that the byte image has no implementation-defined
// bool representation and no hidden padding.
struct DesignRecord {
    char16_t Identity[IdentityTextUnits];
    std::int32_t VersionMajor;
    std::int32_t VersionMinor;
    std::int32_t RecordSize;
    std::int32_t ResponseIndex;
    std::int32_t TopologyIndex;
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

    std::int32_t SweepIndex;
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

    // The tolerance choices as captions: "Exact R" or "Standard R" (a worst-case design is
    // recorded as standard, so it opens without a long analysis), and the capacitor and
    // resistor classes ("10 %", "1 %").
    char16_t ToleranceText[16];
    char16_t CapacitorToleranceText[8];
    char16_t ResistorToleranceText[8];
    char16_t VersionText[32];  // "Version 2.2"

    std::uint8_t Reserved[272];  // room for later fields; written as zeros
};

static_assert(sizeof(ToleranceMode) == 4);
static_assert(std::is_standard_layout_v<DesignRecord>);
static_assert(std::is_trivially_copyable_v<DesignRecord>);
static_assert(sizeof(DesignRecord) == DesignRecordSize);
static_assert(offsetof(DesignRecord, VersionMajor) == 136);
static_assert(offsetof(DesignRecord, VersionMinor) == 140);
static_assert(offsetof(DesignRecord, RecordSize) == 144);
static_assert(offsetof(DesignRecord, ResponseIndex) == 148);
static_assert(offsetof(DesignRecord, TopologyIndex) == 152);
static_assert(offsetof(DesignRecord, NumPoles) == 156);
static_assert(offsetof(DesignRecord, NumSections) == 160);
static_assert(offsetof(DesignRecord, SelectedSection) == 164);
static_assert(offsetof(DesignRecord, F0) == 168);
static_assert(offsetof(DesignRecord, BandWidth) == 176);
static_assert(offsetof(DesignRecord, Ripple) == 184);
static_assert(offsetof(DesignRecord, Gamma) == 192);
static_assert(offsetof(DesignRecord, SectionGain) == 200);
static_assert(offsetof(DesignRecord, OpAmpGainBandwidth) == 208);
static_assert(offsetof(DesignRecord, OpAmpOutputResistance) == 216);
static_assert(offsetof(DesignRecord, SectionC1) == 224);
static_assert(offsetof(DesignRecord, SectionC2) == 384);
static_assert(offsetof(DesignRecord, SweepIndex) == 544);
static_assert(offsetof(DesignRecord, Sections) == 656);
static_assert(offsetof(DesignRecord, Reserved) + sizeof(DesignRecord::Reserved) ==
              DesignRecordSize);

// "Version 2.2": the format this program writes, as the settings file and the about box show it.
std::string VersionText();

// True when the record begins with this program's identity text.
bool IdentityMatches(const DesignRecord& record);

// The record a design is saved as.
DesignRecord ToRecord(const DesignState& state);
// The design a record holds; the record must be sanitised first.
DesignState FromRecord(const DesignRecord& record);

}  // namespace nerivane
