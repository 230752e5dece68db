#include "app/Referencedesign.h"

#include <array>
#include <memory>

#include "circuit/Circuitanalysis.h"
#include "response/Magphasefunctions.h"

namespace nerivane {

void SetReference(ReferenceDesign& reference, DesignState& current, const DesignResults& results,
                  const std::string& currentName) {
    // Ticked first, so that both records agree and an exchange keeps the reference shown.
    current.PlotReference = 1;
    reference.record = current;
    *reference.traces = results.traces;
    reference.parts = results.parts;
    reference.name = currentName;
    reference.isSet = true;
}

DesignState ExchangeReference(ReferenceDesign& reference, const DesignState& current,
                              const DesignResults& results, const std::string& currentName) {
    const DesignState formerReference = reference.record;
    reference.record = current;
    *reference.traces = results.traces;
    reference.parts = results.parts;
    reference.name = currentName;
    return formerReference;
}

void ReSimulateReference(ReferenceDesign& reference, const DesignState& current,
                         OpAmpModel opAmpModel) {
    const DesignState& r = reference.record;
    auto frequencies = std::make_unique<std::array<double, TracePoints>>();
    auto response = std::make_unique<std::array<Complex, TracePoints>>();
    ReferenceFrequencyGrid(current.SweepIndex, current.F0, *frequencies);
    SimulateCascade(r.TopologyIndex, reference.parts, r.NumSections,
                    {r.OpAmpGainBandwidth, r.OpAmpOutputResistance, opAmpModel}, *frequencies,
                    *response);
    ComputeTraces(*response, *frequencies, r.PhaseThreshold, r.TopologyIndex, r.NumSections,
                  *reference.traces);
}

}  // namespace nerivane
