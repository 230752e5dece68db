// Batch mode: one design a line from standard input, as a JSON object of the options or as an
// option string, and one JSON result a line out, in order. A line that fails gives a result
// saying why and the stream goes on, so a script never loses its place.
#pragma once

#include <functional>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace nerivane::cli {

// Runs one design's arguments (the program's name first) as the batch's line `line`, writing
// its one-line result to out and what went wrong to err; returns its exit status. What it
// wrote to out is dropped unless the status is 0.
using DesignRunner = std::function<int(const std::vector<std::string>& args, int line,
                                       std::ostream& out, std::ostream& err)>;

// Returns 0, or 1 when standard output cannot be written.
int RunBatch(std::istream& in, std::ostream& out, std::ostream& err, const DesignRunner& run);

// A line's arguments, without the program's name: a JSON object's keys are the options without
// their dashes ({"poles": 20, "f0": "5k", "c1": ["10n", "22n"], "report": true}); anything else
// is split as a shell splits words, quotes kept together. Nothing for a blank line or a comment
// (#); throws std::invalid_argument saying what is wrong with the line.
std::optional<std::vector<std::string>> BatchLineArguments(const std::string& line);

}  // namespace nerivane::cli
