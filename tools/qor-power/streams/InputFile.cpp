#include "InputFile.h"

#include "AnalysisError.h"
#include "OneLine.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

[[noreturn]] void fail(const std::string& path) {
    throw AnalysisError(Outcome::OtherTrouble,
                        inputName(path) + ": cannot be read: " + std::strerror(errno));
}

} // namespace

std::string inputName(const std::string& path) {
    return path == standardInput ? "standard input" : oneLine(path);
}

InputFile::InputFile(std::string path)
    : m_path(std::move(path))
    , m_isOwn(m_path != standardInput)
    , m_descriptor(m_isOwn ? ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC) : STDIN_FILENO) {
    if (m_descriptor < 0) {
        fail(m_path);
    }
}

InputFile::~InputFile() {
    if (m_isOwn) {
        ::close(m_descriptor);
    }
}

std::size_t InputFile::read(char* bytes, std::size_t size) {
    while (true) {
        const ssize_t count = ::read(m_descriptor, bytes, size);
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR) {
            fail(m_path);
        }
    }
}
