#include "DamagedLog.h"
#include "Find.h"
#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "LogImport.h"
#include "LoggedPowers.h"
#include "RadioFileError.h"
#include "RadioFileReader.h"
#include "TextChecks.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The bytes are damage to the log of a radio, or a log as it stands. No power may be told as
/// complete that is not one of the whole log, and of any text as much of a radio file as there is
/// has to be one.

namespace {

constexpr unsigned mostLogs = 16;
/// Short logs, of which many are tried a second.
constexpr std::size_t mostLines = 60;

/// Whole logs and what is true of them, which is worked out once.
class WholeLogs {
public:
    WholeLogs() {
        for (std::uint64_t seed = 1; m_traces.size() < mostLogs; ++seed) {
            const std::vector<std::string> replay = replayOfRandomRadio(seed);
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

/// What the import makes of a log is a radio file, or the reader says why no radio file can hold
/// it.
void import(const std::vector<std::string>& lines) {
    LogImport sut;
    TraceLog log([&sut](const LoggedCall& call) { sut.read(call); });
    for (const std::string& line : lines) {
        log.read(line);
    }
    log.end();
    if (sut.isEmpty() || !sut.mixture().empty()) {
        return;
    }
    for (const std::string& note : sut.notes()) {
        expect(TextChecks::isOneLine(note), "a note is not told in one line");
    }
    const std::string text = sut.radioFile();
    try {
        RadioFileReader::read(text);
    } catch (const RadioFileError& error) {
        TextChecks::checkError(error, text);
    }
}

void tryDamage(FuzzInput& input) {
    static const WholeLogs logs;
    const auto damage = static_cast<Damage>(input.choice() % static_cast<unsigned>(Damage::Count));
    const unsigned which = input.choice();
    const bool isReplay = damage <= Damage::Interleaved && input.choice() % 4 == 0;
    // Half of the other services differ in nothing but what is asked of them later.
    const unsigned other = which >= 128 ? which : which + 1 + which / 16;
    const Log log = damaged(logs.log(which, isReplay), logs.log(other, isReplay), damage,
                            [&input](std::size_t count) { return input.number() % count; });

    LoggedQueries sut({}, [&](const LoggedPowers& powers) {
        const std::string lie = logs.truth().lieIn(powers, log, damage);
        if (!lie.empty()) {
            reportFind(lie + ", line " + std::to_string(powers.line) + ", damage " +
                       std::to_string(static_cast<int>(damage)));
        }
    });
    std::vector<std::string> lines;
    for (const LogLine& line : log) {
        sut.read(line.text);
        lines.push_back(line.text);
    }
    sut.end();
    if (which % 8 == 0) {
        import(lines);
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

void tryText(std::string_view text) {
    const std::vector<std::string> lines = linesOf(text);
    try {
        LoggedQueries sut({}, checkTexts);
        for (const std::string& line : lines) {
            sut.read(line);
        }
        sut.end();
        import(lines);
    } catch (const TraceLogError& error) {
        const std::string_view message = error.what();
        expect(TextChecks::isOneLine(message) && message.starts_with("line "),
               "the trouble with a log is told without its line");
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
