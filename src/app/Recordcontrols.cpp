#include "app/Recordcontrols.h"

#include <iterator>

#include "app/Initializevars.h"
#include "numerics/CheckedMath.h"
#include "numerics/Formatfunctions.h"

namespace nerivane {
namespace {

// "10 %" -> 10; a caption that names no class keeps the fallback.
int PercentOf(const char16_t* text, std::size_t units, int fallback) {
    const std::string caption = ReadRecordText(text, units);
    int percent = 0;
    std::size_t digits = 0;
    while (digits < caption.size() && caption[digits] >= '0' && caption[digits] <= '9')
        percent = percent * 10 + (caption[digits++] - '0');
    return digits > 0 && digits < 3 && ToleranceClassOf(percent) ? percent : fallback;
}

}  // namespace

RecordControls ControlsFromRecord(const DesignState& s) {
    RecordControls c;
    c.numPoles = std::to_string(s.NumPoles);
    c.f0 = FormatFixed(s.F0 / 1000.0, 3);
    c.bandWidth = FormatFixed(s.BandWidth / 1000.0, 3);
    c.gain = FormatFixed(20.0 * CheckedLog10(s.SectionGain), 3);
    c.ripple = FormatFixed(s.Ripple, 3);
    c.gamma = FormatFixed(s.Gamma, 2);
    c.gainBandwidthMHz = FormatFixed(s.OpAmpGainBandwidth / 1e6, 3);
    c.outputResistance = FormatFixed(s.OpAmpOutputResistance, 3);
    c.idealOpAmp = s.IdealOpAmp != 0;
    // The record keeps "Standard R" for a worst-case design too: it comes back as standard.
    c.mode = ReadRecordText(s.ToleranceText, std::size(s.ToleranceText)) == "Exact R"
                 ? ToleranceMode::Exact
                 : ToleranceMode::Standard;
    c.capacitorPercent =
        PercentOf(s.CapacitorToleranceText, std::size(s.CapacitorToleranceText), 10);
    c.resistorPercent = PercentOf(s.ResistorToleranceText, std::size(s.ResistorToleranceText), 1);
    return c;
}

}  // namespace nerivane
