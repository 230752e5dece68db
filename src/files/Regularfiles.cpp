#include "files/Regularfiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace nerivane {

bool IsRegularFile(const std::string& path) {
    struct stat status {};
    return !path.empty() && ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool IsMissing(const std::string& path) {
    struct stat status {};
    if (path.empty()) return true;
    if (::stat(path.c_str(), &status) == 0) return false;
    return errno == ENOENT || errno == ENOTDIR;
}

FileContents ReadRegularFile(const std::string& path, std::size_t limit) {
    FileContents contents;
    // Non-blocking, so that opening a pipe with no writer returns at once; the type is then
    // checked on what was opened, not on a name that may change in between.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) {
        contents.status =
            errno == ENOENT || errno == ENOTDIR ? ReadStatus::Missing : ReadStatus::Unreadable;
        contents.reason = std::strerror(errno);
        return contents;
    }
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        contents.status = ReadStatus::NotAFile;
        contents.reason = "not a regular file";
        return contents;
    }
    contents.status = ReadStatus::Read;
    char buffer[65536];
    while (true) {
        const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            contents.status = ReadStatus::Unreadable;
            contents.reason = std::strerror(errno);
            break;
        }
        if (count == 0) break;
        contents.bytes.append(buffer, static_cast<std::size_t>(count));
        if (contents.bytes.size() > limit) {
            contents.status = ReadStatus::TooLarge;
            contents.reason = "larger than " + std::to_string(limit) + " bytes";
            break;
        }
    }
    ::close(descriptor);
    if (contents.status != ReadStatus::Read) contents.bytes.clear();
    return contents;
}

}  // namespace nerivane
