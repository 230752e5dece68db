// The command line's options turned into the design: names select the menus' items, values
// go into the boxes they name (to be read and repaired there like typing), capacitor lists
// set the sections' capacitors. A value that fits nowhere is a usage error.
#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/DesignState.h"
#include "circuit/Componentsettings.h"
#include "cli/CliBox.h"

namespace nerivane::cli {

// Its text is the one line the command line prints before exiting with status 2.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The options as given; absent ones keep the program's start-up defaults.
struct Options {
    std::map<std::string, std::string> values;
    bool Has(const std::string& name) const { return values.count(name) > 0; }
    const std::string& Get(const std::string& name) const { return values.at(name); }
};

// What a box did with a value it could not take: the box, the text given, the text it shows.
struct Repair {
    std::string box;
    std::string typed;
    std::string repaired;
};

// Sets the design from the options; returns the repairs of the capacitor boxes (the other
// boxes record their own, read when the calculation reads them).
std::vector<Repair> ApplyOptions(const Options& options, DesignState& state, CliBoxes& boxes,
                                 ComponentSettings& settings);

// --open: the design file's record and the controls loaded from it, as File > Open does.
// Throws std::runtime_error with the program's message when the file is missing or rejected;
// returns what the file held out of range and was replaced.
std::vector<std::string> OpenDesign(const std::string& path, DesignState& state, CliBoxes& boxes,
                                    ComponentSettings& settings);

std::uint32_t SeedOption(const Options& options);

// A plot of this size with a thousand worst-case runs is drawn in about two seconds.
inline constexpr int MinImageSide = 64;
inline constexpr int MaxImageSide = 4000;

struct ImageSize {
    int width = 800;
    int height = 500;
};
ImageSize PlotSizeOption(const Options& options);

}  // namespace nerivane::cli
