#include "RadioFileCheck.h"

#include "CheckRules.h"
#include "CheckedNode.h"
#include "JsonPointer.h"
#include "JsonReader.h"
#include "LibraryRules.h"
#include "NodeRules.h"
#include "OneLine.h"
#include "RadioFileReader.h"
#include "Replay.h"
#include "RequestRules.h"
#include "ResultCode.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <tuple>
#include <utility>
#include <variant>

namespace {

using nlohmann::json;

/// The radio as the file itself or one of its patches leaves it.
struct State {
    SharedDocument document;          ///< without its requests
    std::optional<std::size_t> patch; ///< the request that led to it; nothing: the file itself
    CheckedNode node;

    State(std::uint32_t channel, const NodeAnswers& answers, SharedDocument file,
          std::optional<std::size_t> request)
        : document(std::move(file))
        , patch(request)
        , node(channel, answers, document) {}
    State(const State&) = delete;
    State& operator=(const State&) = delete;
};

/// Takes the requests out of a document.
json takeRequests(json& document) {
    if (!document.contains("requests")) {
        return json::array();
    }
    json requests = std::move(document["requests"]);
    document.erase("requests");
    return requests;
}

/// Why a service does not start, and where that stands.
Finding startFailure(const CheckedNode& node, const json& line) {
    const json& trace = line.at("trace");
    Finding finding{&CheckRules::DoesNotStart, FilePlace(), "the service does not start", ""};
    if (!trace.empty()) {
        finding.message +=
            ": the library reports " + inQuotes(trace.back().at("text").get<std::string>());
    }
    const NodeAnswers& answers = node.answers();
    std::string missing;
    for (const auto& [key, isThere] :
         {std::pair{"capabilityHandler", answers.capabilityHandler != nullptr},
          std::pair{"acmHandler", answers.acmHandler != nullptr},
          std::pair{"frameFormat", answers.frameFormat != nullptr},
          std::pair{"systemPowerController", answers.systemPowerController != nullptr},
          std::pair{"hardwareConfigurationHandler",
                    answers.hardwareConfigurationHandler != nullptr}}) {
        if (!isThere) {
            missing += (missing.empty() ? "" : ", ") + std::string(key);
        }
    }
    if (missing.empty()) {
        finding.place = FilePlace{{"capabilityHandler", "minOutputPower"}};
        finding.remedy = "give the minimum output power in place of {\"result\": N}";
    } else {
        finding.remedy = "add what is absent: " + missing;
    }
    return finding;
}

/// What the capability handler hands out once, when the service starts.
json handedOut(const SharedDocument& document) {
    json answers = json::object();
    const auto add = [&](const char* key) {
        if (const json* const answer = document.at({"capabilityHandler", key})) {
            answers[key] = *answer;
        }
    };
    add("minOutputPower");
    for (const PmaxTableName& table : pmaxTables) {
        add(table.key);
    }
    return answers;
}

/// Checks one radio file that has the right form.
class Check {
public:
    Check(const RadioFile& file, json document);

    std::vector<Finding> run() {
        checkChannel();
        if (checkRequests()) {
            checkAnswers();
        }
        if (m_library.isExhausted()) {
            m_findings.add(
                CheckRules::NotAllChecked, FilePlace(),
                "the file has too many frame formats and patches to ask the library about "
                "all of them",
                "check it in parts");
        }
        return m_findings.findings();
    }

private:
    void checkChannel() {
        const bool isServed = m_file.channel == 1 || m_file.channel == 2;
        if (!isServed) {
            m_findings.add(CheckRules::OtherChannel, FilePlace{{"channel"}},
                           "a service for channel " + std::to_string(m_file.channel) +
                               " serves channel 1",
                           "give the channel as 1 or 2");
        }
    }

    bool checkStart(const CheckedNode& node) {
        constexpr int errors = 1;
        bool isStarted = true;
        Replay(errors).play(node.radioFile(), [&](const std::string& text) {
            const json line = json::parse(text);
            isStarted = !ResultCode::isFailure(line.at("result").get<std::uint32_t>());
            if (!isStarted) {
                const Finding finding = startFailure(node, line);
                m_seen.add(*finding.rule, finding.place, finding.message, finding.remedy);
            }
        });
        return isStarted;
    }

    /// @return whether a service starts in it.
    bool checkNewInState(const State& state) {
        const std::size_t known = m_seen.findings().size();
        const bool isStarted = checkStart(state.node);
        NodeRules::check(state.node, m_seen);
        if (isStarted) {
            m_library.checkFrameFormats(state.node);
        }
        for (std::size_t index = known; index < m_seen.findings().size(); ++index) {
            Finding finding = m_seen.findings()[index];
            if (state.patch && finding.rule == &CheckRules::UnlikeItsRecord) {
                continue; // a patch is there to try something else
            }
            if (state.patch) {
                finding.place = placeInPatch(state, finding.place, finding.message);
            }
            m_findings.add(*finding.rule, finding.place, finding.message, finding.remedy);
        }
        return isStarted;
    }

    void checkPatch(const State& before, const State& after) {
        const std::size_t index = *after.patch;
        const FilePlace place = FilePlace{{"requests"}} / index / "file";
        if (before.document == after.document) {
            m_findings.add(CheckRules::PatchEmpty, place, "the patch changes nothing",
                           "compare it with the file as the patches before it leave it");
        }
        const bool isStartedAnew =
            std::any_of(m_file.requests.begin() + static_cast<std::ptrdiff_t>(index),
                        m_file.requests.end(), [](const Request& request) {
                            return std::holds_alternative<Calls::Initialize>(request.call);
                        });
        if (!isStartedAnew && handedOut(before.document) != handedOut(after.document)) {
            m_findings.add(CheckRules::PatchNotSeen, place / "capabilityHandler",
                           "the Pmax tables and the minimum output power were handed out when the "
                           "service started, and this patch to them is never seen",
                           "add a request {\"call\": \"initialize\"} behind it");
        }
    }

    /// The requests in their order, and the radio as each patch among them leaves it.
    /// @return whether the service starts.
    bool checkRequests() {
        std::unique_ptr<State> state = startState();
        const bool isStarted = checkNewInState(*state);
        std::size_t patchCount = 0;
        for (std::size_t index = 0; index < m_requestCount; ++index) {
            if (isStarted) {
                m_requestRules.check(index, state->node);
            }
            if (!isPatch(index)) {
                continue;
            }
            if (++patchCount > maxPatches) {
                m_findings.add(CheckRules::NotAllChecked, FilePlace{{"requests"}} / index,
                               "only the first " + std::to_string(maxPatches) +
                                   " patches of a file are checked",
                               "check it in parts");
                m_requestCount = index;
                break;
            }
            std::unique_ptr<State> next = patched(*state, index);
            checkPatch(*state, *next);
            checkNewInState(*next);
            state = std::move(next);
        }
        return isStarted;
    }

    void checkAnswers() {
        constexpr int warnings = 2;
        std::unique_ptr<State> state = startState();
        std::size_t lineCount = 0;
        Replay(warnings).play(m_file, [&](const std::string& line) {
            ++lineCount;
            // The first line is the start of the service.
            if (lineCount == 1 || lineCount - 2 >= m_requestCount) {
                return;
            }
            const std::size_t index = lineCount - 2;
            m_requestRules.checkAnswer(index, json::parse(line), state->node);
            if (isPatch(index)) {
                state = patched(*state, index);
            }
        });
    }

    std::unique_ptr<State> startState() const {
        return std::make_unique<State>(m_file.channel, m_file.node, m_document, std::nullopt);
    }

    std::unique_ptr<State> patched(const State& before, std::size_t request) const {
        SharedDocument document = before.document.patched(m_requests[request].at("file"));
        const NodeAnswers& answers = std::get<Calls::Patch>(m_file.requests[request].call).answers;
        return std::make_unique<State>(m_file.channel, answers, std::move(document), request);
    }

    bool isPatch(std::size_t request) const {
        return std::holds_alternative<Calls::Patch>(m_file.requests[request].call);
    }

    /// What is wrong after a patch and was not before stands where the patch says it, or else is
    /// the patch's as a whole.
    FilePlace placeInPatch(const State& state, const FilePlace& place, std::string& message) const {
        FilePlace inPatch = FilePlace{{"requests"}} / *state.patch / "file";
        if (valueAt(m_requests[*state.patch].at("file"), place.path) != nullptr) {
            inPatch.path.insert(inPatch.path.end(), place.path.begin(), place.path.end());
        } else {
            message = "after this patch, " + pointerText(place.path) + ": " + message;
        }
        return inPatch;
    }

    /// Each patch makes a radio of its own to check.
    static constexpr std::size_t maxPatches = 64;

    const RadioFile& m_file;
    json m_requests;
    SharedDocument m_document; ///< without its requests
    FindingList m_findings;
    FindingList m_seen; ///< on the radio, as if every patch were made in the file itself
    LibraryRules m_library{m_seen};
    RequestRules m_requestRules;
    std::size_t m_requestCount; ///< that are checked
};

Check::Check(const RadioFile& file, json document)
    : m_file(file)
    , m_requests(takeRequests(document))
    , m_document(std::move(document))
    , m_requestRules(file, m_requests, m_library, m_seen, m_findings)
    , m_requestCount(file.requests.size()) {}

RadioFileCheck::PlacedFinding formFinding(std::string_view text, const RadioFileError& error) {
    const bool isSyntax = error.textPlace().has_value();
    const Finding finding{isSyntax ? &CheckRules::NotJson : &CheckRules::NotARadioFile,
                          {error.path()},
                          error.problem(),
                          error.remedy()};
    return {finding, isSyntax ? *error.textPlace() : JsonReader::placesIn(text).find(error.path()),
            !isSyntax};
}

} // namespace

std::size_t RadioFileCheck::count(Severity severity) const {
    return static_cast<std::size_t>(
        std::ranges::count_if(findings, [severity](const PlacedFinding& placed) {
            return placed.finding.rule->severity == severity;
        }));
}

Outcome RadioFileCheck::outcome(bool isStrict) const {
    if (!isRadioFile) {
        return Outcome::BadRadioFile;
    }
    const bool isClean = count(Severity::Error) == 0 && count(Severity::Warning) == 0 &&
                         (!isStrict || count(Severity::Hint) == 0);
    return isClean ? Outcome::Done : Outcome::AnswerIsNo;
}

RadioFileCheck RadioFileCheck::run(std::string_view text) {
    RadioFileCheck result;
    RadioFile file;
    try {
        file = RadioFileReader::read(text);
    } catch (const RadioFileError& error) {
        result.isRadioFile = false;
        result.findings.push_back(formFinding(text, error));
        return result;
    }
    DocumentPlaces places(text);
    std::vector<Finding> findings = Check(file, JsonReader::read(text, RadioFileReader::maxSize,
                                                                 JsonReader::maxValues, &places))
                                        .run();
    for (Finding& finding : findings) {
        const TextPlace place = places.find(finding.place.path);
        result.findings.push_back({std::move(finding), place, true});
    }
    std::ranges::stable_sort(result.findings,
                             [](const PlacedFinding& left, const PlacedFinding& right) {
                                 return std::tie(left.textPlace.line, left.textPlace.column) <
                                        std::tie(right.textPlace.line, right.textPlace.column);
                             });
    return result;
}
