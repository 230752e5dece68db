// The command line: options set the same boxes a person types into, one calculation runs,
// and the requested outputs are written; with --batch, one design a line of standard input.
// Returns the exit status (0 done, 1 a file could not be written, 2 a usage error).
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <vector>

namespace nerivane::cli {

int RunCli(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
           std::ostream& err);
// With nothing on standard input.
int RunCli(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace nerivane::cli
