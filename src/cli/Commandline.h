// The command line's words read into its options and switches. The parser is built once a
// thread and then reused, since building it costs more than reading a batch line with it.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/Applyoptions.h"

namespace nerivane::cli {

struct CommandLine {
    Options options;
    bool report = false;
    bool autoCaps = false;
    bool notchIndependent = false;
    bool bestStandard = false;
    bool strict = false;
    bool batch = false;
};

// The run's options; nothing when the words ask for no design (help or version, written to
// out) or cannot be read (the message on err), with status the run's exit status. On a batch
// line, help and version are errors.
std::optional<CommandLine> ReadCommandLine(const std::vector<std::string>& args, bool batchLine,
                                           std::ostream& out, std::ostream& err, int& status);

}  // namespace nerivane::cli
