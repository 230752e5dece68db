// Designing to a requirement: for each response family, the fewest poles whose ideal response
// meets a mask, with the F0 (and band width) that leaves equal margins at the pass and stop
// edges, and what that design costs in group-delay variation and overshoot. The search
// evaluates the program's own prototypes, so a row applied to the design meets the mask.
#pragma once

#include <string>
#include <vector>

#include "app/DesignState.h"
#include "app/Parameterboxes.h"
#include "response/Requirementmask.h"

namespace nerivane {

struct OrderSearch {
    RequirementMask mask;
    int maxPoles = 20;    // the circuit's limit: 10 for band pass and notch
    double ripple = 0.2;  // Papoulis is built with the design's ripple
    double gamma = 0.0;   // Adjustable Gauss at the design's gamma
    Response notchFamily =
        Response::Butterworth;  // a notch's sections are the same whatever the family

    friend bool operator==(const OrderSearch&, const OrderSearch&) = default;
};

struct OrderRow {
    Response family = Response::Butterworth;
    int poles = 0;        // 0: no order up to the limit meets the mask
    double ripple = 0.0;  // what the family is built with (Chebyshev: within Ap, most margin)
    // As the boxes hold them (a whole hertz), so the design applied is the one measured.
    double f0Hz = 0.0;
    double bandwidthHz = 0.0;  // band pass and notch
    double passMarginDb = 0.0;
    double stopMarginDb = 0.0;
    double delayVariationS = 0.0;   // largest less smallest group delay over the pass band
    double overshootPercent = 0.0;  // of the low-pass prototype's step; NaN for a notch
    bool Meets() const { return poles > 0; }
};

// One row per family (one for a notch, whose sections do not depend on the family), in the
// families' order. An impossible mask gives rows that meet nothing.
std::vector<OrderRow> RequirementOrders(const OrderSearch& search);

// The table as text, a line per family under a heading: poles, F0 (and band width), the
// margins, delay variation and overshoot, or that no order up to the limit meets the mask.
std::vector<std::string> OrderTableLines(const std::vector<OrderRow>& rows, int maxPoles);

// The search as the design on screen sets it: its circuit's pole limit, ripple and gamma.
OrderSearch OrderSearchFor(const RequirementMask& mask, const DesignState& state);

// Puts a row into the design: its family (and a circuit of the mask's kind if the design's is
// not, keeping VCVS or MFB), and the poles, F0, band width and Chebyshev ripple into the boxes
// a calculation reads.
void ApplyOrderRow(const OrderRow& row, MaskKind kind, DesignState& state,
                   const ParameterBoxes& boxes);

}  // namespace nerivane
