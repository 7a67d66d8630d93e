#pragma once

#include "AnalysisError.h"
#include "FleetReport.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class LoggedQueries;
class StepwiseAnswer;

/// What the page asks, answered. Requests come as JSON, answers go back as the texts of analysis/:
/// no figure and no word of an answer is made here.
///
/// A request is an object with "ask", which names what is wanted:
///
/// | ask | text | answer |
/// |---|---|---|
/// | table, explain, why-not, sweep, diff, check, plot, inputs | radio file | of answerTo() |
/// | replay | radio file | the lines of a replay, up to the "trace" level |
/// | change | radio file | the file's text with the changes in it |
/// | values | radio file | those that a sweep "over" an input tries |
/// | places | radio file | line and column of each of the "pointers" |
/// | fleet-radio | radio file of a "path", or an "answer" of a batch | a line as of a batch |
/// | fleet | - | of fleet, about all since the "first", in groups "by" what that one says |
/// | fleet-groupings | - | by what a fleet may be told apart |
/// | log | lines of a log | a line for each query, see jsonLine(); "last" ends the log |
/// | search | radio file, or - to go on | of why-not, or steps that are done, and of how many |
/// | command | radio file | the command line that gives the answer of "command" |
/// | legend | - | colours, patterns and words of rules |
///
/// A question has the members of Question: "form", "name", "modulations", "power", "most", "over",
/// "other", "otherName". Its inputs are "changes": objects with an "input"
/// and a "value". An input is one of AskedInputs, called as the tool's option is ("cutback",
/// "request", "set" ...), or one of InputAxis, which is set in the radio file. A log has of these
/// what is in force beside its calls.
class Engine {
public:
    struct Answer {
        Outcome outcome = Outcome::Done;
        std::string text;
        std::vector<std::string> messages;
    };

    Engine();
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// Every trouble is an outcome with a message.
    Answer ask(std::string_view request, std::string_view text);

private:
    class Request;

    Answer fleetRadio(const Request& request, std::string_view text);
    Answer fleet(const Request& request) const;
    Answer log(const Request& request, std::string_view lines);
    Answer search(const Request& request, std::string_view radioFile);

    FleetReport m_fleet;
    std::unique_ptr<LoggedQueries> m_log;
    std::unique_ptr<StepwiseAnswer> m_search;
    std::string m_explained; ///< of the log, not handed out yet
};
