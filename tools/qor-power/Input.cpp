#include "Input.h"

#include "OneLine.h"
#include "RadioFileReader.h"
#include "ToolError.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace {

[[noreturn]] void fail(const std::string& path) {
    throw ToolError(ExitStatus::OtherTrouble,
                    inputName(path) + ": cannot be read: " + std::strerror(errno));
}

/// An open file, closed at the end unless it is standard input.
class Descriptor {
public:
    explicit Descriptor(const std::string& path)
        : m_isOwn(path != standardInput)
        , m_number(m_isOwn ? ::open(path.c_str(), O_RDONLY | O_CLOEXEC) : STDIN_FILENO) {}
    ~Descriptor() {
        if (m_isOwn && m_number >= 0) {
            ::close(m_number);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_number; }

private:
    bool m_isOwn;
    int m_number;
};

/// Reads to the end, or one byte behind the largest size, by which the reader tells that it is too
/// large.
std::string readText(const std::string& path) {
    const Descriptor file(path);
    if (file.number() < 0) {
        fail(path);
    }
    constexpr std::size_t limit = RadioFileReader::maxSize + 1;
    constexpr std::size_t block = std::size_t{64} << 10;
    std::string text;
    while (text.size() < limit) {
        const std::size_t start = text.size();
        text.resize(start + std::min(block, limit - start));
        const ssize_t count = ::read(file.number(), &text[start], text.size() - start);
        if (count < 0 && errno != EINTR) {
            fail(path);
        }
        text.resize(start + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count == 0) {
            break;
        }
    }
    return text;
}

} // namespace

std::string inputName(const std::string& path) {
    return path == standardInput ? "standard input" : oneLine(path);
}

RadioFile loadRadioFile(const std::string& path) {
    const std::string text = readText(path);
    try {
        return RadioFileReader::read(text);
    } catch (const RadioFileError& error) {
        throw ToolError(ExitStatus::BadRadioFile, inputName(path) + ": " + oneLine(error.what()));
    }
}
