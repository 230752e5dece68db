// What a calculation step has to tell the user, returned to whoever called it: the front end
// decides how to show it (a message box, a line on standard error, an entry in the JSON).
#pragma once

#include <string>
#include <vector>

namespace nerivane {

struct Message {
    std::string text;
    std::string caption;
};

// The caption of a plain message: the program's name.
inline constexpr const char* ProgramCaption = "Nerivane";

// In the order they were raised.
using Messages = std::vector<Message>;

}  // namespace nerivane
