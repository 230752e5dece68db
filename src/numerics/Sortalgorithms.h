// The index heap sort that orders prototype sections by damping: it permutes an index array
// so the keys it points to are ascending or descending, leaving the keys themselves in place.
// Not stable; bounded to n*n steps so a corrupt input can never hang the calculation.
#pragma once

#include <span>

namespace nerivane {

// index holds 0 .. n-1 on entry. Returns true when the sort finished, false when it stopped
// at the step bound (never for 2 to 20 items) or had nothing to sort (a single item).
bool SortIndexByKey(std::span<const double> keys, std::span<int> index, int n, bool ascending);

}  // namespace nerivane
