// The command line's JSON result: the design as calculated, the repairs made to its boxes,
// the messages raised, the prototype sections, the parts of every section, the report, the
// sweep, the nominal response and its traces, the pulse response when computed, in worst-case
// mode each trace's envelope over the runs, and with a requirement its check and the orders
// that meet it. Doubles keep every bit; NaN, infinities and the traces' undrawn points become
// null; `components` keeps the markers as the numbers they are, `parts` says what they mean.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/Calculationdriver.h"
#include "app/DesignState.h"
#include "app/Requirementorders.h"
#include "cli/Applyoptions.h"
#include "cli/JsonWriter.h"

namespace nerivane::cli {

inline constexpr int JsonFormatVersion = 1;

struct CliOutcome {
    const DesignState& state;
    const DesignResults& results;
    const ComponentSettings& settings;
    bool worstCase;
    const std::vector<OrderRow>& orders;  // empty without a requirement
    std::vector<Repair> repairs;
    std::vector<std::string> messages;
    int batchLine = 0;  // the input line of a batch's result, written first; 0 outside a batch
};

// The document as text, indented by two spaces or on one line, ending in a new line, handed to
// write piece by piece.
void WriteResultJson(const CliOutcome& outcome, const std::function<void(std::string_view)>& write,
                     JsonLayout layout = JsonLayout::Indented);

}  // namespace nerivane::cli
