#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <signal.h>
#include <sys/types.h>

/// Does jobs in processes of their own, copies of this one, because a node is one for a process;
/// and hands the results out in the order of the jobs. With a single process each job is done here
/// when it is given.
class OrderedWorkers {
public:
    /// May not throw.
    using Work = std::function<std::string(const std::string& job)>;

    OrderedWorkers(std::size_t processes, Work work);

    /// Ends the processes, whatever they do.
    ~OrderedWorkers();

    OrderedWorkers(const OrderedWorkers&) = delete;
    OrderedWorkers& operator=(const OrderedWorkers&) = delete;

    /// Whether one more job may be given. What waits, is done and is handed out is bounded.
    bool hasRoom() const;

    /// Whether every job is handed out.
    bool isIdle() const { return m_jobs.empty(); }

    /// Processes are made as they are needed. Nothing may be left in a buffer for output.
    void give(std::string job);

    /// @return the result of the oldest job; nothing if it is not done.
    std::optional<std::string> take();

    /// Waits until a job is done, a descriptor can be read, or a signal comes; where nothing of
    /// these is to be waited for, not at all.
    /// @param descriptor -1: none.
    /// @param held signals that are held while it waits.
    /// @throw AnalysisError OtherTrouble if a process has ended.
    void wait(int descriptor, const sigset_t& held);

    /// How many processes there are to do jobs at once: those of the machine, or fewer if this
    /// process may use fewer.
    static std::size_t processors();

private:
    struct Job {
        std::string text; ///< or the result
        bool isGiven = false;
        bool isDone = false;
    };
    struct Worker {
        pid_t process;
        int socket;
        Job* job; ///< null: none
    };

    void dispatch();
    Worker* idleWorker();
    bool startWorker();
    [[noreturn]] void serve(int socket) const;
    void collect(Worker& worker);

    std::size_t m_processes;
    Work m_work;
    std::deque<Job> m_jobs; ///< in order; the first is the next to be handed out
    std::vector<Worker> m_workers;
};
