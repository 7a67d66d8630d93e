#pragma once

#include <array>
#include <csignal>

#include <signal.h>

/// The signals by which people and schedulers end a program.
inline constexpr std::array<int, 3> interrupts{SIGHUP, SIGINT, SIGTERM};

/// Holds interrupts back while it lives.
class InterruptsHeld {
public:
    InterruptsHeld();
    ~InterruptsHeld();
    InterruptsHeld(const InterruptsHeld&) = delete;
    InterruptsHeld& operator=(const InterruptsHeld&) = delete;

    /// What was held before: a wait that lets all others through sleeps over none.
    const sigset_t& before() const { return m_before; }

private:
    sigset_t m_before{};
};

/// Remembers an interrupt while it lives, so that what is being written can be brought to an end of
/// its own. The second one ends the tool at once.
class InterruptsRemembered {
public:
    InterruptsRemembered();
    ~InterruptsRemembered();
    InterruptsRemembered(const InterruptsRemembered&) = delete;
    InterruptsRemembered& operator=(const InterruptsRemembered&) = delete;

    static bool isInterrupted();

    /// Ends the tool as the interrupt would have.
    [[noreturn]] static void obey();

private:
    using Handler = void (*)(int);
    std::array<Handler, interrupts.size()> m_before{};
};
