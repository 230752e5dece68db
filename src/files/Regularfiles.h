// Reading the files a user names (design files, the settings file) safely: only regular
// files are opened, without blocking on a pipe or a device, and a path that cannot even be
// checked (a loop of links, a name too long, a folder that may not be read) counts as
// missing instead of ending the program.
#pragma once

#include <cstddef>
#include <string>

namespace nerivane {

// True when path names a regular file (through links); false when it does not or when that
// cannot be found out.
bool IsRegularFile(const std::string& path);

// True only when the system says nothing is there (no such file, or a path through something
// that is no folder); a path that cannot be checked is not missing: reading it tells why.
bool IsMissing(const std::string& path);

enum class ReadStatus { Read, Missing, NotAFile, Unreadable, TooLarge };

struct FileContents {
    ReadStatus status = ReadStatus::Missing;
    std::string bytes;
    std::string reason;  // the system's words when it could not be read
};

// The whole file when it is a regular file of at most limit bytes.
FileContents ReadRegularFile(const std::string& path, std::size_t limit);

}  // namespace nerivane
