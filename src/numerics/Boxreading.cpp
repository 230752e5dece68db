#include "numerics/Boxreading.h"

#include "numerics/Numberreading.h"

namespace nerivane {
namespace {

// Reads a box against its limits. With valid limits the box always ends holding a legal value; a
// replaced entry shows as repaired until the next read of that box.
template <typename Parser>
auto ReadBox(EditBox& box, const std::string& minText, const std::string& defaultText,
             const std::string& maxText, Parser parse, const char* guardMessage,
             Messages& messages) {
    const auto minimum = parse(minText);
    const auto fallback = parse(defaultText);
    const auto maximum = parse(maxText);
    // Limits are written by the program, so a bad one is a programming error; reading goes on.
    if (!minimum.ok || !fallback.ok || !maximum.ok)
        messages.push_back({guardMessage, ProgramCaption});
    using Value = decltype(minimum.value);
    const Value minValue = minimum.ok ? minimum.value : Value{1};
    const Value defaultValue = fallback.ok ? fallback.value : Value{1};
    const Value maxValue = maximum.ok ? maximum.value : Value{1};

    box.SetRepaired(false);
    const auto entry = parse(box.Text());
    Value value = entry.value;
    if (!entry.ok) {
        box.SetText(defaultText);
        value = defaultValue;
        box.SetRepaired(true);
    }
    if (value < minValue) {
        box.SetText(minText);
        value = minValue;
        box.SetRepaired(true);
    }
    if (value > maxValue) {
        box.SetText(maxText);
        value = maxValue;
        box.SetRepaired(true);
    }
    return value;
}

}  // namespace

double EditBoxToDouble(EditBox& box, const std::string& minText, const std::string& defaultText,
                       const std::string& maxText, Messages& messages) {
    return ReadBox(box, minText, defaultText, maxText, ParseLocaleFloat,
                   "Invalid String Argument in EditBoxToDouble function.", messages);
}

std::int32_t EditBoxToInt(EditBox& box, const std::string& minText, const std::string& defaultText,
                          const std::string& maxText, Messages& messages) {
    return static_cast<std::int32_t>(ReadBox(box, minText, defaultText, maxText, ParseInteger,
                                             "Invalid String Argument in EditBoxToInt function.",
                                             messages));
}

}  // namespace nerivane
