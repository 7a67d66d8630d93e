#include "OrderedWorkers.h"

#include "AnalysisError.h"
#include "Interrupts.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <poll.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// What the jobs and results that are held may take together, roughly.
constexpr std::size_t mostHeld = std::size_t{16} << 20;

/// @return whether all could be sent.
bool sendAll(int socket, const char* bytes, std::size_t size) {
    while (size > 0) {
        // Who ended must not end this process too.
        const ssize_t count = ::send(socket, bytes, size, MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        const std::size_t sent = count < 0 ? 0 : static_cast<std::size_t>(count);
        bytes += sent;
        size -= sent;
    }
    return true;
}

bool receiveAll(int socket, char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t count = ::recv(socket, bytes, size, 0);
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return false;
        }
        const std::size_t received = count < 0 ? 0 : static_cast<std::size_t>(count);
        bytes += received;
        size -= received;
    }
    return true;
}

bool sendText(int socket, const std::string& text) {
    const std::size_t size = text.size();
    char length[sizeof size];
    std::memcpy(length, &size, sizeof size);
    return sendAll(socket, length, sizeof size) && sendAll(socket, text.data(), size);
}

bool receiveText(int socket, std::string& text) {
    std::size_t size = 0;
    char length[sizeof size];
    if (!receiveAll(socket, length, sizeof size)) {
        return false;
    }
    std::memcpy(&size, length, sizeof size);
    text.resize(size);
    return receiveAll(socket, text.data(), size);
}

/// How a process came to its end.
std::string endOf(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFSIGNALED(status)
               ? std::string("was ended by a signal: ") + ::strsignal(WTERMSIG(status))
               : "ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace

OrderedWorkers::OrderedWorkers(std::size_t processes, Work work)
    : m_processes(processes)
    , m_work(std::move(work)) {}

OrderedWorkers::~OrderedWorkers() {
    for (const Worker& worker : m_workers) {
        ::close(worker.socket);
        ::kill(worker.process, SIGKILL);
        endOf(worker.process);
    }
}

bool OrderedWorkers::hasRoom() const {
    std::size_t held = 0;
    for (const Job& job : m_jobs) {
        held += job.text.size();
    }
    return m_jobs.empty() || (m_jobs.size() < 4 * m_processes && held < mostHeld);
}

void OrderedWorkers::give(std::string job) {
    m_jobs.push_back({std::move(job)});
    dispatch();
}

void OrderedWorkers::dispatch() {
    for (Job& job : m_jobs) {
        if (job.isGiven) {
            continue;
        }
        Worker* worker = idleWorker();
        if (worker == nullptr && m_processes > 1 && m_workers.size() < m_processes &&
            startWorker()) {
            worker = &m_workers.back();
        }
        if (worker == nullptr && !m_workers.empty()) {
            return;
        }
        job.isGiven = true;
        if (worker == nullptr) {
            job.text = m_work(job.text);
            job.isDone = true;
        } else {
            worker->job = &job;
            // Who has ended is found when its result is read.
            static_cast<void>(sendText(worker->socket, job.text));
        }
    }
}

OrderedWorkers::Worker* OrderedWorkers::idleWorker() {
    const auto found = std::ranges::find(m_workers, nullptr, &Worker::job);
    return found == m_workers.end() ? nullptr : &*found;
}

bool OrderedWorkers::startWorker() {
    int sockets[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0) {
        return false;
    }
    const pid_t process = ::fork();
    if (process == 0) {
        ::close(sockets[0]);
        serve(sockets[1]);
    }
    ::close(sockets[1]);
    if (process < 0) {
        ::close(sockets[0]);
        return false;
    }
    m_workers.push_back({process, sockets[0], nullptr});
    return true;
}

void OrderedWorkers::serve(int socket) const {
    // The end of the process that gives the jobs has to show, and nobody else's.
    for (const Worker& worker : m_workers) {
        ::close(worker.socket);
    }
    // A terminal interrupts both; the one that gives the jobs says when it is over.
    for (const int number : interrupts) {
        std::signal(number, SIG_IGN);
    }
    std::string job;
    while (receiveText(socket, job) && sendText(socket, m_work(job))) {
    }
    // What is in the buffers of streams belongs to the other process.
    ::_exit(0);
}

std::optional<std::string> OrderedWorkers::take() {
    if (m_jobs.empty() || !m_jobs.front().isDone) {
        return std::nullopt;
    }
    std::string result = std::move(m_jobs.front().text);
    m_jobs.pop_front();
    return result;
}

void OrderedWorkers::collect(Worker& worker) {
    if (!receiveText(worker.socket, worker.job->text)) {
        const pid_t process = worker.process;
        ::close(worker.socket);
        m_workers.erase(m_workers.begin() + (&worker - m_workers.data()));
        throw AnalysisError(Outcome::OtherTrouble, "a process that answers " + endOf(process));
    }
    worker.job->isDone = true;
    worker.job = nullptr;
}

void OrderedWorkers::wait(int descriptor, const sigset_t& held) {
    std::vector<pollfd> descriptors;
    descriptors.reserve(m_workers.size() + 1);
    for (const Worker& worker : m_workers) {
        descriptors.push_back({worker.job == nullptr ? -1 : worker.socket, POLLIN, 0});
    }
    descriptors.push_back({descriptor, POLLIN, 0});
    if (std::ranges::all_of(descriptors, [](const pollfd& each) { return each.fd < 0; })) {
        return;
    }
    if (::ppoll(descriptors.data(), descriptors.size(), nullptr, &held) <= 0) {
        return;
    }
    for (std::size_t index = 0; index < m_workers.size(); ++index) {
        if (descriptors[index].revents != 0) {
            collect(m_workers[index]);
        }
    }
    dispatch();
}

std::size_t OrderedWorkers::processors() {
    cpu_set_t allowed;
    // A machine with more processors than the set has room for.
    return ::sched_getaffinity(0, sizeof allowed, &allowed) == 0
               ? static_cast<std::size_t>(CPU_COUNT(&allowed))
               : 1;
}
