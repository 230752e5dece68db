// The command line's JSON result: the design as calculated, the repairs made to its boxes,
// the messages raised and the prototype sections. Doubles keep every bit; NaN and infinities
// become null.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "app/Calculationdriver.h"
#include "app/DesignState.h"

namespace nerivane::cli {

struct Repair {
    std::string box;
    std::string typed;
    std::string repaired;
};

nlohmann::json DesignJson(const DesignState& state);
nlohmann::json PrototypeJson(const DesignState& state, const CalculationResult& result);
nlohmann::json ResultJson(const DesignState& state, const CalculationResult& result,
                          const std::vector<Repair>& repairs,
                          const std::vector<std::string>& messages);

}  // namespace nerivane::cli
