// The reference design kept beside the current one for comparison: a full copy of its record,
// traces and parts, drawn dashed over the current design after being simulated again over the
// current sweep, and exchangeable with the current design.
#pragma once

#include <memory>
#include <string>

#include "app/Calculationdriver.h"
#include "app/DesignState.h"
#include "circuit/Components.h"
#include "response/Traces.h"

namespace nerivane {

struct ReferenceDesign {
    bool isSet = false;  // "Exhange Ref" and "Plot Ref" stay disabled until the first "Set Ref"
    DesignState record{};
    SectionComponents parts{};
    std::unique_ptr<Traces> traces = std::make_unique<Traces>();
    std::string name = "Butterworth";
};

// "Set Ref": the current design becomes the reference (and is plotted from now on).
void SetReference(ReferenceDesign& reference, DesignState& current, const DesignResults& results,
                  const std::string& currentName);

// "Exhange Ref": the reference's record is returned for loading into the controls, and the
// current design, with its traces and parts as they are, becomes the reference.
DesignState ExchangeReference(ReferenceDesign& reference, const DesignState& current,
                              const DesignResults& results, const std::string& currentName);

// The reference simulated again over the current sweep (its own parts, topology, op amp and
// threshold), so its traces line up with the current design's.
void ReSimulateReference(ReferenceDesign& reference, const DesignState& current,
                         OpAmpModel opAmpModel = OpAmpModel::Magnitude);

}  // namespace nerivane
