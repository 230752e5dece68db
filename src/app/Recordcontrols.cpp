#include "app/Recordcontrols.h"

#include <iterator>

#include "app/Initializevars.h"

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
    for (const BoxRule& rule : BoxRules())
        if (rule.recordText != nullptr)
            c.texts[static_cast<std::size_t>(rule.id)] = rule.recordText(s);
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

void LoadRecordTexts(const RecordControls& controls, const ParameterBoxes& boxes) {
    for (const BoxRule& rule : BoxRules())
        if (const std::string& text = controls.texts[static_cast<std::size_t>(rule.id)];
            !text.empty())
            boxes[rule.id].SetText(text);
}

}  // namespace nerivane
