#include "DamagedLog.h"
#include "Find.h"
#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "LogImport.h"
#include "LoggedPowers.h"
#include "RadioFileError.h"
#include "RadioFileReader.h"
#include "RecordedAnswers.h"
#include "Replay.h"
#include "TextChecks.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

/// The bytes are damage to the log of a radio, or a log as it stands. No power may be told as
/// complete that is not one of the whole log, and of any text as much of a radio file as there is
/// has to be one.

namespace {

constexpr unsigned mostLogs = 64;
/// Short logs, of which many are tried a second.
constexpr std::size_t mostLines = 45;
constexpr std::size_t mostRequests = 3;

/// Whole logs and what is true of them, which is worked out once.
class WholeLogs {
public:
    WholeLogs() {
        for (std::uint64_t seed = 1; m_traces.size() < mostLogs; ++seed) {
            const std::vector<std::string> replay = replayOfRandomRadio(seed, mostRequests);
            const std::vector<std::string> traces = textOf(replay);
            if (!traces.empty() && traces.size() <= mostLines) {
                m_traces.push_back(m_truth.logOf(traces, m_logs++));
                m_replays.push_back(m_truth.logOf(replay, m_logs++));
            }
        }
    }

    /// A log of traces, or of replayed calls, of which each is one line.
    const Log& log(unsigned number, bool isReplay) const {
        return (isReplay ? m_replays : m_traces)[number % mostLogs];
    }

    const LogTruth& truth() const { return m_truth; }

private:
    LogTruth m_truth;
    std::vector<Log> m_traces;
    std::vector<Log> m_replays;
    unsigned m_logs = 0;
};

/// What is told of a log has to be in sound texts, whatever the log.
void checkTexts(const LoggedPowers& powers) {
    for (const std::string& gap : powers.gaps) {
        expect(TextChecks::isOneLine(gap), "a gap is not told in one line");
    }
    for (const std::string& unconfirmed : powers.unconfirmed) {
        expect(TextChecks::isOneLine(unconfirmed), "an unconfirmed number is not told in one line");
    }
    const std::string line = jsonLine(powers);
    expect(!line.empty() && line.find('\n') == line.size() - 1, "the JSON form is not one line");
}

/// Whether a note tells of something that the file lacks or that differs in it.
bool tellsOfALack(const std::string& note) {
    constexpr std::array<std::string_view, 4> always = {
        "Imported from a log", "the product number ", "codes that got no power are not in",
        "the minimum power is told with its offset"};
    return std::ranges::none_of(
        always, [&note](std::string_view words) { return note.starts_with(words); });
}

/// Requires that what the import makes of a log is a radio file that gets the log's answers, or
/// that its notes tell why not.
/// @param mayHoldAnything whether its numbers may be such as no radio file can hold. Then the
///        reader says why.
void import(const std::vector<std::string>& lines, bool mayHoldAnything) {
    LogImport sut;
    TraceLog log([&sut](const LoggedCall& call) { sut.read(call); });
    for (const std::string& line : lines) {
        log.read(line);
    }
    log.end();
    if (sut.isEmpty() || !sut.mixture().empty()) {
        return;
    }
    const std::vector<std::string> notes = sut.notes();
    for (const std::string& note : notes) {
        expect(TextChecks::isOneLine(note), "a note is not told in one line");
    }
    const std::string text = sut.radioFile();
    try {
        const RadioFile file = RadioFileReader::read(text);
        std::vector<std::string> answers;
        Replay().play(file, [&answers](const std::string& line) { answers.push_back(line); });
        const std::vector<std::string> differences = RecordedAnswers::differences(file, answers);
        if (!differences.empty() && !mayHoldAnything && std::ranges::none_of(notes, tellsOfALack)) {
            reportFind("the notes tell of no lack, but " + differences.front() +
                       "\nradio file: " + text);
        }
    } catch (const RadioFileError& error) {
        TextChecks::checkError(error, text);
        if (!mayHoldAnything) {
            reportFind(std::string("the radio file is refused: ") + error.what() +
                       "\nradio file: " + text);
        }
    }
}

/// The lines behind each other, for the report of a find.
std::string shown(const Log& log) {
    std::string text;
    for (const LogLine& line : log) {
        text += "\n" + line.text;
    }
    return text;
}

void tryDamage(FuzzInput& input) {
    static const WholeLogs logs;
    constexpr auto damages = static_cast<unsigned>(Damage::Count);
    const unsigned kind = input.choice();
    const auto damage = static_cast<Damage>(kind % damages);
    const bool isChanged = kind >= damages;
    const unsigned which = input.choice();
    const bool isReplay = damage <= Damage::Interleaved && input.choice() % 8 == 0;
    // Half of the other services differ in nothing but what is asked of them later.
    const Log& whole = logs.log(which, isReplay);
    const Log& other = logs.log(which >= 128 ? which : which + 1 + which / 16, isReplay);
    const Draw draw = [&input](std::size_t count) { return input.number() % count; };
    const Log log = damaged(isChanged ? changed(whole, other, draw) : whole, other, damage, draw);

    LoggedQueries sut({}, [&](const LoggedPowers& powers) {
        checkTexts(powers);
        const std::string lie = logs.truth().lieIn(powers, log, damage);
        if (!lie.empty()) {
            reportFind(lie + ", line " + std::to_string(powers.line) + ", damage " +
                       std::to_string(static_cast<int>(damage)) + shown(log));
        }
    });
    std::vector<std::string> lines;
    for (const LogLine& line : log) {
        sut.read(line.text);
        lines.push_back(line.text);
    }
    sut.end();
    if (which % 16 == 0) {
        // A hole may put the digits of two numbers together.
        import(lines, isChanged || damage == Damage::Holed);
    }
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// "line N: PROBLEM; REMEDY", with a line that the log has.
bool hasLineAndRemedy(std::string_view message, std::size_t lines) {
    constexpr std::string_view beginning = "line ";
    if (!message.starts_with(beginning)) {
        return false;
    }
    std::size_t line = 0;
    const char* const end = message.data() + message.size();
    const auto parsed = std::from_chars(message.data() + beginning.size(), end, line);
    const std::string_view rest(parsed.ptr, static_cast<std::size_t>(end - parsed.ptr));
    return parsed.ec == std::errc() && line >= 1 && line <= lines && rest.starts_with(": ") &&
           rest.find("; ") != std::string_view::npos;
}

void tryText(std::string_view text) {
    const std::vector<std::string> lines = linesOf(text);
    try {
        LoggedQueries sut({}, checkTexts);
        for (const std::string& line : lines) {
            sut.read(line);
        }
        sut.end();
        constexpr bool mayHoldAnything = true;
        import(lines, mayHoldAnything);
    } catch (const TraceLogError& error) {
        const std::string_view message = error.what();
        expect(TextChecks::isOneLine(message) && hasLineAndRemedy(message, lines.size()),
               "the trouble with a log is told without its line or what to do");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    // A log begins with a level, a time, a word or a brace, and no damage with a letter.
    constexpr std::uint8_t firstOfText = 32;
    if (size > 0 && bytes[0] >= firstOfText) {
        tryText({reinterpret_cast<const char*>(bytes), size});
    } else {
        FuzzInput input(bytes, size);
        tryDamage(input);
    }
    return 0;
}
