// The window's status line: the design it holds (circuit, family, poles, F0 and, for band pass
// and notch, the band width), whether it meets the requirement and how many build warnings the
// last calculation raised.
#pragma once

#include <string>
#include <vector>

#include "app/DesignState.h"
#include "app/Requirementcheck.h"

namespace nerivane {

// "VCVS Low Pass, Butterworth, 4 poles, F0 1.00 kHz": the menus' names for circuit and family.
std::string DesignSummaryText(const DesignState& state);

// The family as the Response menu names it.
std::string FamilyName(Response family);

// "requirement met", "requirement NOT met", in a worst-case analysis with the yield
// ("requirement NOT met, yield 87.3 % (873 of 1000 runs)"); empty when nothing was checked.
std::string RequirementSummaryText(const RequirementCheck& check, bool worstCase);

// "2 warnings: <the first>", or empty when there are none.
std::string WarningsSummaryText(const std::vector<std::string>& warnings);

}  // namespace nerivane
