#include "TraceLog.h"

#include "CalculationFigures.h"
#include "JsonReader.h"
#include "OneLine.h"
#include "RadioFileError.h"
#include "TraceText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

namespace {

using Kind = TraceRecord::Kind;

constexpr std::array<std::string_view, 4> queries = {
    "getMinMaxOutputPowerVsModulationArray", "calculatePowerCapabilities",
    "calculateAdmodPowerCapabilities", "getUnrestrictedPmax"};

constexpr std::array<std::string_view, 6> otherCalls = {
    "initialize",     "findPminPmax",      "setPowerCutback", "setTemporaryPowerCutback",
    "setTemperature", "setBoosterPresence"};

bool isOneOf(std::string_view word, const auto& words) {
    return std::ranges::find(words, word) != words.end();
}

/// Whether a record is the first of a call.
bool beginsCall(const TraceRecord& record) {
    if (record.function == "setBoosterPresence") {
        // The one operation that does not trace its entry.
        return record.text.starts_with("New boosterPresence = ");
    }
    return record.kind == Kind::Enter &&
           (isOneOf(record.function, queries) || isOneOf(record.function, otherCalls)) &&
           // A family builds its tables in an operation of the same name.
           record.file.find("/Calculator") == std::string::npos;
}

constexpr std::array<std::string_view, 3> kinds = {"enter", "msg", "raw"}; // by TraceRecord::Kind

std::optional<Kind> kindNamed(std::string_view word) {
    const auto index = std::ranges::find(kinds, word) - kinds.begin();
    return isOneOf(word, kinds) ? std::optional(static_cast<Kind>(index)) : std::nullopt;
}

/// A record of a replay's "trace" list; nothing if something else stands there.
std::optional<TraceRecord> recordOf(const nlohmann::json& json) {
    const auto text = [&json](const char* key) {
        const auto found = json.find(key);
        return found != json.end() && found->is_string() ? found->get<std::string>() : "";
    };
    const std::optional<Kind> kind =
        json.is_object() ? kindNamed(text("kind")) : std::optional<Kind>();
    if (!kind) {
        return std::nullopt;
    }
    TraceRecord record{*kind, 0, 0, text("file"), text("function"), 0, text("text")};
    if (*kind == Kind::Raw) {
        record.code = json.value("code", nlohmann::json(0)).is_number_unsigned()
                          ? json.value("code", std::uint32_t{0})
                          : 0;
        constexpr std::uint32_t firstFailure = 32768;
        record.level = record.code >= firstFailure ? 1 : 5;
    } else if (const auto level = json.find("level");
               level != json.end() && level->is_number_integer()) {
        record.level = level->get<int>();
    }
    return record;
}

std::size_t sizeOf(const TraceRecord& record) {
    return record.file.size() + record.function.size() + record.text.size();
}

/// Whether a part of a text is the pattern, in which * is anything.
bool contains(std::string_view text, std::string_view pattern) {
    std::size_t place = 0;
    while (!pattern.empty()) {
        const std::size_t star = std::min(pattern.find('*'), pattern.size());
        place = text.find(pattern.substr(0, star), place);
        if (place == std::string_view::npos) {
            return false;
        }
        place += star;
        pattern.remove_prefix(std::min(star + 1, pattern.size()));
    }
    return true;
}

/// The last words before a place, split at blanks.
std::string_view wordBefore(std::string_view text, std::size_t end) {
    const std::size_t blank = text.substr(0, end).find_last_of(" \t");
    const std::size_t begin = blank == std::string_view::npos ? 0 : blank + 1;
    return text.substr(begin, end - begin);
}

} // namespace

bool TraceLog::isQuery(const std::string& name) {
    return isOneOf(name, queries);
}

std::optional<TraceRecord> TraceLog::recordIn(const std::string& line, std::string* before) {
    for (const char* const word : {"enter", "msg", "raw"}) {
        const std::string mark = std::string(" ") + word + " ";
        const std::size_t place = line.find(mark);
        if (place == std::string::npos) {
            continue;
        }
        const std::string_view levelText = wordBefore(line, place);
        const auto level = TraceText::number(levelText);
        std::string_view rest = std::string_view(line).substr(place + mark.size());
        while (rest.ends_with('\r') || rest.ends_with('\n')) {
            rest.remove_suffix(1);
        }
        const std::size_t fileEnd = rest.find(' ');
        const std::size_t functionEnd = rest.find(':', fileEnd);
        if (!level || *level < 1 || *level > 6 || fileEnd == std::string_view::npos ||
            functionEnd == std::string_view::npos) {
            continue;
        }
        const std::string_view file = rest.substr(0, rest.substr(0, fileEnd).rfind(':'));
        const std::string_view function = rest.substr(fileEnd + 1, functionEnd - fileEnd - 1);
        if (function.empty() || function.find(' ') != std::string_view::npos) {
            continue;
        }
        std::string_view text = rest.substr(functionEnd + 1);
        text.remove_prefix(text.starts_with(' ') ? 1 : 0);
        if (before != nullptr) {
            *before = line.substr(0, place - levelText.size());
        }
        return TraceRecord{kindNamed(word).value_or(Kind::Raw),
                           static_cast<int>(*level),
                           0,
                           std::string(file),
                           std::string(function),
                           0,
                           std::string(text)};
    }
    return std::nullopt;
}

std::string TraceLog::processIn(const std::string& before) {
    static const std::set<std::string> names = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul",
                                                "Aug", "Sep", "Oct", "Nov", "Dec", "Mon", "Tue",
                                                "Wed", "Thu", "Fri", "Sat", "Sun"};
    std::istringstream words(before);
    std::string process;
    for (std::string word; process.size() < maxProcessName && words >> word;) {
        const bool isTimeOrNumber =
            word.find_first_not_of("0123456789.,:;-+/TZ[]()#") == std::string::npos &&
            (!word.starts_with('[') || word.find_first_of(".:") != std::string::npos);
        if (!isTimeOrNumber && !names.contains(word)) {
            process += (process.empty() ? "" : " ") + word;
        }
    }
    process.resize(std::min(process.size(), maxProcessName));
    return process;
}

std::string TraceLog::timeIn(const std::string& before) {
    std::istringstream words(before);
    for (std::string word; words >> word;) {
        const std::size_t colon = word.find(':');
        const auto isDigit = [&word](std::size_t place) {
            return place < word.size() && word[place] >= '0' && word[place] <= '9';
        };
        if (colon != std::string::npos && colon >= 2 && isDigit(colon - 1) && isDigit(colon + 1)) {
            return word;
        }
    }
    return {};
}

TraceLog::OpenCall& TraceLog::begin(const std::string& process, const std::string& name,
                                    const std::string& arguments) {
    end(process);
    if (m_open.size() == maxProcesses) {
        fail("traces of more than " + std::to_string(maxProcesses) + " processes");
    }
    OpenCall& open = m_open[process];
    open.call = {name, m_line, arguments, {}, {}, process, {}, {}, false};
    std::swap(open.call.isBehindGap, m_isBehindGap[process]);
    return open;
}

void TraceLog::end(const std::string& process) {
    const auto found = m_open.find(process);
    if (found == m_open.end()) {
        return;
    }
    const LoggedCall call = std::move(found->second.call);
    m_open.erase(found);
    for (const TraceRecord& record : call.records) {
        m_size -= sizeOf(record);
    }
    m_sink(call);
}

void TraceLog::end() {
    std::vector<std::pair<std::size_t, std::string>> processes;
    processes.reserve(m_open.size());
    for (const auto& [process, open] : m_open) {
        processes.emplace_back(open.call.line, process);
    }
    std::ranges::sort(processes);
    for (const auto& [line, process] : processes) {
        end(process);
    }
}

void TraceLog::fail(const std::string& problem) const {
    throw TraceLogError("line " + std::to_string(m_line) + ": " + oneLine(problem) +
                        "; take its call out of the log");
}

std::string TraceLog::tracesAndRemedy() const {
    const bool isOfOtherForm = m_records == 0 && m_leftOut != 0;
    return std::to_string(m_records) + " traces; " +
           (isOfOtherForm ? "qor-power explain --help shows the forms of lines that are taken"
                          : "log what the library traces up to level 6");
}

void TraceLog::read(const std::string& line, bool isTooLong) {
    ++m_line;
    if (isTooLong) {
        fail("longer than " + std::to_string(maxSize) + " bytes");
    }
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (m_line == 1 && line.starts_with(byteOrderMark)) {
        --m_line;
        read(line.substr(byteOrderMark.size()));
        return;
    }
    if (line.find_first_not_of(" \t\r") == std::string::npos || readReplayLine(line)) {
        return;
    }
    std::string before;
    if (const auto record = recordIn(line, &before)) {
        readRecord(*record, before);
        return;
    }
    ++m_leftOut;
    if (line.front() == '{') {
        // A whole call may have stood here.
        for (auto& [process, isBehindGap] : m_isBehindGap) {
            isBehindGap = true;
        }
        m_isBehindGap[""] = true;
    }
}

void TraceLog::readRecord(const TraceRecord& record, const std::string& before) {
    ++m_records;
    m_highestLevel = std::max(m_highestLevel, record.level);
    const std::string process = processIn(before);
    auto open = m_open.find(process);
    const bool isNew = open == m_open.end();
    if (beginsCall(record)) {
        begin(process, record.function, record.kind == Kind::Enter ? record.text : "");
    } else if (isNew) {
        begin(process, "", "");
    }
    open = m_open.find(process);
    if (open->second.call.records.empty()) {
        open->second.call.time = timeIn(before);
    }
    keep(open->second, record);
}

void TraceLog::keep(OpenCall& open, const TraceRecord& record) {
    if (open.call.name.empty() && !open.call.records.empty()) {
        // Nothing can be told of traces without their call; only how they end counts.
        m_size -= sizeOf(open.call.records.back());
        open.call.records.clear();
        open.call.lines.clear();
        open.calculations = 0;
    }
    const std::size_t size = sizeOf(record);
    m_size += size;
    if (size > maxTraceSize) {
        fail("a trace longer than " + std::to_string(maxTraceSize) + " bytes");
    }
    if (m_size > maxSize) {
        fail("traces of more than " + std::to_string(maxSize) + " bytes in one call");
    }
    if (open.call.records.size() == maxTraces) {
        fail("more than " + std::to_string(maxTraces) + " traces in one call");
    }
    if (CalculationFigures::isStart(record) && ++open.calculations > maxCalculations) {
        fail("more than " + std::to_string(maxCalculations) + " calculations in one call");
    }
    open.call.records.push_back(record);
    open.call.lines.push_back(m_line);
}

nlohmann::json TraceLog::objectIn(const std::string& line) const {
    try {
        return JsonReader::read(line, maxSize, maxValues);
    } catch (const RadioFileError& error) {
        if (!error.textPlace()) {
            fail(error.what());
        }
        return nullptr;
    }
}

bool TraceLog::readReplayLine(const std::string& line) {
    if (line.front() != '{') {
        return false;
    }
    nlohmann::json json = objectIn(line);
    if (!json.is_object()) {
        return false;
    }
    if (const auto record = recordOf(json)) {
        readRecord(*record, "");
        return true;
    }
    if (!json.contains("trace") || !json["trace"].is_array() ||
        !json.value("call", nlohmann::json()).is_string()) {
        return false;
    }
    const nlohmann::json trace = std::move(json["trace"]);
    json.erase("trace");
    OpenCall& open = begin("", json["call"].get<std::string>(), "");
    for (const nlohmann::json& entry : trace) {
        if (const auto record = recordOf(entry)) {
            ++m_records;
            m_highestLevel = std::max(m_highestLevel, record->level);
            if (beginsCall(*record) && record->kind == Kind::Enter) {
                open.call.arguments = record->text;
            }
            keep(open, *record);
        }
    }
    open.call.answer = std::move(json);
    end("");
    return true;
}

// Operating inputs

void LoggedInputs::follow(const LoggedCall& call) {
    if (call.isBehindGap) {
        forget();
    }
    if (call.name == "initialize") {
        forget();
        m_permanent = 0;
        m_temporary = OperatingInputs::TemporaryCutback();
        m_booster = ExplanationContext::Booster();
    }
    for (const TraceRecord& record : call.records) {
        followRecord(record);
    }
}

void LoggedInputs::forget() {
    m_permanent.reset();
    m_temporary.reset();
    m_booster.reset();
    m_channel.reset();
}

void LoggedInputs::followRecord(const TraceRecord& record) {
    const std::string& text = record.text;
    if (record.kind == Kind::Raw && record.function == "initialize") {
        if (const auto channel = TraceText::numberBehind(text, " for channel ")) {
            m_channel = channel;
        }
    } else if (TraceText::isEntryOf(record, "setPowerCutback")) {
        if (const auto cutback = TraceText::number(text)) {
            m_permanent = static_cast<std::uint32_t>(*cutback);
        }
    } else if (TraceText::isEntryOf(record, "setTemporaryPowerCutback")) {
        const auto cutback = TraceText::numberBehind(text, "temporaryPowerCutback=");
        m_temporary = {TraceText::numberBehind(text, "useTemporaryPowerCutback=") == 1,
                       static_cast<std::uint32_t>(cutback.value_or(0))};
    } else if (text.starts_with("New boosterPresence = ")) {
        // The gain follows for a presence of 1 and more; nothing depends on it at 0.
        m_booster.reset();
    } else if (const auto gain = TraceText::numberAfter(text, "New boosterGain = ")) {
        const auto input = TraceText::numberBehind(text, "new boosterMaxInputPower = ");
        m_booster = {static_cast<std::int32_t>(*gain),
                     static_cast<std::int32_t>(input.value_or(0)),
                     {},
                     {},
                     "by the log"};
    }
}

void LoggedInputs::fix(const OperatingInputs& inputs) {
    m_fixed = inputs;
}

std::optional<ExplanationContext::Cutback> LoggedInputs::cutback() const {
    const auto& temporary = m_fixed.temporaryCutback ? m_fixed.temporaryCutback : m_temporary;
    const auto& permanent = m_fixed.permanentCutback ? m_fixed.permanentCutback : m_permanent;
    if (temporary && temporary->inForce) {
        return ExplanationContext::Cutback{
            true, temporary->cutback, {}, m_fixed.temporaryCutback ? "as given" : "by the log"};
    }
    if (temporary && permanent) {
        return ExplanationContext::Cutback{
            false, *permanent, {}, m_fixed.permanentCutback ? "as given" : "by the log"};
    }
    return std::nullopt;
}

std::optional<ExplanationContext::Booster> LoggedInputs::booster() const {
    if (m_fixed.booster) {
        ExplanationContext::Booster given{m_fixed.booster->gain, m_fixed.booster->maxInputPower};
        given.source = "as given";
        return given;
    }
    return m_booster;
}

bool LogSource::includes(const LoggedCall& call, const LoggedInputs& inputs) const {
    return (!channel || inputs.channel() == channel) && contains(call.process, process);
}
