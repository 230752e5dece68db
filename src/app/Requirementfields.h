// The requirement as a dialog shows it: the mask read from the texts a person types into its
// fields (values with SI prefixes, "1k", "2,2 kHz"), the texts a mask is shown with, and the
// cells of the table of orders that meet it.
#pragma once

#include <array>
#include <string>

#include "app/Requirementorders.h"
#include "response/Requirementmask.h"

namespace nerivane {

struct MaskFields {
    MaskKind kind = MaskKind::LowPass;
    // Low and high pass use the first of each; band pass and notch both, lower first.
    std::array<std::string, 2> passEdges, stopEdges;
    std::string centre;  // band pass and notch; left empty it is the middle of the band
    std::string passDb, stopDb;
};

// The mask the fields hold, or why they hold none (an empty or unreadable field is named).
ParsedMask MaskFromFields(const MaskFields& fields);
MaskFields FieldsOf(const RequirementMask& mask);

// "fp" or "fp1": how the mask's text and the dialog name each field.
const char* PassEdgeName(MaskKind kind, int index);
const char* StopEdgeName(MaskKind kind, int index);

// Family, poles, F0, band width, pass-edge margin, stop-edge margin, group-delay variation
// and overshoot; a family that cannot meet the mask says so in its poles and leaves the rest
// empty.
inline constexpr int OrderColumnCount = 8;
std::array<std::string, OrderColumnCount> OrderRowCells(const OrderRow& row, int maxPoles);

}  // namespace nerivane
