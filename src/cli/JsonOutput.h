// The command line's JSON result: the design as calculated, the repairs made to its boxes,
// the messages raised, the prototype sections, the parts of every section, the report, the
// sweep, the nominal response and its traces, the pulse response when computed, and in
// worst-case mode the dB envelope over the runs. Doubles keep every bit; NaN and infinities
// become null; markers and the undrawn-point value are written as the numbers they are.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/Calculationdriver.h"
#include "app/DesignState.h"
#include "cli/Applyoptions.h"

namespace nerivane::cli {

// The dB magnitude range met at each point over all runs of a worst-case analysis.
struct WorstCaseEnvelope {
    int runs = 0;
    std::array<double, PlotPoints> dbMin{};
    std::array<double, PlotPoints> dbMax{};
};

struct CliOutcome {
    const DesignState& state;
    const DesignResults& results;
    const ComponentSettings& settings;
    const WorstCaseEnvelope* worstCase;  // null unless in worst-case mode
    std::vector<Repair> repairs;
    std::vector<std::string> messages;
};

// The document as text, indented by two spaces, ending in a new line, handed to write piece
// by piece.
void WriteResultJson(const CliOutcome& outcome, const std::function<void(std::string_view)>& write);

}  // namespace nerivane::cli
