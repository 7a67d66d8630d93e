#include "InputFile.h"

#include "AnalysisError.h"
#include "OneLine.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <tuple>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

[[noreturn]] void failToRead(const std::string& path, const std::string& why) {
    throw AnalysisError(Outcome::OtherTrouble, inputName(path) + ": cannot be read: " + why);
}

[[noreturn]] void failToRead(const std::string& path) {
    failToRead(path, std::strerror(errno));
}

/// Whether a path is an open descriptor by another name, as a shell hands out the output of a
/// program: then somebody writes to it. Other pipes may lie below /dev, too: in /dev/shm.
bool isOpenElsewhere(const std::string& path) {
    return path.starts_with("/dev/fd/") || path == "/dev/stdin" || path.starts_with("/proc/");
}

auto momentOf(const timespec& time) {
    return std::pair(time.tv_sec, time.tv_nsec);
}

} // namespace

std::string inputName(const std::string& path) {
    return oneLine(givenName(path));
}

std::string givenName(const std::string& path) {
    return path == standardInput ? "standard input" : path;
}

InputFile::InputFile(std::string path, Growth growth, std::chrono::milliseconds patience)
    : m_path(std::move(path))
    , m_growth(growth)
    , m_isOwn(m_path != standardInput)
    , m_descriptor(m_isOwn ? ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK)
                           : STDIN_FILENO) {
    if (m_descriptor < 0 || ::fstat(m_descriptor, &m_status) != 0) {
        failToRead(m_path);
    }
    // A file of the system's own, whose size is 0, is read to its end like a stream.
    if (S_ISREG(m_status.st_mode) && m_status.st_size > 0 && m_isOwn) {
        m_left = static_cast<std::uint64_t>(m_status.st_size);
    }
    if (m_isOwn) {
        // Not to wait was for the opening of a pipe that has no writer yet.
        ::fcntl(m_descriptor, F_SETFL, 0);
        if (S_ISFIFO(m_status.st_mode) && !isOpenElsewhere(m_path)) {
            awaitWriter(patience);
        }
    }
}

InputFile::~InputFile() {
    if (m_isOwn) {
        ::close(m_descriptor);
    }
}

std::size_t InputFile::read(char* bytes, std::size_t size) {
    const std::size_t wanted =
        m_left ? static_cast<std::size_t>(std::min<std::uint64_t>(size, *m_left)) : size;
    ssize_t count = 0;
    do {
        count = ::read(m_descriptor, bytes, wanted);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        failToRead(m_path);
    }
    const auto got = static_cast<std::size_t>(count);
    if (m_left) {
        *m_left -= got;
        if (got == 0) {
            expectUnchanged();
        }
    }
    return got;
}

bool InputFile::isSameAs(int output) const {
    struct stat status {};
    // Without a standard output the file itself may have got its number.
    return m_descriptor != output && S_ISREG(m_status.st_mode) && ::fstat(output, &status) == 0 &&
           std::tie(status.st_dev, status.st_ino) == std::tie(m_status.st_dev, m_status.st_ino);
}

bool InputFile::isReady() const {
    pollfd input{m_descriptor, POLLIN, 0};
    return ::poll(&input, 1, 0) != 0;
}

std::optional<double> InputFile::share() const {
    if (!m_left || m_status.st_size == 0) {
        return std::nullopt;
    }
    return 1.0 - static_cast<double>(*m_left) / static_cast<double>(m_status.st_size);
}

void InputFile::awaitWriter(std::chrono::milliseconds patience) const {
    pollfd pipe{m_descriptor, POLLIN, 0};
    int ready = 0;
    do {
        ready = ::poll(&pipe, 1, static_cast<int>(patience.count()));
    } while (ready < 0 && errno == EINTR);
    if (ready == 0) {
        ::close(m_descriptor);
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(patience).count();
        failToRead(m_path, "nothing came through the pipe within " +
                               counted(static_cast<std::uint64_t>(seconds), "second"));
    }
}

void InputFile::expectUnchanged() const {
    struct stat now {};
    if (::fstat(m_descriptor, &now) != 0) {
        failToRead(m_path);
    }
    const bool hasGrown = now.st_size > m_status.st_size && m_growth == Growth::IsLeftOut;
    const bool isWhole =
        *m_left == 0 && (hasGrown || (now.st_size == m_status.st_size &&
                                      momentOf(now.st_mtim) == momentOf(m_status.st_mtim)));
    if (!isWhole) {
        failToRead(m_path, "it was changed meanwhile; try again");
    }
}
