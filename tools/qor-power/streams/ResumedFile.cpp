#include "ResumedFile.h"

#include "AnalysisError.h"
#include "OneLine.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

ResumedFile::ResumedFile(std::string path)
    : m_path(std::move(path))
    , m_stream(std::fopen(m_path.c_str(), "a+e")) {
    if (m_stream == nullptr) {
        fail(std::strerror(errno));
    }
    try {
        struct stat status {};
        if (::fstat(descriptor(), &status) != 0 || !S_ISREG(status.st_mode)) {
            fail("it is no plain file");
        }
        if (::flock(descriptor(), LOCK_EX | LOCK_NB) != 0) {
            fail("another run is writing it");
        }
        read();
    } catch (...) {
        std::fclose(m_stream);
        throw;
    }
}

ResumedFile::~ResumedFile() {
    std::fclose(m_stream);
}

void ResumedFile::read() {
    std::array<char, std::size_t{64} << 10> block{};
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), m_stream)) {
        std::string_view text(block.data(), count);
        for (std::size_t end = text.find('\n'); end != std::string_view::npos;
             end = text.find('\n')) {
            m_last = std::exchange(m_rest, "").append(text.substr(0, end + 1));
            text.remove_prefix(end + 1);
            m_size += m_last.size();
            if (m_lines++ == 0) {
                m_first = m_last;
            }
        }
        m_rest += text;
        if (m_rest.size() > maxLine) {
            fail("it holds something else than answers");
        }
    }
    if (std::ferror(m_stream) != 0) {
        fail(std::strerror(errno));
    }
}

void ResumedFile::cutRest() {
    if (::ftruncate(descriptor(), static_cast<off_t>(m_size)) != 0) {
        fail(std::strerror(errno));
    }
    m_rest.clear();
}

void ResumedFile::fail(const std::string& why) const {
    throw AnalysisError(Outcome::OtherTrouble, oneLine(m_path) + ": cannot go on: " + why);
}
