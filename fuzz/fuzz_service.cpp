#include "DeskTrace.h"
#include "Find.h"
#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "OddAnswers.h"
#include "Sides.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

/// The bytes are what a service's surroundings answer, and a run of calls: starts, queries,
/// operating inputs, and answers that change meanwhile. Every result, output and trace record has
/// to be the restatement's, and so has whom the service asked, how often and with what. No radio
/// file is made or read on the way, and few calls make an input, so that many are tried.

namespace {

constexpr std::size_t mostSteps = 8;

constexpr std::array<std::int32_t, 18> modulations = {
    64, 2, 4, 16, 32, 128, 256, 512, 1024, 2048, 4096, 16384, 8192, 0, 3, 65536, 99999, 100000};
constexpr std::array<std::int32_t, 12> classes = {1000, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
constexpr std::array<std::int32_t, 10> codes = {163, 31, 61, 81, 101, 11, 32, 162, 9, 164};
constexpr std::array<std::int32_t, 6> ids = {0, 7, 5, -1, 8, 1};
constexpr std::array<std::int32_t, 7> powers = {0, 100, -100, 2400, 1, -1, 300};

/// One of the usual values, or any number at all.
template <std::size_t Count>
std::int32_t oneOf(const std::array<std::int32_t, Count>& usual, FuzzInput& input) {
    const unsigned choice = input.choice();
    return choice < 240 ? usual[choice % Count] : static_cast<std::int32_t>(input.number());
}

class Match {
public:
    Match() {
        // What a neighbour is asked for that it does not know is a find, too.
        GTEST_FLAG_SET(throw_on_failure, true);
        const UsualAnswers usual = usualAnswers({families.front(), false, false, Limit::None});
        for (std::size_t call = 0; call < callCount; ++call) {
            m_odd[call] = oddAnswers(static_cast<Call>(call), usual[call]);
        }
    }

    void play(FuzzInput& input) {
        begin(input);
        if (!start()) {
            return;
        }
        for (std::size_t steps = 0; steps < mostSteps && !input.areUsedUp(); ++steps) {
            const unsigned step = input.choice() % 16;
            if (step == 15) {
                changeAnswer(input);
            } else if (step == 14) {
                if (!start()) {
                    return; // What a service may be asked that has lost a neighbour is not defined.
                }
            } else if (step >= 9) {
                setSomething(step, input);
            } else {
                ask(step, input);
            }
        }
    }

private:
    void begin(FuzzInput& input) {
        const unsigned kind = input.choice();
        const unsigned changesAndChannel = input.choice();
        enterChannel(1 + changesAndChannel / 8 % 2);
        m_isTraced = kind % 4 == 0;
        DeskTrace::getInstance().setLevel(m_isTraced ? 6 : 0);
        m_sides->usual = usualAnswers({families[kind / 4 % families.size()], false,
                                       kind / 16 % 2 == 0, static_cast<Limit>(kind / 32 % 3)});
        for (std::size_t call = 0; call < callCount; ++call) {
            setAnswer(static_cast<Call>(call), m_sides->usual[call]);
        }
        for (unsigned changes = changesAndChannel % 8; changes > 0; --changes) {
            changeAnswer(input);
        }
        m_sides->library.build();
        m_sides->library.surroundings.capabilityHandler.forgetTables();
        m_sides->reference.build();
        m_sides->library.takeTrace();
        m_sides->reference.takeTrace();
    }

    /// Nobody may be asked of another channel than this.
    void enterChannel(std::uint32_t channel) {
        if (!m_sides || m_sides->library.channel != channel) {
            m_sides.reset(); // it withdraws by name what the next one puts there
            m_sides.emplace(Scene{families.front(), false, false, Limit::None, channel});
        }
    }

    void setAnswer(Call call, const ScriptedAnswer& answer) {
        m_sides->library.script.setUsual(call, answer);
        m_sides->reference.script.setUsual(call, answer);
    }

    void changeAnswer(FuzzInput& input) {
        const std::size_t call = input.choice() % callCount;
        const std::vector<ScriptedAnswer>& odd = m_odd[call];
        ScriptedAnswer answer = odd[input.choice() % odd.size()];
        const unsigned how = input.choice();
        // The first number of a Pmax table says how many follow, which nobody can check.
        const bool isPmax = call >= static_cast<std::size_t>(Call::PmaxDpd1Ansi) &&
                            call <= static_cast<std::size_t>(Call::PmaxDpd2Etsi);
        const std::size_t first = isPmax ? 1 : 0;
        if (how >= 192 && answer.values.size() > first) {
            answer.values[first + how % (answer.values.size() - first)] =
                static_cast<std::int32_t>(input.number());
        }
        if (how >= 128 && !answer.text.empty()) {
            // Nearly a product's number, often one that begins like it.
            const std::size_t size = answer.text.size();
            const std::size_t place = how % 4 < 2 ? size : input.choice() % size;
            if (how % 2 == 0) {
                answer.text.insert(place, 1, static_cast<char>(input.choice()));
            } else {
                answer.text.erase(std::min(place, size - 1), 1);
            }
        }
        setAnswer(static_cast<Call>(call), answer);
    }

    bool start() {
        const unsigned result = m_sides->library.service->initialize();
        expectSame("initialize", result, m_sides->reference.service->initialize(), {}, {});
        return result == 0;
    }

    void setSomething(unsigned step, FuzzInput& input) {
        OutputPowerCalculator& sut = *m_sides->library.service;
        reference::Service& right = *m_sides->reference.service;
        const std::int32_t first = oneOf(powers, input);
        switch (step) {
        case 9:
            expectSame("setPowerCutback", sut.setPowerCutback(static_cast<std::uint32_t>(first)),
                       right.setPowerCutback(static_cast<std::uint32_t>(first)), {}, {});
            break;
        case 10: {
            const bool use = input.choice() % 2 == 1;
            expectSame("setTemporaryPowerCutback",
                       sut.setTemporaryPowerCutback(use, static_cast<std::uint32_t>(first)),
                       right.setTemporaryPowerCutback(use, static_cast<std::uint32_t>(first)), {},
                       {});
            break;
        }
        case 11:
            expectSame("setTemperature", sut.setTemperature(first), right.setTemperature(first), {},
                       {});
            break;
        case 12: {
            long power = first;
            std::int32_t rightPower = first;
            sut.applyCutbackToMaxPower(power);
            right.applyCutbackToMaxPower(rightPower);
            expectSame("applyCutbackToMaxPower", 0, 0, {power}, {rightPower});
            break;
        }
        default: {
            constexpr std::array<std::int32_t, 5> presences = {0, 1, 7, -1, 2};
            const std::int32_t presence = oneOf(presences, input);
            const std::int32_t gain = oneOf(powers, input);
            const std::int32_t modulation = oneOf(modulations, input);
            expectSame(
                "setBoosterPresence",
                sut.setBoosterPresence(presence, gain, first, static_cast<Modulation>(modulation)),
                right.setBoosterPresence(presence, gain, first, modulation), {}, {});
            break;
        }
        }
    }

    void ask(unsigned step, FuzzInput& input) {
        OutputPowerCalculator& sut = *m_sides->library.service;
        reference::Service& right = *m_sides->reference.service;
        constexpr std::int32_t before = 123456;
        long low = before;
        long high = before + 1;
        std::int32_t rightLow = before;
        std::int32_t rightHigh = before + 1;
        switch (step) {
        case 0:
        case 1: {
            const std::int32_t modulation = oneOf(modulations, input);
            const int result =
                sut.calculatePowerCapabilities(static_cast<Modulation>(modulation), low, high);
            const std::uint32_t rightResult =
                right.calculatePowerCapabilities(modulation, rightLow, rightHigh);
            expectSame("calculatePowerCapabilities", static_cast<std::uint32_t>(result),
                       rightResult, {low, high}, {rightLow, rightHigh});
            break;
        }
        case 2:
        case 3: {
            const std::int32_t modulation = oneOf(modulations, input);
            const std::int32_t rsec = oneOf(classes, input);
            const int result = sut.calculateAdmodPowerCapabilities(
                static_cast<Modulation>(modulation), static_cast<EReferenceSEC>(rsec), low, high);
            const std::uint32_t rightResult =
                right.calculateAdmodPowerCapabilities(modulation, rsec, rightLow, rightHigh);
            expectSame("calculateAdmodPowerCapabilities", static_cast<std::uint32_t>(result),
                       rightResult, {low, high}, {rightLow, rightHigh});
            break;
        }
        case 4: {
            const int result = sut.findPminPmax(low, high);
            const std::uint32_t rightResult = right.findPminPmax(rightLow, rightHigh);
            expectSame("findPminPmax", static_cast<std::uint32_t>(result), rightResult, {low, high},
                       {rightLow, rightHigh});
            break;
        }
        case 5: {
            const int result = sut.getUnrestrictedPmax(high);
            const std::uint32_t rightResult = right.getUnrestrictedPmax(rightHigh);
            expectSame("getUnrestrictedPmax", static_cast<std::uint32_t>(result), rightResult,
                       {high}, {rightHigh});
            break;
        }
        default:
            askForArray(input);
            break;
        }
    }

    void askForArray(FuzzInput& input) {
        constexpr std::int32_t before = 123456;
        const std::int32_t id = oneOf(ids, input);
        const std::int32_t minCode = oneOf(codes, input);
        const std::int32_t maxCode = oneOf(codes, input);
        const std::int32_t rsec = oneOf(classes, input);
        // An entry of the caller's own, and one that may be overwritten.
        std::map<ModulationAndCoding, long> powerMap = {{{11}, before}, {{61}, before + 1}};
        reference::PowerMap rightMap;
        rightMap[11] = before;
        rightMap[61] = before + 1;
        long low = before;
        std::int32_t rightLow = before;
        const unsigned result = m_sides->library.service->getMinMaxOutputPowerVsModulationArray(
            id, {minCode}, {maxCode}, static_cast<EReferenceSEC>(rsec), low, powerMap);
        const std::uint32_t rightResult =
            m_sides->reference.service->getMinMaxOutputPowerVsModulationArray(
                id, minCode, maxCode, rsec, rightLow, rightMap);
        std::vector<long> outputs = {low};
        for (const auto& [code, power] : powerMap) {
            outputs.insert(outputs.end(), {code.code, power});
        }
        std::vector<long> rightOutputs = {rightLow};
        for (const auto& [code, power] : rightMap) {
            rightOutputs.insert(rightOutputs.end(), {code, power});
        }
        expectSame("getMinMaxOutputPowerVsModulationArray", result, rightResult, outputs,
                   rightOutputs);
    }

    void expectSameTraces(const char* operation) {
        const std::vector<Record> trace = m_sides->library.takeTrace();
        const std::vector<Record> right = m_sides->reference.takeTrace();
        for (std::size_t at = 0; at < trace.size() && at < right.size(); ++at) {
            if (trace[at] != right[at]) {
                std::ostringstream both;
                both << operation << ": trace " << at << " is " << trace[at] << ", not "
                     << right[at];
                reportFind(both.str());
            }
        }
        if (trace.size() != right.size()) {
            reportFind(std::string(operation) + ": another number of traces");
        }
    }

    void expectSame(const char* operation, std::uint32_t result, std::uint32_t right,
                    const std::vector<long>& outputs, const std::vector<long>& rightOutputs) {
        const auto differs = [operation](const char* what) {
            reportFind(std::string(operation) + ": another " + what + " than the restatement's");
        };
        if (result != right) {
            differs("result");
        }
        if (outputs != rightOutputs) {
            differs("output");
        }
        if (m_isTraced) {
            expectSameTraces(operation);
        } else {
            m_sides->reference.service->m_trace.clear();
        }
        const Script& asked = m_sides->library.script;
        const Script& rightAsked = m_sides->reference.script;
        // The restatement takes both stored variables at once, needed or not; they come last.
        const auto neighbours = static_cast<std::size_t>(Call::CompensationArray);
        for (std::size_t call = 0; call < neighbours; ++call) {
            if (!m_isTraced && static_cast<Call>(call) == Call::DpdVersion) {
                continue; // It is asked once more for the text of a trace.
            }
            if (asked.timesOf(static_cast<Call>(call)) !=
                rightAsked.timesOf(static_cast<Call>(call))) {
                differs(nameOf(static_cast<Call>(call)));
            }
        }
        if (asked.arguments() != rightAsked.arguments()) {
            differs("argument");
        }
        m_sides->restart();
    }

    std::optional<BothSides> m_sides;
    std::array<std::vector<ScriptedAnswer>, callCount> m_odd;
    bool m_isTraced = true;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static Match match;
    FuzzInput input(bytes, size);
    match.play(input);
    return 0;
}
