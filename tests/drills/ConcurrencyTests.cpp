#include "DeskTrace.h"
#include "DeskVariableStore.h"
#include "InterfaceBroker.h"
#include "OutputPowerCalculator.h"
#include "SimulatedAcmHandler.h"
#include "SimulatedCapabilityHandler.h"
#include "SimulatedFrameFormat.h"
#include "SimulatedHardwareConfigurationHandler.h"
#include "SimulatedSystemPowerController.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <latch>
#include <map>
#include <string>
#include <thread>
#include <vector>

// Many threads ask the services of two channels, and others push operating inputs into a third
// service. Nobody but the thread sanitizer sees every race; that all answers are right is seen in
// every build. With traces on all threads would meet in the trace, so they first ask without.

namespace {

constexpr Modulation modulations[] = {
    Modulation::BPSK,    Modulation::QAM4,    Modulation::QAM16,   Modulation::QAM32,
    Modulation::QAM64,   Modulation::QAM128,  Modulation::QAM256,  Modulation::QAM512,
    Modulation::QAM1024, Modulation::QAM2048, Modulation::QAM4096, Modulation::QAM16384};

constexpr int highestPmax = 2800;

/// The neighbours of one channel, each channel with powers of its own.
class Radio {
public:
    Radio(RadioChannel channel, const std::string& productNumber)
        : m_channel(channel)
        , m_capabilityHandler(capabilities(channel, productNumber))
        , m_acmHandler({AcmHandlerAnswers::Range{{31}, {121}}})
        , m_frameFormat({Modulation::QAM64,
                         Modulation::QAM4096,
                         {{31}, {41}, {61}, {81}, {101}, {121}},
                         EChannelSpacingType::MHz28,
                         EDpdVersion::Dpd2,
                         EFrameFormatMarket::Etsi,
                         {},
                         {}})
        , m_systemPowerController(
              {EReferenceSEC::Class4L,
               {{EChannelSpacingType::MHz28, static_cast<long>(10 * channel)}}}) {
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        broker.registerInterface(ICapabilityHandler::interfaceName(channel), &m_capabilityHandler);
        broker.registerInterface(IAcmHandler::interfaceName(channel), &m_acmHandler);
        broker.registerInterface(IFrameFormat::interfaceName(channel), &m_frameFormat);
        broker.registerInterface(ISystemPowerController::interfaceName(channel),
                                 &m_systemPowerController);
        const std::string name = "channel." + std::to_string(channel);
        DeskVariableStore::getInstance().set(name + ".tx.rf.pmax.cs.comp.v2.array",
                                             {28, static_cast<int>(channel)});
        DeskVariableStore::getInstance().set(name + ".tx.rf.pmax.cs.comp.v2.arraysize", {2});
    }

    ~Radio() {
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        broker.unregisterInterface(ICapabilityHandler::interfaceName(m_channel), nullptr);
        broker.unregisterInterface(IAcmHandler::interfaceName(m_channel), nullptr);
        broker.unregisterInterface(IFrameFormat::interfaceName(m_channel), nullptr);
        broker.unregisterInterface(ISystemPowerController::interfaceName(m_channel), nullptr);
    }

    Radio(const Radio&) = delete;
    Radio& operator=(const Radio&) = delete;

private:
    static CapabilityHandlerAnswers capabilities(RadioChannel channel,
                                                 const std::string& productNumber) {
        CapabilityHandlerAnswers answers;
        answers.productNumber = productNumber;
        answers.minOutputPower = -1000;
        std::vector<int> table;
        int power = highestPmax + static_cast<int>(channel);
        for (const Modulation modulation : modulations) {
            table.push_back(static_cast<int>(modulation));
            table.push_back(power);
            power -= 30;
        }
        answers.pmaxDpd2Etsi = table;
        return answers;
    }

    RadioChannel m_channel;
    SimulatedCapabilityHandler m_capabilityHandler;
    SimulatedAcmHandler m_acmHandler;
    SimulatedFrameFormat m_frameFormat;
    SimulatedSystemPowerController m_systemPowerController;
};

/// The results and outputs of every query, one after the other.
std::vector<long> answersOf(OutputPowerCalculator& service) {
    std::vector<long> answers;
    long first = 0;
    long second = 0;
    answers.push_back(service.findPminPmax(first, second));
    answers.insert(answers.end(), {first, second});
    for (const Modulation modulation : modulations) {
        answers.push_back(service.calculateAdmodPowerCapabilities(
            modulation, EReferenceSEC::Class5HB, first, second));
        answers.insert(answers.end(), {first, second});
        answers.push_back(service.calculatePowerCapabilities(modulation, first, second));
        answers.insert(answers.end(), {first, second});
    }
    answers.push_back(service.getUnrestrictedPmax(first));
    answers.push_back(first);

    constexpr ModulationAndCoding undefined = {ModulationAndCoding::UNDEFINED};
    std::map<ModulationAndCoding, long> powerMap;
    answers.push_back(static_cast<long>(service.getMinMaxOutputPowerVsModulationArray(
        0, undefined, undefined, EReferenceSEC::UNDEFINED, first, powerMap)));
    answers.push_back(first);
    for (const auto& [code, power] : powerMap) {
        answers.insert(answers.end(), {code.code, power});
    }
    return answers;
}

/// Sets every operating input, each time to something else.
/// @return what each time was left of a power.
std::vector<long> pushInputs(OutputPowerCalculator& service) {
    constexpr int roundCount = 20;
    std::vector<long> powers;
    for (int round = 0; round < roundCount; ++round) {
        service.setPowerCutback(static_cast<unsigned long>(round));
        service.setTemporaryPowerCutback(round % 2 == 0, 50);
        service.setTemperature(round);
        service.setBoosterPresence(round % 8, 2500, 700, Modulation::QAM512);
        long power = highestPmax;
        service.applyCutbackToMaxPower(power);
        powers.push_back(power);
    }
    return powers;
}

struct Family {
    const char* name;
    const char* productNumber;
};

class Concurrency : public ::testing::TestWithParam<Family> {
protected:
    Concurrency() {
        // By one thread before several ask, as the contract has it.
        OutputPowerCalculator::createCalculators();
        InterfaceBroker::getInstance().registerInterface(
            IHardwareConfigurationHandler::interfaceName(), &m_hardwareConfigurationHandler);
    }

    ~Concurrency() override {
        InterfaceBroker::getInstance().unregisterInterface(
            IHardwareConfigurationHandler::interfaceName(), nullptr);
        DeskVariableStore::getInstance().clear();
        DeskTrace::getInstance().setLevel(0);
        DeskTrace::getInstance().clear();
    }

    SimulatedHardwareConfigurationHandler m_hardwareConfigurationHandler;
};

/// What many threads were told.
struct Answers {
    /// The answers of each round of each asking thread; a thread's number is even if it asked the
    /// first service.
    std::vector<std::vector<std::vector<long>>> asked;
    std::vector<std::vector<long>> pushed; ///< the powers of each thread that set inputs
};

/// Asks each of two services from several threads at once, while others get inputs, a thread each.
Answers askAtOnce(OutputPowerCalculator& even, OutputPowerCalculator& odd,
                  std::array<OutputPowerCalculator, 2>& others) {
    constexpr int askingThreads = 6;
    constexpr int roundCount = 20;
    std::latch start(askingThreads + static_cast<int>(others.size()));
    Answers answers;
    answers.asked.resize(askingThreads);
    answers.pushed.resize(others.size());
    std::vector<std::thread> threads;
    for (int number = 0; number < askingThreads; ++number) {
        threads.emplace_back([&, number] {
            OutputPowerCalculator& service = number % 2 == 0 ? even : odd;
            std::vector<std::vector<long>>& mine = answers.asked[static_cast<std::size_t>(number)];
            start.arrive_and_wait();
            for (int round = 0; round < roundCount; ++round) {
                mine.push_back(answersOf(service));
            }
        });
    }
    for (std::size_t number = 0; number < others.size(); ++number) {
        threads.emplace_back([&, number] {
            start.arrive_and_wait();
            answers.pushed[number] = pushInputs(others[number]);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return answers;
}

void expectEach(const Answers& answers, const std::vector<long>& ofEven,
                const std::vector<long>& ofOdd, const std::vector<long>& ofPushed) {
    for (std::size_t thread = 0; thread < answers.asked.size(); ++thread) {
        for (const std::vector<long>& round : answers.asked[thread]) {
            ASSERT_EQ(round, thread % 2 == 0 ? ofEven : ofOdd) << "in thread " << thread;
        }
    }
    for (const std::vector<long>& powers : answers.pushed) {
        EXPECT_EQ(powers, ofPushed);
    }
}

} // namespace

TEST_P(Concurrency, changesNoAnswer) {
    const Radio firstRadio(1, GetParam().productNumber);
    const Radio secondRadio(2, GetParam().productNumber);
    std::array<OutputPowerCalculator, 2> others{OutputPowerCalculator{1}, OutputPowerCalculator{1}};
    OutputPowerCalculator first(1);
    OutputPowerCalculator second(2);
    ASSERT_EQ(first.initialize(), 0U);
    ASSERT_EQ(second.initialize(), 0U);
    second.setBoosterPresence(1, 2500, 700, Modulation::QAM1024);

    DeskTrace::getInstance().setLevel(0);
    const auto untraced = askAtOnce(first, second, others);
    DeskTrace::getInstance().setLevel(6);
    const auto traced = askAtOnce(first, second, others);
    DeskTrace::getInstance().setLevel(0);

    const std::vector<long> serialFirst = answersOf(first);
    const std::vector<long> serialSecond = answersOf(second);
    // The minimum with the channel's offset, and the highest power of the channel's table.
    EXPECT_EQ(std::vector<long>(serialFirst.begin(), serialFirst.begin() + 3),
              (std::vector<long>{0, -990, 2801}));
    EXPECT_EQ(std::vector<long>(serialSecond.begin(), serialSecond.begin() + 3),
              (std::vector<long>{0, -980, 2802}));
    // A permanent cutback of the round's number, or a temporary one of 50, by turns.
    const std::vector<long> serialPushed = pushInputs(others[0]);
    EXPECT_EQ(std::vector<long>(serialPushed.begin(), serialPushed.begin() + 4),
              (std::vector<long>{2750, 2799, 2750, 2797}));
    expectEach(untraced, serialFirst, serialSecond, serialPushed);
    expectEach(traced, serialFirst, serialSecond, serialPushed);
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, Concurrency,
                         ::testing::Values(Family{"FirstOutdoor", "QZT 846 001"},
                                           Family{"ThirdOutdoor", "QZT 846 003"},
                                           Family{"OlderRadioUnit", "QZT35201/1"},
                                           Family{"NewerRadioUnit", "QZT99999/9"}),
                         [](const auto& family) { return std::string(family.param.name); });
