// Writing a file so that a failure or a crash part-way never damages the file that was there:
// the bytes go to a new file in the same folder, which replaces the old one only once it is
// complete and on disk.
#pragma once

#include <string>
#include <string_view>

namespace nerivane {

// True when path now holds exactly these bytes; false (and the old file untouched) otherwise,
// with the system's words for what went wrong in reason when it is given.
bool WriteFileAtomically(const std::string& path, std::string_view bytes,
                         std::string* reason = nullptr);

}  // namespace nerivane
