#include "FileWriter.h"

#include "AnalysisError.h"
#include "Interrupts.h"
#include "OneLine.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

[[noreturn]] void failToWrite(const std::string& path, std::string_view why) {
    throw AnalysisError(Outcome::OtherTrouble,
                        oneLine(path) + ": cannot be written: " + std::string(why));
}

/// @param error number of the system's.
[[noreturn]] void failToWrite(const std::string& path, int error) {
    failToWrite(path, std::strerror(error));
}

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

/// The first of several errors; 0 without any.
int firstOf(int error, int next) {
    return error == 0 ? next : error;
}

int errorOf(int result) {
    return result < 0 ? errno : 0;
}

/// The descriptor that a path stands for, as "/dev/stdout" does: to open it anew would write at the
/// begin of a file that others write to, and to replace what it leads to would take it from them.
std::optional<int> descriptorOf(const std::string& path) {
    if (path == "/dev/stdout") {
        return STDOUT_FILENO;
    }
    if (path == "/dev/stderr") {
        return STDERR_FILENO;
    }
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
        int descriptor = 0;
        const char* const end = path.data() + path.size();
        if (path.starts_with(folder) &&
            std::from_chars(path.data() + folder.size(), end, descriptor).ptr == end) {
            return descriptor;
        }
    }
    return std::nullopt;
}

/// @return nothing where no file is.
std::optional<struct stat> statusOf(const std::string& path, bool ofLink) {
    struct stat status {};
    const int result = ofLink ? ::lstat(path.c_str(), &status) : ::stat(path.c_str(), &status);
    return result == 0 ? std::optional(status) : std::nullopt;
}

/// Where links lead to.
std::string resolved(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
    return real == nullptr ? path : real.get();
}

/// A name in the folder of a file for what is written beside it. A name of the file's with
/// something added could be too long.
std::string nameBeside(const std::string& place) {
    return place.substr(0, place.find_last_of('/') + 1) + ".qor-power.XXXXXX";
}

/// The permissions of a new file.
mode_t permissionsOfNew() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666U & ~mask;
}

int writeThrough(const std::string& path, std::string_view text) {
    const std::optional<int> descriptor = descriptorOf(path);
    const int file = descriptor ? ::fcntl(*descriptor, F_DUPFD_CLOEXEC, 0)
                                : ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (file < 0) {
        return errno;
    }
    const int error = writeAll(file, text);
    return firstOf(error, errorOf(::close(file)));
}

/// Makes a text the content of an open file, also of one that is written within.
int overwrite(int file, std::string_view text) {
    int error = errorOf(static_cast<int>(::lseek(file, 0, SEEK_SET)));
    error = firstOf(error, error == 0 ? writeAll(file, text) : 0);
    return firstOf(error, errorOf(::ftruncate(file, static_cast<off_t>(text.size()))));
}

std::optional<std::string> contentOf(int file) {
    std::string content;
    std::array<char, 4096> block{};
    while (true) {
        const ssize_t count = ::read(file, block.data(), block.size());
        if (count == 0) {
            return content;
        }
        if (count < 0 && errno != EINTR) {
            return std::nullopt;
        }
        content.append(block.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
    }
}

int writeWithin(const std::string& place, std::string_view text) {
    const int file = ::open(place.c_str(), O_RDWR | O_CLOEXEC);
    if (file < 0) {
        return errno;
    }
    const std::optional<std::string> before = contentOf(file);
    const int error = before ? overwrite(file, text) : errno;
    if (error != 0 && before) {
        overwrite(file, *before);
    }
    return firstOf(error, errorOf(::close(file)));
}

} // namespace

void FileWriter::add(const std::string& path, std::string_view text) {
    File file{path, path, text};
    const auto link = statusOf(path, true);
    const auto status = statusOf(path, false);
    file.isThere = link.has_value();
    const bool isOtherThanFile = link && status && !S_ISREG(status->st_mode);
    if (descriptorOf(path) ||
        (isOtherThanFile && m_ifThere == IfThere::Replace && !S_ISDIR(status->st_mode))) {
        file.way = Way::Through;
    } else if (link && m_ifThere == IfThere::Refuse) {
        failToWrite(path, std::string(std::strerror(EEXIST)) + "; --force overwrites it");
    } else if (link && !status) {
        failToWrite(path, "it is a link that leads to nothing; remove it");
    } else if (isOtherThanFile) {
        failToWrite(path, EISDIR);
    } else if (link && ::access(path.c_str(), W_OK) != 0) {
        // Its folder would let it be replaced all the same, against what its owner said.
        failToWrite(path, errno);
    } else if (link) {
        file.place = resolved(path);
    }
    const auto isSame = [&file](const File& other) { return other.place == file.place; };
    if (std::any_of(m_files.begin(), m_files.end(), isSame)) {
        failToWrite(path, "it is named twice");
    }
    m_files.push_back(std::move(file));
}

void FileWriter::stage(File& file) {
    std::string beside = nameBeside(file.place);
    const int descriptor = ::mkostemp(beside.data(), O_CLOEXEC);
    if (descriptor < 0) {
        const bool isClosed = errno == EACCES || errno == EPERM || errno == EROFS;
        if (!isClosed || !file.isThere) {
            failToWrite(file.path, errno);
        }
        file.way = Way::Within;
        return;
    }
    file.beside = beside;
    const auto old = statusOf(file.place, false);
    if (old && ::fchown(descriptor, old->st_uid, old->st_gid) != 0) {
        // It becomes the writer's, as a copy would.
    }
    int error = errorOf(::fchmod(descriptor, old ? old->st_mode & 0777U : permissionsOfNew()));
    error = firstOf(error, writeAll(descriptor, file.text));
    error = firstOf(error, errorOf(::fsync(descriptor)));
    error = firstOf(error, errorOf(::close(descriptor)));
    if (error != 0) {
        failToWrite(file.path, error);
    }
}

void FileWriter::move(File& file) {
    const auto now = statusOf(file.place, true);
    if (now && !S_ISREG(now->st_mode)) {
        failToWrite(file.path, "something else than a file is there by now");
    }
    // What came to where nothing was is not to be replaced.
    const unsigned flags = file.isThere ? 0U : RENAME_NOREPLACE;
    int error =
        errorOf(::renameat2(AT_FDCWD, file.beside.c_str(), AT_FDCWD, file.place.c_str(), flags));
    if (error == EINVAL && !file.isThere) {
        // Not every file system can tell the two apart; a link never replaces.
        error = errorOf(::link(file.beside.c_str(), file.place.c_str()));
        error = firstOf(error, error == 0 ? errorOf(::unlink(file.beside.c_str())) : 0);
    }
    if (error != 0) {
        failToWrite(file.path, error);
    }
    file.beside.clear();
    if (!file.isThere) {
        m_new.push_back(file.place);
    }
}

template <class Act>
void FileWriter::forEach(Way way, Act act) {
    for (auto& file : m_files) {
        if (file.way == way) {
            act(file);
        }
    }
}

void FileWriter::undo() {
    for (const File& file : m_files) {
        if (!file.beside.empty()) {
            ::unlink(file.beside.c_str());
        }
    }
    for (const std::string& place : m_new) {
        ::unlink(place.c_str());
    }
}

void FileWriter::publish() {
    const auto write = [](auto how) {
        return [how](const File& file) {
            if (const int error = how(file.place, file.text); error != 0) {
                failToWrite(file.path, error);
            }
        };
    };
    {
        // Nobody ends the tool between a file beside another and its place, where it would stay.
        const InterruptsHeld held;
        try {
            forEach(Way::Beside, stage);
            forEach(Way::Within, write(writeWithin));
            forEach(Way::Beside, [this](File& file) { move(file); });
        } catch (const AnalysisError&) {
            undo();
            throw;
        }
    }
    // Who reads at the other end may let the tool wait.
    forEach(Way::Through, write(writeThrough));
    m_files.clear();
    m_new.clear();
}

void writeFile(const std::string& path, std::string_view text) {
    FileWriter writer(IfThere::Replace);
    writer.add(path, text);
    writer.publish();
}
