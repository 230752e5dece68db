#include "files/Atomicwrite.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <vector>

namespace nerivane {
namespace {

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// The permissions the file should end with: the old file's, or what a new file would get.
mode_t FinalMode(const std::string& path) {
    struct stat existing {};
    if (::stat(path.c_str(), &existing) == 0) return existing.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

bool WriteFileAtomically(const std::string& path, std::string_view bytes) {
    // The new file sits beside the old one: a rename within one folder is atomic.
    std::string pattern = path + ".saving-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    const int descriptor = ::mkstemp(name.data());
    if (descriptor < 0) return false;
    const std::string temporary(name.data());
    const bool complete = ::fchmod(descriptor, FinalMode(path)) == 0 &&
                          WriteAll(descriptor, bytes) && ::fsync(descriptor) == 0;
    const bool closed = ::close(descriptor) == 0;
    if (!complete || !closed || std::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    // Make the rename itself durable; a folder that cannot be synced is no reason to fail.
    const int folder = ::open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return true;
}

}  // namespace nerivane
