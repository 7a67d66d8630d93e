#include "FileWriter.h"

#include "AnalysisError.h"
#include "OneLine.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// @return 0 or the error.
int writeAll(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(file, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return 0;
}

/// Writes all and closes.
/// @return 0 or the first error.
int writeAndClose(int file, std::string_view text) {
    const int error = writeAll(file, text);
    const bool isClosed = ::close(file) == 0;
    return error != 0 || isClosed ? error : errno;
}

/// Where links lead to, so that a link is not replaced by a file; the path itself if nothing is
/// there.
std::string resolved(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
    return real == nullptr ? path : real.get();
}

/// The permissions of a file that is there, or those of a new one.
mode_t permissionsOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0) {
        return status.st_mode & 0777U;
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666U & ~mask;
}

bool isOtherThanFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

} // namespace

void failToWrite(const std::string& path, int error) {
    throw AnalysisError(Outcome::OtherTrouble,
                        oneLine(path) + ": cannot be written: " + std::strerror(error) +
                            (error == EEXIST ? "; --force overwrites it" : ""));
}

void writeFile(const std::string& path, std::string_view text, IfThere ifThere) {
    if (ifThere == IfThere::Replace && isOtherThanFile(path)) {
        const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
        const int error = file < 0 ? errno : writeAndClose(file, text);
        if (error != 0) {
            failToWrite(path, error);
        }
        return;
    }
    const std::string place = ifThere == IfThere::Replace ? resolved(path) : path;
    std::string beside = place + ".XXXXXX";
    const int file = ::mkostemp(beside.data(), O_CLOEXEC);
    if (file < 0) {
        failToWrite(path, errno);
    }
    const bool isOpenToAll = ::fchmod(file, permissionsOf(place)) == 0;
    int error = isOpenToAll ? 0 : errno;
    const int writeError = writeAndClose(file, text);
    error = error == 0 ? writeError : error;
    // A link, other than a new name, is refused where a file is there by now.
    const auto publish = ifThere == IfThere::Replace ? ::rename : ::link;
    if (error == 0 && publish(beside.c_str(), place.c_str()) != 0) {
        error = errno;
    }
    if (error != 0 || ifThere == IfThere::Refuse) {
        ::unlink(beside.c_str());
    }
    if (error != 0) {
        failToWrite(path, error);
    }
}
