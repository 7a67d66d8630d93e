#include "Output.h"

#include "AnalysisError.h"

#include <cerrno>
#include <cstring>
#include <string>

namespace {

[[noreturn]] void fail() {
    if (errno == EPIPE) {
        // Who read has seen enough: there is nobody who would want to know.
        throw OutputError("");
    }
    throw OutputError(std::string("cannot write to standard output: ") + std::strerror(errno));
}

} // namespace

Terminal Output::terminal() const {
    return Terminal(::fileno(m_stream), m_colorChoice);
}

void Output::write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), m_stream) != text.size()) {
        fail();
    }
}

void Output::flush() {
    if (std::fflush(m_stream) != 0) {
        fail();
    }
}
