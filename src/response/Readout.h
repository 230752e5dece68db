// The one-line read-out above the plot while the pointer moves over it: the frequency under
// the pointer and, for each trace shown, either the value the pointer's height stands for on
// that trace's scale or the trace's computed value at that frequency.
#pragma once

#include <optional>
#include <string>

#include "response/Plot.h"
#include "response/Traces.h"

namespace nerivane {

enum class ReadoutMode { GraphPosition, ValueAtFrequency };

// The point index under pointer x, kept within the traces.
int ReadoutIndex(const PlotGeometry& geometry, int x);

// The text for pointer (x, y) in image coordinates, or nothing outside the plot rectangle.
std::optional<std::string> ReadoutText(const PlotView& view, const PlotGeometry& geometry,
                                       const Traces& traces, int x, int y, ReadoutMode mode);

}  // namespace nerivane
