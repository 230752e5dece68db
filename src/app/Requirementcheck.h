// The design as calculated against the requirement: whether the nominal circuit meets the mask
// and with what margins, and in a worst-case analysis which runs do (the yield). Each run is
// checked at the sweep's points inside the mask's regions and at the mask's own check points
// (its edges exactly); attenuation counts from the nominal response's peak over all of them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "circuit/Circuitanalysis.h"
#include "response/Requirementmask.h"
#include "response/Traces.h"

namespace nerivane {

struct RequirementCheck {
    bool active = false;
    RequirementMask mask;
    double referenceDb = 0.0;  // the nominal response's peak: attenuation counts from here
    MaskMargins nominal{};     // run 0
    int runs = 0;
    int runsMeeting = 0;
    std::vector<std::uint8_t> runMeets;  // one entry per run, 1 where it meets the mask
};

// Checks the runs of one calculation as they are made. The mask's points are simulated first,
// every run with the same random draws the sweep's runs will take.
class RequirementChecker {
  public:
    // random is the generator the sweep's runs will draw from, copied before they start.
    RequirementChecker(const RequirementMask& mask, const SimulationInputs& sweep,
                       ToleranceRandom random, RequirementCheck& check);
    void CheckRun(int run, std::span<const double> frequencies, const Traces& traces);

  private:
    RequirementCheck& check_;
    std::vector<double> points_;
    std::vector<double> pointDb_;  // run by run, edge by edge
};

// The report's lines: the requirement, whether the nominal design meets it with its margins,
// and in a worst-case analysis the yield.
std::vector<std::string> RequirementLines(const RequirementCheck& check, bool worstCase);

}  // namespace nerivane
