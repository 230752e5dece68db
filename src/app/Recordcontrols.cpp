#include "app/Recordcontrols.h"

namespace nerivane {

RecordControls ControlsFromRecord(const DesignState& s) {
    RecordControls c;
    for (const BoxRule& rule : BoxRules())
        if (rule.recordText != nullptr)
            c.texts[static_cast<std::size_t>(rule.id)] = rule.recordText(s);
    c.idealOpAmp = s.IdealOpAmp;
    // A worst-case design comes back as standard, as the file records it: no long analysis
    // starts by itself.
    c.mode = s.Tolerance == ToleranceMode::Exact ? ToleranceMode::Exact : ToleranceMode::Standard;
    c.capacitorPercent = s.CapacitorTolerancePercent;
    c.resistorPercent = s.ResistorTolerancePercent;
    return c;
}

void LoadRecordTexts(const RecordControls& controls, const ParameterBoxes& boxes) {
    for (const BoxRule& rule : BoxRules())
        if (const std::string& text = controls.texts[static_cast<std::size_t>(rule.id)];
            !text.empty())
            boxes[rule.id].SetText(text);
}

}  // namespace nerivane
