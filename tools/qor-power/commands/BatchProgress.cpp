#include "BatchProgress.h"

#include "Messages.h"
#include "OneLine.h"

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds onTerminal{200};
constexpr std::chrono::seconds elsewhere{5};

void write(const std::string& text) {
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

} // namespace

BatchProgress::BatchProgress(bool isOn)
    : m_isOn(isOn)
    , m_terminal(STDERR_FILENO) {}

BatchProgress::~BatchProgress() {
    clear();
}

void BatchProgress::show(std::uint64_t lines, std::uint64_t bad) {
    const Clock::time_point now = Clock::now();
    if (!m_isOn || now < m_due) {
        return;
    }
    const std::chrono::duration<double> passed = now - m_start;
    const auto rate =
        static_cast<std::uint64_t>(static_cast<double>(lines) / std::max(passed.count(), 0.001));
    const std::string text = counted(lines, "line") + ", " + std::to_string(bad) + " bad, " +
                             std::to_string(rate) + " lines/s";
    if (!m_terminal.isTerminal()) {
        m_due = now + elsewhere;
        complain(text);
        return;
    }
    m_due = now + onTerminal;
    std::string line = text.substr(0, m_terminal.width() - 1);
    const std::size_t columns = line.size();
    line.resize(std::max(columns, m_shown), ' ');
    write('\r' + line);
    m_shown = columns;
}

void BatchProgress::clear() {
    if (m_shown > 0) {
        write('\r' + std::string(m_shown, ' ') + '\r');
        m_shown = 0;
    }
}
