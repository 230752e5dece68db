// The number of a choice the program lists in a fixed order (circuits, response families,
// sweeps), for the tables and menus laid out in that order and for the design file.
#pragma once

#include <type_traits>

namespace nerivane {

template <typename Choice>
requires std::is_enum_v<Choice>
constexpr int Index(Choice choice) {
    return static_cast<int>(choice);
}

}  // namespace nerivane
