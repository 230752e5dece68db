#include "app/Initializevars.h"

#include <cstring>
#include <iterator>

namespace nerivane {

void WriteRecordText(char16_t* destination, std::size_t units, const std::string& text) {
    std::size_t i = 0;
    for (; i + 1 < units && i < text.size(); ++i)
        destination[i] = static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    for (; i < units; ++i) destination[i] = u'\0';
}

std::string ReadRecordText(const char16_t* source, std::size_t units) {
    std::string text;
    for (std::size_t i = 0; i < units && source[i] != u'\0'; ++i)
        text.push_back(source[i] < 0x80 ? static_cast<char>(source[i]) : '?');
    return text;
}

std::string VersionText(const DesignState& state) {
    return "Version " + std::to_string(state.VersionMajor) + "." +
           std::to_string(state.VersionMinor);
}

void StampFormatVersion(DesignState& state) {
    WriteRecordText(state.Identity, IdentityTextUnits, IdentityText);
    state.VersionMajor = FormatVersionMajor;
    state.VersionMinor = FormatVersionMinor;
    state.RecordSize = DesignRecordSize;
    WriteRecordText(state.VersionText, std::size(state.VersionText), VersionText(state));
}

DesignState DefaultDesignState() {
    DesignState state;
    // Zero first: reserved bytes and unused text units are part of the saved image.
    std::memset(&state, 0, sizeof state);
    StampFormatVersion(state);

    for (int i = 0; i < MaxSections; ++i) {
        state.SectionC1[i] = 1e-10;
        state.SectionC2[i] = 1e-9;
    }
    state.ResponseIndex = Response::AdjustableGauss;
    state.TopologyIndex = Topology::VcvsLowPass;
    state.SweepIndex = Sweep::OneDecade;
    state.NumPoles = 3;
    state.NumSections = SectionsForPoles(state.TopologyIndex, state.NumPoles);
    state.SelectedSection = 0;
    state.F0 = 5000.0;
    state.BandWidth = 2000.0;
    state.Ripple = 0.2;
    state.Gamma = 0.0;
    state.SectionGain = 1.0;
    state.PlotTopDb = 10.0;
    state.GroupDelayScale = 1.0;
    state.PhaseThreshold = -30.0;
    state.AdjustFocus = FocusSection;
    state.IdealOpAmp = 1;
    state.OpAmpGainBandwidth = 1e8;  // an ideal op amp is modelled as 100 MHz and 0 ohms
    state.OpAmpOutputResistance = 0.0;
    state.Tolerance = ToleranceMode::Exact;
    state.PlotMag = 1;
    state.AutoScale = 1;
    state.ReadOut = ReadOutMode::GraphPosition;
    state.Magnitude = MagnitudeMode::Db;
    state.Phase = PhaseMode::Plain;
    state.FreqMin = 0.1 * state.F0;
    state.FreqMax = 10.0 * state.F0;
    ResetSections(state.Sections);
    WriteRecordText(state.ToleranceText, std::size(state.ToleranceText), "Exact R");
    WriteRecordText(state.CapacitorToleranceText, std::size(state.CapacitorToleranceText), "10 %");
    WriteRecordText(state.ResistorToleranceText, std::size(state.ResistorToleranceText), "1 %");
    return state;
}

}  // namespace nerivane
