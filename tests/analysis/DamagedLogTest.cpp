#include "LoggedPowers.h"
#include "LoopStride.h"
#include "RadioFileReader.h"
#include "Replay.h"
#include "Waterfall.h"
#include "reference/RandomRadioFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

// Logs of random radios, damaged in every way that the field knows. Whatever is told as complete is
// held against what the whole log tells.

namespace {

/// A line, and where it stood in which log before the damage.
struct Line {
    std::string text;
    std::pair<unsigned, std::size_t> origin;
};
using Log = std::vector<Line>;

/// What is true of each query, by the place of its first line.
using Truth = std::map<std::pair<unsigned, std::size_t>, LoggedPowers>;

std::vector<std::string> replayOfRandomRadio(std::uint64_t seed) {
    std::vector<std::string> lines;
    Replay(6).play(RadioFileReader::read(reference::randomRadioFile(seed).dump()),
                   [&lines](const std::string& line) { lines.push_back(line); });
    return lines;
}

/// The traces of a replay as a node writes them, one in a line.
std::vector<std::string> textOf(const std::vector<std::string>& replay) {
    std::vector<std::string> lines;
    for (const std::string& answer : replay) {
        const auto object = nlohmann::json::parse(answer);
        if (!object.contains("trace")) {
            continue;
        }
        for (const auto& trace : object.at("trace")) {
            const int level = trace.contains("level")
                                  ? trace.at("level").get<int>()
                                  : (trace.at("code").get<unsigned>() >= 32768 ? 1 : 5);
            std::string text = trace.at("text");
            text.erase(text.find_last_not_of('\n') + 1);
            lines.push_back(std::to_string(level) + " " + trace.at("kind").get<std::string>() +
                            " " + trace.at("file").get<std::string>() + ":1 " +
                            trace.at("function").get<std::string>() + ": " + text);
        }
    }
    return lines;
}

/// A log, and adds what is told of it as it stands.
Log logOf(const std::vector<std::string>& lines, unsigned number, Truth& truth) {
    LoggedQueries whole({}, [&](const LoggedPowers& powers) {
        truth.insert_or_assign({number, powers.line}, powers);
    });
    Log log;
    for (const std::string& line : lines) {
        log.push_back({line, {number, log.size() + 1}});
        whole.read(line);
    }
    whole.end();
    return log;
}

/// Two logs in one, in pieces of random length.
Log interleaved(const Log& left, const Log& right, std::mt19937& random) {
    Log log;
    std::size_t places[] = {0, 0};
    const Log* const logs[] = {&left, &right};
    while (places[0] < left.size() || places[1] < right.size()) {
        const std::size_t which = random() % 2;
        for (std::size_t count = 1 + random() % 60;
             count > 0 && places[which] < logs[which]->size(); --count) {
            log.push_back((*logs[which])[places[which]++]);
        }
    }
    return log;
}

void insertInFront(Log& log, const std::string& words) {
    for (Line& line : log) {
        line.text.insert(0, words);
    }
}

enum class Damage {
    Dropped,
    Cut,
    Doubled,
    Swapped,
    Interleaved,
    CutAtAColumn,
    StartsInTheMiddle,
    LevelFive,
    Holed,
    // What takes nothing away:
    TwoProcesses,
    TimesInFront,
    CarriageReturns,
    ByteOrderMark,
    ServiceStartsAgain,
    Count
};

Log damaged(Log log, const Log& other, Damage damage, std::mt19937& random) {
    const std::size_t place = random() % log.size();
    const auto at = log.begin() + static_cast<std::ptrdiff_t>(place);
    switch (damage) {
    case Damage::Dropped:
        log.erase(at);
        break;
    case Damage::Cut:
        at->text.resize(random() % at->text.size());
        break;
    case Damage::Doubled:
        log.insert(at, Line(*at));
        break;
    case Damage::Swapped:
        if (place + 1 < log.size()) {
            std::swap(*at, *(at + 1));
        }
        break;
    case Damage::Interleaved:
        return interleaved(log, other, random);
    case Damage::CutAtAColumn: {
        const std::size_t columns = 180 + random() % 70;
        for (Line& line : log) {
            line.text.resize(std::min(columns, line.text.size()));
        }
        break;
    }
    case Damage::StartsInTheMiddle:
        log.erase(log.begin(), at);
        break;
    case Damage::LevelFive:
        std::erase_if(log, [](const Line& line) { return line.text.front() == '6'; });
        break;
    case Damage::Holed: {
        // A lost block: the line goes on with the end of a later one.
        const std::size_t last = std::min(log.size() - 1, place + random() % 6);
        const std::string end = log[last].text.substr(random() % log[last].text.size());
        at->text.resize(random() % at->text.size());
        at->text += std::string(random() % 2 == 0 ? 0 : 512, '\0') + end;
        log.erase(at + 1, log.begin() + static_cast<std::ptrdiff_t>(last) + 1);
        break;
    }
    case Damage::TwoProcesses: {
        Log right = other;
        insertInFront(log, "12:00:00.1 node7 qor[4711]: ");
        insertInFront(right, "12:00:00.2 node7 qor[4712]: ");
        return interleaved(log, right, random);
    }
    case Damage::TimesInFront:
        insertInFront(log, "2026-03-01T12:00:00.125 node7 ");
        break;
    case Damage::CarriageReturns:
        for (Line& line : log) {
            line.text += '\r';
        }
        break;
    case Damage::ByteOrderMark:
        log.front().text.insert(0, "\xEF\xBB\xBF");
        break;
    case Damage::ServiceStartsAgain:
        log.insert(log.end(), other.begin(), other.end());
        break;
    case Damage::Count:
        break;
    }
    return log;
}

bool isCutback(Rule rule) {
    return rule == Rule::Cutback || rule == Rule::PermanentCutback ||
           rule == Rule::TemporaryCutback;
}

/// Whether a step takes off what it truly does. Of two powers of 32 bits the difference has no more
/// bits, and the library computes with no more: a cutback of 2^32 is none.
bool isSameAmount(const Explanation::Step& told, const Explanation::Step& truth) {
    const bool isDifference = told.basis == Explanation::Basis::Difference;
    return told.amount == truth.amount ||
           (isDifference && Waterfall::wrapped(told.amount) == Waterfall::wrapped(truth.amount));
}

/// What an explanation states that the truth contradicts; empty if nothing.
std::string contradictionOf(const Explanation& told, const Explanation& truth, bool isConfirmed) {
    const auto text = [](const auto& number) {
        return number ? std::to_string(*number) : std::string("none");
    };
    if (told.modulation != truth.modulation) {
        return "another modulation";
    }
    if (told.answer && told.answer != truth.answer) {
        return "power " + text(told.answer) + " for " + text(truth.answer);
    }
    if (told.refusal && told.refusal != truth.refusal) {
        return std::string("refused by ") + codeOf(*told.refusal);
    }
    if (told.decisiveRule() != Rule::Unexplained && told.decisiveRule() != truth.decisiveRule()) {
        return std::string("rule ") + codeOf(told.decisiveRule()) + " for " +
               codeOf(truth.decisiveRule());
    }
    if (!told.addsUp()) {
        return told.mismatch;
    }
    if (!isConfirmed) {
        return {};
    }
    if (told.runnerUp() != nullptr &&
        (truth.runnerUp() == nullptr || told.runnerUp()->value != truth.runnerUp()->value)) {
        return "another next bound";
    }
    for (std::size_t index = 0; index < std::min(told.lookups.size(), truth.lookups.size());
         ++index) {
        const auto& power = told.lookups[index].power;
        if (power && truth.lookups[index].power && power != truth.lookups[index].power) {
            return "Pmax " + text(power) + " for " + text(truth.lookups[index].power);
        }
    }
    for (const Explanation::Step& step : told.steps) {
        for (const Explanation::Step& other : truth.steps) {
            const bool isSame = step.rule == other.rule && step.kind == other.kind;
            if ((isCutback(step.rule) && isCutback(other.rule) && !isSameAmount(step, other)) ||
                (isSame && step.rule == Rule::BoosterGain &&
                 step.basis == Explanation::Basis::Input && step.amount != other.amount) ||
                (isSame && step.rule == Rule::BoosterInputLimit && step.bound != other.bound)) {
                return "input " + std::to_string(step.amount) + " for " +
                       std::to_string(other.amount) + " in " + step.words;
            }
        }
    }
    return {};
}

/// Whether a calculation is one of any query of the logs.
bool isOfAnyQuery(const Explanation& told, const Truth& truth) {
    return std::ranges::any_of(truth, [&told](const auto& query) {
        return std::ranges::any_of(query.second.explanations, [&told](const Explanation& real) {
            return contradictionOf(told, real, false).empty();
        });
    });
}

std::uint64_t numberOfLogs() {
    const char* const wanted = std::getenv("QOR_DAMAGED_LOGS");
    // Two of each damage where each takes long.
    const std::uint64_t usual = loopStride() > 1 ? 28 : 130;
    return wanted == nullptr ? usual : std::strtoull(wanted, nullptr, 10);
}

TEST(ADamagedLog, TellsNothingWrongAsComplete) {
    std::uint64_t complete = 0;
    std::uint64_t incomplete = 0;
    for (std::uint64_t number = 0; number < numberOfLogs(); ++number) {
        const auto damage = static_cast<Damage>(number % static_cast<std::uint64_t>(Damage::Count));
        const std::uint64_t seed = 1 + number / static_cast<std::uint64_t>(Damage::Count);
        std::mt19937 random(static_cast<std::uint32_t>(number));
        Truth truth;
        // Every fourth is a log of replayed calls, of which each is one line.
        const bool isReplay = damage <= Damage::Interleaved && seed % 4 == 0;
        const auto linesOf = [isReplay](std::uint64_t radio) {
            const std::vector<std::string> replay = replayOfRandomRadio(radio);
            return isReplay ? replay : textOf(replay);
        };
        const Log whole = logOf(linesOf(seed), 0, truth);
        // Half of the other services differ in nothing but what is asked of them later.
        const Log other = logOf(linesOf(random() % 2 == 0 ? seed : seed + 1), 1, truth);
        if (whole.empty()) {
            continue;
        }
        const Log log = damaged(whole, other, damage, random);
        std::uint64_t found = 0;
        LoggedQueries sut({}, [&](const LoggedPowers& powers) {
            ++found;
            const std::string name = "log " + std::to_string(number) + ", damage " +
                                     std::to_string(static_cast<int>(damage)) + ", line " +
                                     std::to_string(powers.line);
            ++(powers.isComplete() ? complete : incomplete);
            const auto place = truth.find(log.at(powers.line - 1).origin);
            if (place == truth.end()) {
                EXPECT_FALSE(powers.isComplete() && !powers.explanations.empty())
                    << name << ": no query of the log";
                return;
            }
            const std::vector<Explanation>& truths = place->second.explanations;
            EXPECT_FALSE(powers.isComplete() && powers.explanations.size() != truths.size())
                << name << ": complete with " << powers.explanations.size() << " for "
                << truths.size();
            for (std::size_t index = 0; index < powers.explanations.size(); ++index) {
                const std::string contradiction =
                    index < truths.size()
                        ? contradictionOf(powers.explanations[index], truths[index],
                                          powers.isComplete() && powers.unconfirmed.empty())
                        : "one more calculation";
                // Two services that nothing tells apart: whole calculations of the one may stand
                // in a query of the other, which is told to be incomplete then.
                const bool mayBeOfOther = damage == Damage::Interleaved && !powers.isComplete();
                EXPECT_TRUE(contradiction.empty() ||
                            (mayBeOfOther && isOfAnyQuery(powers.explanations[index], truth)))
                    << contradiction << " in " << name << ", calculation " << index
                    << (powers.isComplete() ? "" : ", incomplete");
            }
            if (damage >= Damage::TwoProcesses) {
                for (const std::string& gap : powers.gaps) {
                    EXPECT_TRUE(gap.starts_with("the log does not tell ")) << name << ": " << gap;
                }
            }
        });
        for (const Line& line : log) {
            sut.read(line.text);
        }
        sut.end();
        if (damage == Damage::TwoProcesses || damage == Damage::ServiceStartsAgain) {
            EXPECT_EQ(found, truth.size()) << "log " << number;
        }
    }
    // Damage is small: most is told all the same.
    EXPECT_GT(complete, incomplete);
    RecordProperty("complete", static_cast<int>(complete));
    RecordProperty("incomplete", static_cast<int>(incomplete));
}

} // namespace
