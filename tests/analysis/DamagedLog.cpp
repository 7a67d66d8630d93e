#include "DamagedLog.h"

#include "RadioFileReader.h"
#include "Replay.h"
#include "Waterfall.h"
#include "reference/RandomRadioFile.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <nlohmann/json.hpp>

namespace {

/// Two logs in one, in pieces of random length.
Log interleaved(const Log& left, const Log& right, const Draw& draw) {
    Log log;
    std::size_t places[] = {0, 0};
    const Log* const logs[] = {&left, &right};
    while (places[0] < left.size() || places[1] < right.size()) {
        const std::size_t drawn = draw(2);
        const std::size_t which = places[drawn] < logs[drawn]->size() ? drawn : 1 - drawn;
        for (std::size_t count = 1 + draw(60); count > 0 && places[which] < logs[which]->size();
             --count) {
            log.push_back((*logs[which])[places[which]++]);
        }
    }
    return log;
}

void insertInFront(Log& log, const std::string& words) {
    for (LogLine& line : log) {
        line.text.insert(0, words);
    }
}

bool isCutback(Rule rule) {
    return rule == Rule::Cutback || rule == Rule::PermanentCutback ||
           rule == Rule::TemporaryCutback;
}

bool isOfNumber(char character) {
    return (character >= '0' && character <= '9') || character == '-';
}

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           character == '_';
}

/// Where the numbers of a text stand, and how long they are. Digits of a word are none.
std::vector<std::pair<std::size_t, std::size_t>> numbersIn(const std::string& text) {
    std::vector<std::pair<std::size_t, std::size_t>> numbers;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = begin;
        while (end < text.size() && isOfNumber(text[end])) {
            ++end;
        }
        const bool isWord =
            (begin > 0 && isLetter(text[begin - 1])) || (end < text.size() && isLetter(text[end]));
        if (end > begin && !isWord) {
            numbers.emplace_back(begin, end - begin);
        }
        begin = std::max(end, begin + 1);
    }
    return numbers;
}

std::string withoutNumbers(std::string text) {
    const auto numbers = numbersIn(text);
    for (auto number = numbers.rbegin(); number != numbers.rend(); ++number) {
        text.replace(number->first, number->second, "#");
    }
    return text;
}

std::string anotherNumber(const Draw& draw) {
    constexpr std::array<const char*, 8> values = {"0", "1",   "-1",         "2",
                                                   "7", "300", "2147483647", "-2147483648"};
    const std::size_t drawn = draw(values.size() + 1);
    return drawn < values.size() ? values[drawn] : std::to_string(draw(4000));
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
    // Of a cutback beyond 32 bits whose line is lost, the figures tell the rest within them.
    if (told.runnerUp() != nullptr && !truth.wraps &&
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

} // namespace

Log damaged(Log log, const Log& other, Damage damage, const Draw& draw) {
    const std::size_t place = draw(log.size());
    const auto at = log.begin() + static_cast<std::ptrdiff_t>(place);
    switch (damage) {
    case Damage::Dropped:
        log.erase(at);
        break;
    case Damage::Cut:
        at->text.resize(draw(at->text.size()));
        break;
    case Damage::Doubled:
        log.insert(at, LogLine(*at));
        break;
    case Damage::Swapped:
        if (place + 1 < log.size()) {
            std::swap(*at, *(at + 1));
        }
        break;
    case Damage::Interleaved:
        return interleaved(log, other, draw);
    case Damage::CutAtAColumn: {
        const std::size_t columns = 180 + draw(70);
        for (LogLine& line : log) {
            line.text.resize(std::min(columns, line.text.size()));
        }
        break;
    }
    case Damage::StartsInTheMiddle:
        log.erase(log.begin(), at);
        break;
    case Damage::LevelFive:
        std::erase_if(log, [](const LogLine& line) { return line.text.front() == '6'; });
        break;
    case Damage::Holed: {
        // A lost block: the line goes on with the end of a later one.
        const std::size_t last = std::min(log.size() - 1, place + draw(6));
        const std::string& later = log[last].text;
        const std::string end = later.substr(draw(later.size()));
        // Only folders are lost of the later line if its source is still named.
        const bool isNamed =
            later.size() - end.size() <= later.rfind('/', later.find(':')) && last != place;
        at->text.resize(draw(at->text.size()));
        at->text += std::string(draw(2) == 0 ? 0 : 512, '\0') + end;
        if (isNamed) {
            at->origin = log[last].origin;
        }
        log.erase(at + 1, log.begin() + static_cast<std::ptrdiff_t>(last) + 1);
        break;
    }
    case Damage::TwoProcesses: {
        Log right = other;
        insertInFront(log, "12:00:00.1 node7 qor[4711]: ");
        insertInFront(right, "12:00:00.2 node7 qor[4712]: ");
        return interleaved(log, right, draw);
    }
    case Damage::TimesInFront:
        insertInFront(log, "2026-03-01T12:00:00.125 node7 ");
        break;
    case Damage::CarriageReturns:
        for (LogLine& line : log) {
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

Log changed(Log log, const Log& other, const Draw& draw) {
    const std::size_t place = draw(log.size());
    LogLine& line = log[place];
    const std::string before = line.text;
    switch (draw(4)) {
    case 0:
        if (!line.text.empty()) {
            line.text[draw(line.text.size())] = static_cast<char>(draw(256));
        }
        break;
    case 1: {
        std::string bytes(1 + draw(4), ' ');
        std::ranges::generate(bytes, [&draw] { return static_cast<char>(draw(256)); });
        line.text.insert(draw(line.text.size() + 1), bytes);
        break;
    }
    case 2:
        if (const auto numbers = numbersIn(line.text); !numbers.empty()) {
            const auto& [begin, length] = numbers[draw(numbers.size())];
            line.text.replace(begin, length, anotherNumber(draw));
        }
        break;
    default:
        if (!other.empty()) {
            LogLine foreign = other[draw(other.size())];
            foreign.isChanged = true;
            log.insert(log.begin() + static_cast<std::ptrdiff_t>(place), foreign);
            return log;
        }
        break;
    }
    std::erase(line.text, '\n'); // No line holds its end.
    line.isChanged = line.text != before;
    line.hasAnotherNumber = line.isChanged && withoutNumbers(line.text) == withoutNumbers(before);
    return log;
}

std::vector<std::string> replayOfRandomRadio(std::uint64_t seed, std::size_t mostRequests) {
    nlohmann::json radio = reference::randomRadioFile(seed);
    nlohmann::json& requests = radio.at("requests");
    while (requests.size() > mostRequests) {
        requests.erase(requests.size() - 1);
    }
    std::vector<std::string> lines;
    Replay(6).play(RadioFileReader::read(radio.dump()),
                   [&lines](const std::string& line) { lines.push_back(line); });
    return lines;
}

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

Log LogTruth::logOf(const std::vector<std::string>& lines, unsigned number) {
    LoggedQueries whole({}, [&](const LoggedPowers& powers) {
        m_queries.insert_or_assign({number, powers.line}, powers);
    });
    Log log;
    for (const std::string& line : lines) {
        log.push_back({line, {number, log.size() + 1}});
        whole.read(line);
    }
    whole.end();
    return log;
}

std::string LogTruth::lieIn(const LoggedPowers& told, const Log& log, Damage damage) const {
    const auto place = m_queries.find(log.at(told.line - 1).origin);
    if (place == m_queries.end()) {
        return told.isComplete() && !told.explanations.empty() ? "no query of the log" : "";
    }
    if (mayTellAnotherNumber(log, damage, place->first)) {
        return {};
    }
    const std::vector<Explanation>& truths = place->second.explanations;
    // Where nothing tells two services apart, the line with which one refuses a query may close
    // that of the other. No power is told then.
    const bool mayBeRefusedByOther =
        damage == Damage::Interleaved && told.explanations.empty() && told.call.starts_with("calc");
    if (told.isComplete() && told.explanations.size() != truths.size() && !mayBeRefusedByOther) {
        return "complete with " + std::to_string(told.explanations.size()) + " for " +
               std::to_string(truths.size());
    }
    for (std::size_t index = 0; index < told.explanations.size(); ++index) {
        const Explanation& explanation = told.explanations[index];
        const std::string contradiction =
            index < truths.size() ? contradictionOf(explanation, truths[index],
                                                    told.isComplete() && told.unconfirmed.empty())
                                  : "one more calculation";
        // Two services that nothing tells apart: whole calculations of the one may stand in a query
        // of the other, which is told to be incomplete then.
        const bool mayBeOfOther = damage == Damage::Interleaved && !told.isComplete();
        if (!contradiction.empty() && !(mayBeOfOther && isOfAnyQuery(explanation))) {
            return contradiction + ", calculation " + std::to_string(index) +
                   (told.isComplete() ? "" : ", incomplete");
        }
    }
    if (damage >= Damage::TwoProcesses && std::ranges::none_of(log, &LogLine::isChanged)) {
        for (const std::string& gap : told.gaps) {
            if (!gap.starts_with("the log does not tell ")) {
                return "a gap where nothing is missing: " + gap;
            }
        }
    }
    return {};
}

bool LogTruth::mayTellAnotherNumber(const Log& log, Damage damage,
                                    const std::pair<unsigned, std::size_t>& query) const {
    return std::ranges::any_of(log, [&](const LogLine& line) {
        if (!line.hasAnotherNumber) {
            return false;
        }
        // It is a part of the query that began last before it, and these carry it elsewhere.
        const auto behind = m_queries.upper_bound(line.origin);
        return damage == Damage::Interleaved || damage == Damage::Holed ||
               (behind != m_queries.begin() && std::prev(behind)->first == query);
    });
}

bool LogTruth::isOfAnyQuery(const Explanation& told) const {
    return std::ranges::any_of(m_queries, [&told](const auto& query) {
        return std::ranges::any_of(query.second.explanations, [&told](const Explanation& real) {
            return contradictionOf(told, real, false).empty();
        });
    });
}
