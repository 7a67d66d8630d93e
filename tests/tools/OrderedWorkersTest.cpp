#include "OrderedWorkers.h"

#include "AnalysisError.h"
#include "Interrupts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

/// The results of jobs, in the order in which they are handed out.
std::vector<std::string> resultsOf(OrderedWorkers& sut, const std::vector<std::string>& jobs) {
    std::vector<std::string> results;
    std::size_t given = 0;
    while (given < jobs.size() || !sut.isIdle()) {
        while (given < jobs.size() && sut.hasRoom()) {
            sut.give(jobs[given++]);
        }
        const InterruptsHeld held;
        sut.wait(-1, held.before());
        while (const auto result = sut.take()) {
            results.push_back(*result);
        }
    }
    return results;
}

std::vector<std::string> manyJobs() {
    std::vector<std::string> jobs;
    for (int number = 0; number < 200; ++number) {
        jobs.push_back(std::to_string(number));
    }
    return jobs;
}

TEST(OrderedWorkers, HandResultsOutInTheOrderOfTheJobs) {
    for (const std::size_t processes : {1U, 2U, 7U}) {
        OrderedWorkers sut(processes, [](const std::string& job) {
            // Every fifth job takes longer than those behind it.
            ::usleep(job.ends_with('5') || job.ends_with('0') ? 2000 : 0);
            return job;
        });

        EXPECT_EQ(resultsOf(sut, manyJobs()), manyJobs()) << processes;
    }
}

TEST(OrderedWorkers, WorkInAsManyProcessesAsTheyMay) {
    for (const std::size_t processes : {1U, 3U}) {
        OrderedWorkers sut(processes, [](const std::string&) {
            ::usleep(1000);
            return std::to_string(::getpid());
        });
        std::vector<std::string> workers = resultsOf(sut, manyJobs());

        std::sort(workers.begin(), workers.end());
        workers.erase(std::unique(workers.begin(), workers.end()), workers.end());
        EXPECT_EQ(workers.size(), processes);
        EXPECT_EQ(workers.front() == std::to_string(::getpid()), processes == 1);
    }
}

TEST(OrderedWorkers, CarryEmptyAndLongTexts) {
    OrderedWorkers sut(2, [](const std::string& job) { return job + job; });
    const std::string longText(5000000, 'x');

    EXPECT_EQ(resultsOf(sut, {"", longText, std::string(1, '\0')}),
              (std::vector<std::string>{"", longText + longText, std::string(2, '\0')}));
}

TEST(OrderedWorkers, HoldOnlySoMuch) {
    OrderedWorkers sut(2, [](const std::string& job) { return job; });
    std::size_t given = 0;
    while (sut.hasRoom()) {
        sut.give(std::string(std::size_t{6} << 20, 'x'));
        ++given;
    }

    EXPECT_EQ(given, 3U);
}

TEST(OrderedWorkers, SayHowAProcessEnded) {
    const auto errorOf = [](OrderedWorkers::Work work) -> std::string {
        OrderedWorkers sut(2, std::move(work));
        try {
            resultsOf(sut, {"a"});
        } catch (const AnalysisError& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_EQ(errorOf([](const std::string&) -> std::string { ::_exit(7); }),
              "a process that answers ended with status 7");
    EXPECT_EQ(errorOf([](const std::string&) -> std::string {
                  ::kill(::getpid(), SIGKILL);
                  return "";
              }),
              "a process that answers was ended by a signal: Killed");
}

} // namespace
