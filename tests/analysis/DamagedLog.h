#pragma once

#include "LoggedPowers.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

// Logs of radios, damaged in every way that the field knows, and what is true of them. Whatever is
// told as complete of a damaged log is held against what the whole one tells.

/// A line, and where it stood in which log before the damage.
struct LogLine {
    std::string text;
    std::pair<unsigned, std::size_t> origin;
    bool isChanged = false;        ///< bytes of it, by changed()
    bool hasAnotherNumber = false; ///< it was changed in nothing but the value of a number
};
using Log = std::vector<LogLine>;

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

/// Draws a number from 0 to below a count.
using Draw = std::function<std::size_t(std::size_t count)>;

/// A log, which is not empty, with a damage where draws say.
/// @param other log, which some damages mix in.
Log damaged(Log log, const Log& other, Damage damage, const Draw& draw);

/// A log, which is not empty, with other bytes in one line, or with a foreign line.
/// @param other log, from which the foreign line is.
Log changed(Log log, const Log& other, const Draw& draw);

/// What `qor-power replay --trace 6` prints of a random radio.
/// @param mostRequests of the radio's that are played.
std::vector<std::string>
replayOfRandomRadio(std::uint64_t seed,
                    std::size_t mostRequests = std::numeric_limits<std::size_t>::max());

/// The traces of a replay as a node writes them, one in a line.
std::vector<std::string> textOf(const std::vector<std::string>& replay);

/// What is true of each query of some logs.
class LogTruth {
public:
    /// A log of lines, and takes what is told of it as it stands for true.
    /// @param number of the log among those of this truth.
    Log logOf(const std::vector<std::string>& lines, unsigned number);

    /// What the tool tells wrong of a query; empty if nothing.
    /// @param log from which it is told.
    std::string lieIn(const LoggedPowers& told, const Log& log, Damage damage) const;

    std::size_t queries() const { return m_queries.size(); }

private:
    /// Whether a number that occurs once may be told with another value: it looks like any other.
    bool mayTellAnotherNumber(const Log& log, Damage damage,
                              const std::pair<unsigned, std::size_t>& query) const;

    /// Whether a calculation is one of any query.
    bool isOfAnyQuery(const Explanation& told) const;

    std::map<std::pair<unsigned, std::size_t>, LoggedPowers>
        m_queries; ///< by the place of its first line
};
