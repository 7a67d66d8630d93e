#include "ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <utility>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr unsigned secondsBeforeKill = 120;

double secondsOf(const timeval& time) {
    constexpr double microsecond = 1e-6;
    return static_cast<double>(time.tv_sec) + microsecond * static_cast<double>(time.tv_usec);
}

} // namespace

void failForTheSystem(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

void ChildProcess::become() {
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    for (const auto& [name, value] : environment) {
        if (value.empty()) {
            ::unsetenv(name.c_str());
        } else {
            ::setenv(name.c_str(), value.c_str(), 1);
        }
    }
    // A test runner may have the signal ignored; a program must not depend on that.
    std::signal(SIGPIPE, SIG_DFL);
    ::alarm(secondsBeforeKill);
    for (const auto& [from, to] : {std::pair(input, STDIN_FILENO), std::pair(output, STDOUT_FILENO),
                                   std::pair(errors, STDERR_FILENO)}) {
        if (from < 0) {
            ::close(to);
        } else {
            ::dup2(from, to);
        }
    }
    if (::chdir(folder.c_str()) == 0) {
        ::execvp(pointers.front(), pointers.data());
    }
    ::_exit(127);
}

void ChildProcess::start() {
    m_start = std::chrono::steady_clock::now();
    m_id = ::fork();
    if (m_id < 0) {
        failForTheSystem("fork");
    }
    if (m_id == 0) {
        become();
    }
}

ChildProcess::End ChildProcess::wait() const {
    int status = 0;
    rusage usage{};
    while (::wait4(m_id, &status, 0, &usage) < 0) {
        if (errno != EINTR) {
            failForTheSystem("wait4");
        }
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - m_start;
    constexpr int signalled = 1000;
    constexpr double kibPerMib = 1024;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status),
            secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime), took.count(),
            static_cast<double>(usage.ru_maxrss) / kibPerMib};
}
