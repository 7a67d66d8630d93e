#include "BoardSupport.h"
#include "CStorageManager.h"
#include "DeskBoard.h"
#include "DeskTrace.h"
#include "DeskVariableStore.h"
#include "ICapabilityHandler.h"
#include "InterfaceBroker.h"
#include "RawTrace.h"
#include "VelTrace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <latch>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using ::testing::IsEmpty;

constexpr int threadCount = 6;
constexpr int roundCount = 300;

/// Runs the work in several threads that start together; each gets its own number.
void inThreads(const std::function<void(int)>& work) {
    std::latch start(threadCount);
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back([&work, &start, number] {
            start.arrive_and_wait();
            work(number);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

class ThreadsHandler : public ICapabilityHandler {};

TEST(Threads, ShareTheBroker) {
    InterfaceBroker& sut = InterfaceBroker::getInstance();
    ThreadsHandler shared;
    sut.registerInterface("threads.shared", &shared);
    std::atomic<int> failures{0};

    inThreads([&](int number) {
        const std::string own = "threads." + std::to_string(number);
        ThreadsHandler handler;
        for (int round = 0; round < roundCount; ++round) {
            IInterface* removed = nullptr;
            const bool isRight =
                sut.registerInterface(own, &handler) == 0 &&
                sut.registerInterface("threads.contested", &handler) == 0 &&
                sut.getInterface<ICapabilityHandler>("threads.shared") == &shared &&
                sut.getInterface<ICapabilityHandler>(own) == &handler &&
                sut.unregisterInterface(own, &removed) == 0 && removed == &handler &&
                sut.getInterface<ICapabilityHandler>(own) == nullptr;
            failures += isRight ? 0 : 1;
        }
    });

    EXPECT_EQ(failures, 0);
    sut.unregisterInterface("threads.shared", nullptr);
    sut.unregisterInterface("threads.contested", nullptr);
}

TEST(Threads, ShareTheVariableStore) {
    DeskVariableStore& sut = DeskVariableStore::getInstance();
    sut.clear();
    sut.set("threads.contested", {-1, -1, -1});
    std::atomic<int> failures{0};

    inThreads([&](int number) {
        const std::string own = "threads." + std::to_string(number);
        for (int round = 0; round < roundCount; ++round) {
            sut.set(own, {number, round});
            sut.set("threads.contested", {round, round, round});
            const void* address = nullptr;
            std::uint32_t size = 0;
            bool isRight =
                CStorageManager_GetVariableContentAddressByName(own.c_str(), &address, &size) == 0;
            isRight = isRight && size == 2;
            isRight = isRight && static_cast<const std::int32_t*>(address)[0] == number;
            isRight = isRight && static_cast<const std::int32_t*>(address)[1] == round;
            // Whoever wrote last, the three elements are of one writer.
            isRight = isRight && CStorageManager_GetVariableContentAddressByName(
                                     "threads.contested", &address, &size) == 0;
            const auto* const contested = static_cast<const std::int32_t*>(address);
            isRight = isRight && contested[0] == contested[1] && contested[1] == contested[2];
            sut.remove(own);
            isRight = isRight && sut.find(own, &address, nullptr) == 32768U;
            failures += isRight ? 0 : 1;
        }
    });

    EXPECT_EQ(failures, 0);
    sut.clear();
}

TEST(Threads, ShareTheTrace) {
    DeskTrace& sut = DeskTrace::getInstance();
    sut.clear();
    sut.setLevel(6);
    std::ostringstream stream;
    sut.printTo(&stream);
    VelTrace shared("threads.shared", 3, 256);

    inThreads([&](int number) {
        const std::string function = std::to_string(number);
        const TraceHeader here = {"threads", number, function.c_str()};
        for (int round = 0; round < roundCount; ++round) {
            VelTrace own("threads.own", 3, 256);
            if (own.isEnabled(6)) {
                own.logEnterMsg(6, here, std::to_string(3 * round));
            }
            shared.setLevel(6);
            if (shared.isEnabled(5)) {
                shared.logMsg(5, here, std::to_string(3 * round + 1));
            }
            if (SPC_trace >= CPexTraceHandler_DmLevel2VtLevel(2080)) {
                VT_beginImpl(&SPC_trace, 5, &here);
                VT_rawprintf("%d", 3 * round + 2);
                VT_endImpl();
            }
            sut.records(1);
        }
    });

    sut.printTo(nullptr);
    sut.setLevel(0);
    const std::vector<TraceRecord> records = sut.take();
    EXPECT_EQ(records.size(), static_cast<std::size_t>(3 * threadCount * roundCount));
    std::vector<int> next(threadCount, 0);
    std::vector<std::string> outOfOrder;
    std::size_t lineCount = 0;
    for (const TraceRecord& record : records) {
        int& expected = next[static_cast<std::size_t>(record.line)];
        if (record.text != std::to_string(expected) ||
            record.function != std::to_string(record.line)) {
            outOfOrder.push_back(record.function + ": " + record.text);
        }
        ++expected;
    }
    EXPECT_THAT(outOfOrder, IsEmpty());
    for (const char character : stream.str()) {
        lineCount += character == '\n' ? 1U : 0U;
    }
    EXPECT_EQ(lineCount, records.size());
}

TEST(Threads, TakeEveryRecordExactlyOnce) {
    DeskTrace& sut = DeskTrace::getInstance();
    sut.clear();
    VelTrace trace("threads", 6, 256);
    std::atomic<std::size_t> taken{0};

    inThreads([&](int number) {
        const TraceHeader here = {"threads", number, "write"};
        for (int round = 0; round < roundCount; ++round) {
            trace.logMsg(1, here, "x");
            taken += sut.take().size();
        }
    });

    EXPECT_EQ(taken, static_cast<std::size_t>(threadCount * roundCount));
    EXPECT_THAT(sut.take(), IsEmpty());
}

TEST(Threads, ShareTheBoard) {
    std::atomic<int> answers{0};

    inThreads([&](int number) {
        for (int round = 0; round < roundCount; ++round) {
            DeskBoard::setCarrierAggregation(number % 2 == 0);
            answers += os::bsp::rl::isFftypeCarrierAggregation() ? 1 : 0;
        }
    });

    EXPECT_LE(answers, threadCount * roundCount);
    DeskBoard::setCarrierAggregation(false);
    EXPECT_FALSE(os::bsp::rl::isFftypeCarrierAggregation());
}

} // namespace
