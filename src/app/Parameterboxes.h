// The parameter boxes, one row each: the name its widget and the command line's warnings use,
// its caption, the text it starts with, the unit of that text, and how an entry is read and
// repaired (limits that may depend on the design, the value put in for an unreadable entry,
// the spinner's steps). The window, the command line, the design file and the settings file
// all build their boxes from this table.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "app/DesignState.h"
#include "numerics/EditBox.h"

namespace nerivane {

enum class BoxId {
    NumPoles,
    Ripple,
    F0,
    BandWidth,
    Gain,
    Gamma,
    Section,
    TestValue,
    C1Value,
    C2Value,
    PhaseThreshold,
    GainBandwidth,
    OutputResistance,
    WorstCaseRuns,
};
inline constexpr std::size_t BoxCount = 14;

// How the box shows what it read: a whole number, a fixed number of decimals, or the text as
// the user typed it (a box that is only read).
enum class BoxFormat { Integer, Fixed, AsTyped };

// The texts a box is read against, as a person would type them.
struct BoxLimits {
    std::string minimum;
    std::string repair;  // what an unreadable entry becomes
    std::string maximum;
};

struct BoxRule {
    BoxId id;
    const char* name;     // "F0Box"
    const char* caption;  // the label beside it
    const char* startText;
    const char* unit;  // of the text: "kHz", "dB", "MHz", "ohm", or "" for a plain number
    // Read by the adjusters against limits; the capacitor boxes have a reader of their own and
    // only show the selected section's parts, so no one types a design into them.
    bool adjusted;
    BoxLimits (*limits)(const DesignState& state);
    BoxFormat format;
    int decimals;
    double fineStep;  // a spinner click, and with Ctrl held
    double coarseStep;
    // The box's text for a design record (opening a file, exchanging the reference); null for
    // a box the record does not set.
    std::string (*recordText)(const DesignState& state);
};

const std::array<BoxRule, BoxCount>& BoxRules();
const BoxRule& RuleOf(BoxId id);

// The boxes a calculation reads, owned by the front end, one per row of the table.
class ParameterBoxes {
  public:
    explicit ParameterBoxes(const std::array<EditBox*, BoxCount>& boxes) : boxes_(boxes) {}
    EditBox& operator[](BoxId id) const { return *boxes_[static_cast<std::size_t>(id)]; }

  private:
    std::array<EditBox*, BoxCount> boxes_;
};

// A set of boxes without widgets (the command line's, tests'), each starting with its row's
// text and made from its row.
template <typename Box>
class BoxSet {
  public:
    BoxSet() : BoxSet(std::make_index_sequence<BoxCount>()) {}
    Box& operator[](BoxId id) { return boxes_[static_cast<std::size_t>(id)]; }
    const Box& operator[](BoxId id) const { return boxes_[static_cast<std::size_t>(id)]; }
    ParameterBoxes Parameters() {
        std::array<EditBox*, BoxCount> boxes{};
        for (std::size_t i = 0; i < BoxCount; ++i) boxes[i] = &boxes_[i];
        return ParameterBoxes(boxes);
    }

  private:
    template <std::size_t... I>
    explicit BoxSet(std::index_sequence<I...>) : boxes_{Box(BoxRules()[I])...} {}
    std::array<Box, BoxCount> boxes_;
};

// A box that is a string and a flag, made from its row.
class RuleTextBox : public TextBox {
  public:
    explicit RuleTextBox(const BoxRule& rule) : TextBox(rule.startText) {}
};
using TextBoxes = BoxSet<RuleTextBox>;

}  // namespace nerivane
