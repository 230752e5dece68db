#include "files/Atomicwrite.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <vector>

namespace nerivane {
namespace {

// The new file's name: short, so that a name near the system's limit can still be saved, and
// hidden, so that no file dialog lists a save in progress.
constexpr const char* TemporaryPrefix = ".nerivane-saving-";
// A temporary file this old belongs to a save that was interrupted.
constexpr std::time_t StaleSeconds = 600;
constexpr int MaxLinks = 40;

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// The file a name finally stands for: a save through a symbolic link replaces the file the
// link points to and keeps the link.
std::string LinkTarget(std::string path) {
    for (int i = 0; i < MaxLinks; ++i) {
        char buffer[PATH_MAX];
        const ssize_t length = ::readlink(path.c_str(), buffer, sizeof buffer - 1);
        if (length < 0) return path;
        const std::string target(buffer, static_cast<std::size_t>(length));
        path = target.starts_with('/') ? target : FolderOf(path) + "/" + target;
    }
    return path;
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

// Removes what saves of this user that were cut off left in the folder.
void RemoveStaleTemporaries(const std::string& folder) {
    DIR* entries = ::opendir(folder.c_str());
    if (entries == nullptr) return;
    const std::time_t now = std::time(nullptr);
    while (const dirent* entry = ::readdir(entries)) {
        if (std::strncmp(entry->d_name, TemporaryPrefix, std::strlen(TemporaryPrefix)) != 0)
            continue;
        const std::string path = folder + "/" + entry->d_name;
        struct stat status {};
        if (::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
            status.st_uid == ::getuid() && now - status.st_mtime > StaleSeconds)
            ::unlink(path.c_str());
    }
    ::closedir(entries);
}

bool Fail(std::string* reason, const std::string& why) {
    if (reason != nullptr) *reason = why;
    return false;
}

// Writes every piece produce hands over; the first failure's errno (0 when none) is returned
// and later pieces are dropped.
int WritePieces(int descriptor, const std::function<void(const PieceWriter&)>& produce) {
    int error = 0;
    produce([&](std::string_view piece) {
        if (error == 0 && !WriteAll(descriptor, piece)) error = errno;
    });
    return error;
}

bool WriteInPlace(const std::string& path, const std::function<void(const PieceWriter&)>& produce,
                  std::string* reason) {
    // A pipe nobody reads fails at once instead of waiting for a reader that never comes; once
    // open, writes wait for the reader as usual.
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return Fail(reason, std::strerror(errno));
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    const int error = WritePieces(descriptor, produce);
    ::close(descriptor);
    return error == 0 || Fail(reason, std::strerror(error));
}

}  // namespace

bool WriteFileAtomically(const std::string& path, std::string_view bytes, std::string* reason) {
    return WriteFileAtomically(
        path, [bytes](const PieceWriter& write) { write(bytes); }, reason);
}

bool WriteFileAtomically(const std::string& named,
                         const std::function<void(const PieceWriter& write)>& produce,
                         std::string* reason) {
    const std::string path = LinkTarget(named);
    // A file its owner made read-only is kept, whoever saves.
    struct stat existing {};
    if (::stat(path.c_str(), &existing) == 0) {
        if ((existing.st_mode & S_IWUSR) == 0) return Fail(reason, "the file is read-only");
        // A device or a pipe (/dev/null, a terminal, a FIFO a script reads) is written as it
        // is: a file renamed over it would take its place.
        if (!S_ISREG(existing.st_mode)) return WriteInPlace(path, produce, reason);
    }
    const std::string folder = FolderOf(path);
    RemoveStaleTemporaries(folder);
    // The new file sits beside the old one: a rename within one folder is atomic.
    std::string pattern = folder + "/" + TemporaryPrefix + "XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    const int descriptor = ::mkstemp(name.data());
    if (descriptor < 0) return Fail(reason, std::strerror(errno));
    const std::string temporary(name.data());
    int error = ::fchmod(descriptor, FinalMode(path)) != 0 ? errno : 0;
    try {
        if (error == 0) error = WritePieces(descriptor, produce);
    } catch (...) {
        // What could not be made leaves the old file as it was.
        ::close(descriptor);
        ::unlink(temporary.c_str());
        throw;
    }
    if (error == 0 && ::fsync(descriptor) != 0) error = errno;
    if (::close(descriptor) != 0 && error == 0) error = errno;
    if (error == 0 && std::rename(temporary.c_str(), path.c_str()) != 0) error = errno;
    if (error != 0) {
        ::unlink(temporary.c_str());
        return Fail(reason, std::strerror(error));
    }
    // Make the rename itself durable; a folder that cannot be synced is no reason to fail.
    const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (directory >= 0) {
        ::fsync(directory);
        ::close(directory);
    }
    return true;
}

}  // namespace nerivane
