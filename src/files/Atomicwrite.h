// Writing a file so that a failure or a crash part-way never damages the file that was there:
// the bytes go to a new file in the same folder, which replaces the old one only once it is
// complete and on disk.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace nerivane {

// True when path now holds exactly these bytes; false (and the old file untouched) otherwise,
// with the system's words for what went wrong in reason when it is given.
bool WriteFileAtomically(const std::string& path, std::string_view bytes,
                         std::string* reason = nullptr);

// The same for a file made piece by piece: produce hands each piece to the writer it is given,
// so a large file never has to be held whole in memory. An exception from produce leaves the
// old file untouched and goes on to the caller.
using PieceWriter = std::function<void(std::string_view piece)>;
bool WriteFileAtomically(const std::string& path,
                         const std::function<void(const PieceWriter& write)>& produce,
                         std::string* reason = nullptr);

}  // namespace nerivane
