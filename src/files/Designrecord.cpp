#include "files/Designrecord.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "circuit/Standardvalues.h"

namespace nerivane {
namespace {

// Fixed-width UTF-16 texts, for the plain ASCII captions the record holds.
template <std::size_t Units>
void WriteText(char16_t (&destination)[Units], const std::string& text) {
    std::size_t i = 0;
    for (; i + 1 < Units && i < text.size(); ++i)
        destination[i] = static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    for (; i < Units; ++i) destination[i] = u'\0';
}

template <std::size_t Units>
std::string ReadText(const char16_t (&source)[Units]) {
    std::string text;
    for (std::size_t i = 0; i < Units && source[i] != u'\0'; ++i)
        text.push_back(source[i] < 0x80 ? static_cast<char>(source[i]) : '?');
    return text;
}

// "10 %" -> 10; a caption that names no class keeps the fallback.
template <std::size_t Units>
int PercentOf(const char16_t (&caption)[Units], int fallback) {
    const std::string text = ReadText(caption);
    int percent = 0;
    std::size_t digits = 0;
    while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9')
        percent = percent * 10 + (text[digits++] - '0');
    return digits > 0 && digits < 3 && ToleranceClassOf(percent) ? percent : fallback;
}

std::string PercentCaption(int percent) {
    const ToleranceClass* toleranceClass = ToleranceClassOf(percent);
    return toleranceClass ? ToleranceCaption(*toleranceClass) : std::to_string(percent) + " %";
}

}  // namespace

std::string VersionText() {
    return "Version " + std::to_string(FormatVersionMajor) + "." +
           std::to_string(FormatVersionMinor);
}

DesignRecord ToRecord(const DesignState& s) {
    DesignRecord r;
    // Reserved bytes and unused text units are part of the saved image: zeros.
    std::memset(&r, 0, sizeof r);
    WriteText(r.Identity, IdentityText);
    r.VersionMajor = FormatVersionMajor;
    r.VersionMinor = FormatVersionMinor;
    r.RecordSize = DesignRecordSize;
    r.ResponseIndex = Index(s.ResponseIndex);
    r.TopologyIndex = Index(s.TopologyIndex);
    r.NumPoles = s.NumPoles;
    r.NumSections = s.NumSections;
    r.SelectedSection = s.SelectedSection;
    r.F0 = s.F0;
    r.BandWidth = s.BandWidth;
    r.Ripple = s.Ripple;
    r.Gamma = s.Gamma;
    r.SectionGain = s.SectionGain;
    r.OpAmpGainBandwidth = s.OpAmpGainBandwidth;
    r.OpAmpOutputResistance = s.OpAmpOutputResistance;
    std::copy(std::begin(s.SectionC1), std::end(s.SectionC1), r.SectionC1);
    std::copy(std::begin(s.SectionC2), std::end(s.SectionC2), r.SectionC2);
    r.SweepIndex = Index(s.SweepIndex);
    r.PlotTopDb = s.PlotTopDb;
    r.IdealOpAmp = s.IdealOpAmp;
    r.Tolerance = s.Tolerance;
    r.PhaseThreshold = s.PhaseThreshold;
    r.AdjustFocus = s.AdjustFocus;
    r.FreqMin = s.FreqMin;
    r.FreqMax = s.FreqMax;
    r.PlotMag = s.PlotMag;
    r.PlotMag1dB = s.PlotMag1dB;
    r.PlotPhase = s.PlotPhase;
    r.PlotGroupDelay = s.PlotGroupDelay;
    r.PlotPulse = s.PlotPulse;
    r.PlotReference = s.PlotReference;
    r.AutoScale = s.AutoScale;
    r.ReadOut = s.ReadOut;
    r.Magnitude = s.Magnitude;
    r.Phase = s.Phase;
    r.GroupDelayScale = s.GroupDelayScale;
    r.TestValue = s.TestValue;
    r.Sections = s.Sections;
    // A worst-case design is recorded as standard on purpose: it opens with standard values,
    // not with a long analysis.
    WriteText(r.ToleranceText, s.Tolerance == ToleranceMode::Exact ? "Exact R" : "Standard R");
    WriteText(r.CapacitorToleranceText, PercentCaption(s.CapacitorTolerancePercent));
    WriteText(r.ResistorToleranceText, PercentCaption(s.ResistorTolerancePercent));
    WriteText(r.VersionText, VersionText());
    return r;
}

DesignState FromRecord(const DesignRecord& r) {
    DesignState s;
    s.ResponseIndex = static_cast<Response>(r.ResponseIndex);
    s.TopologyIndex = static_cast<Topology>(r.TopologyIndex);
    s.NumPoles = r.NumPoles;
    s.NumSections = r.NumSections;
    s.SelectedSection = r.SelectedSection;
    s.F0 = r.F0;
    s.BandWidth = r.BandWidth;
    s.Ripple = r.Ripple;
    s.Gamma = r.Gamma;
    s.SectionGain = r.SectionGain;
    s.OpAmpGainBandwidth = r.OpAmpGainBandwidth;
    s.OpAmpOutputResistance = r.OpAmpOutputResistance;
    std::copy(std::begin(r.SectionC1), std::end(r.SectionC1), s.SectionC1);
    std::copy(std::begin(r.SectionC2), std::end(r.SectionC2), s.SectionC2);
    s.SweepIndex = static_cast<Sweep>(r.SweepIndex);
    s.PlotTopDb = r.PlotTopDb;
    s.IdealOpAmp = r.IdealOpAmp != 0;
    // The caption, not the mode field, says how the design comes back (see ToRecord).
    s.Tolerance =
        ReadText(r.ToleranceText) == "Exact R" ? ToleranceMode::Exact : ToleranceMode::Standard;
    s.CapacitorTolerancePercent = PercentOf(r.CapacitorToleranceText, 10);
    s.ResistorTolerancePercent = PercentOf(r.ResistorToleranceText, 1);
    s.PhaseThreshold = r.PhaseThreshold;
    s.AdjustFocus = r.AdjustFocus;
    s.FreqMin = r.FreqMin;
    s.FreqMax = r.FreqMax;
    s.PlotMag = r.PlotMag != 0;
    s.PlotMag1dB = r.PlotMag1dB != 0;
    s.PlotPhase = r.PlotPhase != 0;
    s.PlotGroupDelay = r.PlotGroupDelay != 0;
    s.PlotPulse = r.PlotPulse != 0;
    s.PlotReference = r.PlotReference != 0;
    s.AutoScale = r.AutoScale != 0;
    s.ReadOut = r.ReadOut;
    s.Magnitude = r.Magnitude;
    s.Phase = r.Phase;
    s.GroupDelayScale = r.GroupDelayScale;
    s.TestValue = r.TestValue;
    s.Sections = r.Sections;
    return s;
}

bool IdentityMatches(const DesignRecord& record) {
    DesignRecord reference;
    WriteText(reference.Identity, IdentityText);
    for (int i = 0; i < IdentityTextUnits; ++i) {
        if (record.Identity[i] != reference.Identity[i]) return false;
        if (reference.Identity[i] == u'\0') return true;
    }
    return true;
}

}  // namespace nerivane
