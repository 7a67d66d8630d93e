#include "Interrupts.h"

#include <cstddef>
#include <cstdlib>

namespace {

volatile std::sig_atomic_t s_interrupt = 0;

void remember(int number) {
    s_interrupt = number;
    std::signal(number, SIG_DFL);
}

} // namespace

InterruptsHeld::InterruptsHeld() {
    sigset_t held;
    sigemptyset(&held);
    for (const int number : interrupts) {
        sigaddset(&held, number);
    }
    ::sigprocmask(SIG_BLOCK, &held, &m_before);
}

InterruptsHeld::~InterruptsHeld() {
    ::sigprocmask(SIG_SETMASK, &m_before, nullptr);
}

InterruptsRemembered::InterruptsRemembered() {
    s_interrupt = 0;
    for (std::size_t index = 0; index < interrupts.size(); ++index) {
        m_before[index] = std::signal(interrupts[index], remember);
        // Who starts the tool with one ignored, as nohup does, means it.
        if (m_before[index] == SIG_IGN) {
            std::signal(interrupts[index], SIG_IGN);
        }
    }
}

InterruptsRemembered::~InterruptsRemembered() {
    for (std::size_t index = 0; index < interrupts.size(); ++index) {
        std::signal(interrupts[index], m_before[index]);
    }
}

bool InterruptsRemembered::isInterrupted() {
    return s_interrupt != 0;
}

void InterruptsRemembered::obey() {
    std::signal(s_interrupt, SIG_DFL);
    std::raise(s_interrupt);
    std::abort();
}
