// The window's status line: the design it holds (circuit, family, poles, F0 and, for band pass
// and notch, the band width) and how many build warnings the last calculation raised.
#pragma once

#include <string>
#include <vector>

#include "app/DesignState.h"

namespace nerivane {

// "VCVS Low Pass, Butterworth, 4 poles, F0 1.00 kHz": the menus' names for circuit and family.
std::string DesignSummaryText(const DesignState& state);

// The Response menu's name of a family ("Adjustable Gauss").
std::string FamilyName(Response family);

// "2 warnings: <the first>", or empty when there are none.
std::string WarningsSummaryText(const std::vector<std::string>& warnings);

}  // namespace nerivane
