#include "PowerTableQuery.h"

#include "AnalysisError.h"
#include "CalculationStory.h"
#include "DeskTrace.h"
#include "Node.h"
#include "OneLine.h"
#include "OutputPowerCalculator.h"
#include "RadioFilePlaces.h"
#include "ResultCode.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>
#include <variant>

namespace {

using PowerMap = std::map<ModulationAndCoding, long>;

/// What was traced since the last call.
std::vector<TraceRecord> takeTrace() {
    return DeskTrace::getInstance().take();
}

/// The requests of a radio file that set the inputs in force; nothing for one that the command line
/// or nobody set.
struct InputRequests {
    std::optional<std::size_t> permanentCutback;
    std::optional<std::size_t> temporaryCutback;
    std::optional<std::size_t> booster;
};

/// Sets inputs on a service and remembers them.
class InputSetter {
public:
    explicit InputSetter(OutputPowerCalculator& service)
        : m_service(service) {}

    /// Sets what the requests of a radio file set.
    void set(const std::vector<Request>& requests) {
        for (std::size_t index = 0; index < requests.size(); ++index) {
            m_request = index;
            std::visit(*this, requests[index].call);
        }
        m_request.reset();
    }

    void set(const OperatingInputs& inputs) {
        if (inputs.permanentCutback) {
            setPermanent(*inputs.permanentCutback);
        }
        if (inputs.temporaryCutback) {
            setTemporary(*inputs.temporaryCutback);
        }
        if (inputs.booster) {
            setBooster(*inputs.booster);
        }
        if (inputs.temperature) {
            setTemperature(*inputs.temperature);
        }
    }

    // The requests of a radio file; all but the setters are left alone.
    void operator()(const Calls::SetPowerCutback& call) { setPermanent(call.cutback); }
    void operator()(const Calls::SetTemporaryPowerCutback& call) {
        setTemporary({call.use, call.cutback});
    }
    void operator()(const Calls::SetTemperature& call) { setTemperature(call.temperature); }
    void operator()(const Calls::SetBoosterPresence& call) {
        setBooster({call.presence, call.gain, call.maxInputPower, call.maxModulation});
    }
    template <class OtherCall>
    void operator()(const OtherCall&) {}

    const OperatingInputs& inputs() const { return m_inputs; }
    const InputRequests& requests() const { return m_requests; }

private:
    void setPermanent(std::uint32_t cutback) {
        m_service.setPowerCutback(cutback);
        m_inputs.permanentCutback = cutback;
        m_requests.permanentCutback = m_request;
    }
    void setTemporary(const OperatingInputs::TemporaryCutback& temporary) {
        m_service.setTemporaryPowerCutback(temporary.inForce, temporary.cutback);
        m_inputs.temporaryCutback = temporary;
        m_requests.temporaryCutback = m_request;
    }
    void setBooster(const OperatingInputs::Booster& booster) {
        m_service.setBoosterPresence(booster.presence, booster.gain, booster.maxInputPower,
                                     booster.maxModulation);
        m_inputs.booster = booster;
        m_requests.booster = m_request;
    }
    void setTemperature(std::int32_t temperature) {
        m_service.setTemperature(temperature);
        m_inputs.temperature = temperature;
    }

    OutputPowerCalculator& m_service;
    OperatingInputs m_inputs;
    InputRequests m_requests;
    std::optional<std::size_t> m_request; ///< that sets what is being set
};

/// @return what the library reported.
std::vector<TraceRecord> start(OutputPowerCalculator& service) {
    const unsigned result = service.initialize();
    std::vector<TraceRecord> records = takeTrace();
    if (!ResultCode::isFailure(result)) {
        return records;
    }
    // The last error is the one that ended it; errors before it (a Pmax table that cannot be
    // fetched) do not stop the service.
    std::string why = "result " + std::to_string(result);
    for (const TraceRecord& record : records) {
        if (record.kind == TraceRecord::Kind::Message && record.level == 1) {
            why = record.text;
        }
    }
    throw AnalysisError(Outcome::ServiceDidNotStart, "the service did not start: " + oneLine(why));
}

/// The frame format as the service sees it, and the codes that become the rows.
std::vector<ModulationAndCoding> describeFrameFormat(Node& node, PowerTable& table) {
    std::vector<ModulationAndCoding> codes;
    if (table.frameFormatId < 1) {
        const IFrameFormat& frameFormat = *node.frameFormat();
        table.market = frameFormat.getTelecomMarket();
        table.channelSpacing = frameFormat.getChannelSpacing();
        table.dpdVersion = frameFormat.getDpdVersion();
        frameFormat.getModulationAndCodeArray(codes);
        return codes;
    }
    // What the handler fails to answer stays as the service starts it.
    const IHardwareConfigurationHandler& handler = *node.hardwareConfigurationHandler();
    const RadioChannel channel = table.servedChannel;
    const long id = table.frameFormatId;
    handler.getTelecomMarket(channel, id, table.market);
    handler.getChannelSpacing(channel, id, table.channelSpacing);
    table.dpdVersion = handler.getDpdVersion(channel, id);
    handler.getModulationAndCodeArray(channel, id, codes);
    return codes;
}

void describeSelection(Node& node, PowerTable& table) {
    ModulationAndCoding min{ModulationAndCoding::UNDEFINED};
    ModulationAndCoding max{ModulationAndCoding::UNDEFINED};
    if (!ResultCode::isFailure(node.acmHandler()->getMinMaxModulationAndCode(min, max))) {
        table.selectedMin = min;
        table.selectedMax = max;
    }
}

bool isGiven(ModulationAndCoding code) {
    return code != ModulationAndCoding{ModulationAndCoding::UNDEFINED};
}

/// What the query itself chooses, in place of the neighbours.
void describeArguments(const PowerTableQuery& query, PowerTable& table) {
    const auto chooser = [&query](const char* argument) {
        return query.request && query.request->arguments.contains(argument)
                   ? PowerTable::Chooser::Request
                   : PowerTable::Chooser::Asker;
    };
    if (query.choosesRsec()) {
        table.rsec = query.rsec;
        table.rsecBy = chooser("rsec");
    }
    if (isGiven(query.min)) {
        table.selectedMin = query.min;
        table.selectedMinBy = chooser("min");
    }
    if (isGiven(query.max)) {
        table.selectedMax = query.max;
        table.selectedMaxBy = chooser("max");
    }
    if (query.request) {
        table.request = query.request->index;
        table.requestWords = query.request->words;
    }
}

/// The family, where the query itself ended before one was asked.
QueryTrace::Family selectedFamily(const OutputPowerCalculator& service) {
    long unused = 0;
    service.getUnrestrictedPmax(unused);
    for (const TraceRecord& record : takeTrace()) {
        if (const auto family = QueryTrace::familyIn(record)) {
            return *family;
        }
    }
    return {"unknown", "unknown family"};
}

/// Why the frame format has no codes, which the trace alone does not tell.
std::string missingFrameFormat(Node& node, std::int32_t id) {
    std::vector<FrameFormatRecord> records;
    node.hardwareConfigurationHandler()->getFrameFormatRecords(false, records);
    std::string known;
    for (const FrameFormatRecord& record : records) {
        if (record.id == id) {
            return {};
        }
        known += (known.empty() ? "" : ", ") + std::to_string(record.id);
    }
    return "the hardware configuration has no frame format " + std::to_string(id) +
           (known.empty() ? "; it has none at all" : "; it has " + known);
}

std::string aboveLimit(const QueryTrace& trace) {
    if (!trace.modulationLimit) {
        return "no power was calculated";
    }
    return "above the radio's highest modulation, " + trace.modulationLimit->radio +
           (trace.modulationLimit->byProfile ? " (by its performance profile)" : "");
}

/// Why there is no power, or why it is doubtful, into a row that has its power already.
void giveReason(const PowerTable& table, const QueryTrace& trace, PowerTable::Row& row) {
    const QueryTrace::Calculation* const calculation = trace.find(row.modulation);
    row.trouble = calculation == nullptr ? std::nullopt : calculation->firstTrouble();
    if (row.maxPower) {
        row.warning = calculation == nullptr ? "" : calculation->words();
        row.isBelowMinimum = table.minOutputPower && *row.maxPower < *table.minOutputPower;
    } else if (row.modulation == Modulation::UNDEFINED && calculation == nullptr) {
        row.reason = "no modulation has this code";
        row.trouble = Rule::UndefinedModulation;
    } else if (!table.failure.empty()) {
        row.reason = "the query failed: " + table.failure;
        row.trouble = trace.failureRule;
    } else if (calculation != nullptr) {
        row.reason = calculation->words();
    } else {
        row.reason = aboveLimit(trace);
        row.trouble = Rule::HardwareLimit;
    }
}

std::optional<std::string> usedRsec(const PowerTable& table, const QueryTrace& trace) {
    if (trace.rsec && table.market == EFrameFormatMarket::Ansi) {
        return convertRsecEnumToString(EReferenceSEC::Class2);
    }
    return trace.rsec;
}

/// A query, what came of it and what the library reported.
struct Answered {
    PowerTable table;
    PowerMap powers;
    QueryTrace trace;
    std::vector<TraceRecord> startTrace;
    InputRequests requests;
};

/// Puts the failure of a query into words.
std::string failureOf(const Answered& answered, Node& node, bool hasCodes) {
    const PowerTable& table = answered.table;
    if (!hasCodes && table.frameFormatId >= 1) {
        const std::string missing = missingFrameFormat(node, table.frameFormatId);
        if (!missing.empty()) {
            return missing;
        }
    }
    return answered.trace.failure.empty() ? "result " + std::to_string(table.result)
                                          : answered.trace.failure;
}

/// The code under which a power of one modulation is shown: one of the frame format's, else the
/// lowest that has the modulation.
ModulationAndCoding codeFor(Modulation modulation, const std::vector<ModulationAndCoding>& codes) {
    const auto has = [modulation](ModulationAndCoding code) {
        return convertCodeToModulation(code) == modulation;
    };
    if (const auto own = std::ranges::find_if(codes, has); own != codes.end()) {
        return *own;
    }
    ModulationAndCoding code{0};
    while (code.code < ModulationAndCoding::UNDEFINED && !has(code)) {
        ++code.code;
    }
    return code;
}

/// Calls the service for the power of one modulation, whose code becomes the only one.
void askForOne(const PowerTableQuery::OnePower& one, EReferenceSEC rsec,
               OutputPowerCalculator& service, Answered& answered,
               std::vector<ModulationAndCoding>& codes) {
    using Call = PowerTableQuery::OnePower::Call;
    PowerTable& table = answered.table;
    long minPower = 0;
    long power = one.preset;
    int result = ResultCode::Success;
    switch (one.call) {
    case Call::PowerCapabilities:
        result = service.calculatePowerCapabilities(one.modulation, minPower, power);
        table.minOutputPower = minPower;
        break;
    case Call::AdmodPowerCapabilities:
        result = service.calculateAdmodPowerCapabilities(one.modulation, rsec, minPower, power);
        if (!ResultCode::isFailure(result) && result != ResultCode::NotApplicable) {
            table.minOutputPower = minPower;
        }
        break;
    case Call::UnrestrictedPmax:
        result = service.getUnrestrictedPmax(power);
        break;
    }
    table.result = static_cast<unsigned>(result);
    answered.trace = QueryTrace::read(takeTrace());
    codes = {codeFor(one.modulation, codes)};
    // A call succeeds without a calculation that gives a power, and then leaves what it found.
    const auto& made = answered.trace.calculations;
    if (!ResultCode::isFailure(result) && result != ResultCode::NotApplicable && !made.empty() &&
        !made.back().failed) {
        answered.powers[codes.front()] = power;
    }
}

Answered ask(const PowerTableQuery& query, const RadioFile& file) {
    const DeskTraceScope everything(6);
    Node node(file.channel, file.node);
    OutputPowerCalculator service(file.channel);
    Answered answered;
    answered.startTrace = start(service);
    InputSetter setter(service);
    setter.set(file.requests);
    setter.set(query.inputs);
    answered.requests = setter.requests();

    PowerTable& table = answered.table;
    table.channel = file.channel;
    table.servedChannel = Node::servedChannel(file.channel);
    table.productNumber = node.capabilityHandler()->getTmuHwProductNumber();
    table.frameFormatId = query.frameFormatId;
    std::vector<ModulationAndCoding> codes = describeFrameFormat(node, table);
    table.rsec = node.systemPowerController()->getReferenceSec();
    describeSelection(node, table);
    describeArguments(query, table);
    table.inputs = setter.inputs();

    long minOutputPower = 0;
    std::optional<PowerTableQuery::OnePower> one = query.onePower;
    if (one && one->call == PowerTableQuery::OnePower::Call::UnrestrictedPmax) {
        one->modulation = node.frameFormat()->getModulation();
    }
    static_cast<void>(takeTrace());
    if (one) {
        askForOne(*one, query.rsec, service, answered, codes);
    } else {
        table.result = service.getMinMaxOutputPowerVsModulationArray(
            query.frameFormatId, query.min, query.max, query.rsec, minOutputPower, answered.powers);
        answered.trace = QueryTrace::read(takeTrace());
    }

    const QueryTrace& trace = answered.trace;
    table.family = trace.family ? *trace.family : selectedFamily(service);
    table.usedRsec = usedRsec(table, trace);
    table.isAdaptive = trace.isAdaptive;
    table.modulationLimit = trace.modulationLimit;
    table.notes = trace.notes;
    constexpr std::int32_t none = ModulationAndCoding::UNDEFINED;
    if (table.selectedMin.code != none && table.selectedMax.code != none &&
        table.selectedMax < table.selectedMin) {
        table.notes.emplace_back("the selected minimum is above the selected maximum");
    }
    if (one && one->call == PowerTableQuery::OnePower::Call::UnrestrictedPmax) {
        table.notes.emplace_back("this call takes no cutback off");
    }
    // Without a power of its one modulation a call fails, but what is told of is the calculation.
    if (ResultCode::isFailure(table.result) && (!one || trace.calculations.empty())) {
        table.failure = failureOf(answered, node, !codes.empty());
    } else if (!one) {
        table.minOutputPower = minOutputPower;
    }

    for (const ModulationAndCoding& code : codes) {
        PowerTable::Row row{code, convertCodeToModulation(code), {}, {}, {}};
        if (const auto power = answered.powers.find(code); power != answered.powers.end()) {
            row.maxPower = power->second;
        }
        giveReason(table, trace, row);
        table.rows.push_back(row);
    }
    return answered;
}

// Explanations

/// Who set an input that no request of the file set.
std::string sourceOf(bool isSet, const std::optional<std::size_t>& request) {
    if (request) {
        return {};
    }
    return isSet ? "as given" : "as the service starts";
}

/// The cutback that is in force.
ExplanationContext::Cutback cutbackOf(const OperatingInputs& inputs,
                                      const InputRequests& requests) {
    if (inputs.temporaryCutback && inputs.temporaryCutback->inForce) {
        const auto& request = requests.temporaryCutback;
        return {true, inputs.temporaryCutback->cutback,
                request ? RadioFilePlaces::request(*request, "cutback") : std::string(),
                sourceOf(true, request)};
    }
    const auto& request = requests.permanentCutback;
    return {false, inputs.permanentCutback.value_or(0),
            request ? RadioFilePlaces::request(*request, "cutback") : std::string(),
            sourceOf(inputs.permanentCutback.has_value(), request)};
}

ExplanationContext::Booster boosterOf(const OperatingInputs& inputs,
                                      const InputRequests& requests) {
    const OperatingInputs::Booster booster = inputs.booster.value_or(OperatingInputs::Booster());
    ExplanationContext::Booster known{booster.gain, booster.maxInputPower};
    known.source = sourceOf(inputs.booster.has_value(), requests.booster);
    if (requests.booster) {
        known.gainPointer = RadioFilePlaces::request(*requests.booster, "gain");
        known.maxInputPowerPointer = RadioFilePlaces::request(*requests.booster, "maxInputPower");
    }
    return known;
}

/// Which calculation gave each row what it has: codes that follow each other with one modulation
/// share one, and of a code that stands twice the last one counts.
class RowCalculations {
public:
    RowCalculations(const PowerTable& table, const std::vector<QueryTrace::Calculation>& made) {
        std::size_t next = 0;
        std::optional<std::size_t> stored; ///< the last one that gave a power
        for (const PowerTable::Row& row : table.rows) {
            if (!stored || made[*stored].figures.modulation != row.modulation) {
                if (next == made.size() || made[next].figures.modulation != row.modulation) {
                    continue; // above the radio's highest modulation
                }
                if (made[next].failed) {
                    m_byCode.try_emplace(row.modulationAndCode, next++);
                    continue;
                }
                stored = next++;
            }
            m_byCode[row.modulationAndCode] = *stored;
        }
    }

    /// @return nothing for a row without a calculation.
    std::optional<std::size_t> of(const PowerTable::Row& row) const {
        const auto found = m_byCode.find(row.modulationAndCode);
        return found == m_byCode.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::map<ModulationAndCoding, std::size_t> m_byCode;
};

/// A row for which nothing was calculated.
Explanation withoutCalculation(const PowerTable::Row& row) {
    Explanation explanation;
    explanation.modulation = row.modulation;
    explanation.refusal = row.trouble.value_or(Rule::Unexplained);
    explanation.refusalWords = row.reason;
    return explanation;
}

std::optional<std::int32_t> answerOf(const PowerTable::Row& row) {
    return row.maxPower ? std::optional(static_cast<std::int32_t>(*row.maxPower)) : std::nullopt;
}

/// One explanation for each row.
/// @param carried the power in hand before the first calculation.
std::vector<Explanation> explainRows(const Answered& answered, ExplanationContext& context,
                                     std::int32_t carried) {
    const std::vector<QueryTrace::Calculation>& made = answered.trace.calculations;
    const RowCalculations calculations(answered.table, made);
    std::vector<std::optional<std::int32_t>> answers(made.size());
    std::vector<const PowerTable::Row*> lastRows(made.size());
    for (const PowerTable::Row& row : answered.table.rows) {
        if (const auto index = calculations.of(row)) {
            answers[*index] = answerOf(row);
            lastRows[*index] = &row;
        }
    }

    std::vector<Explanation> explained;
    explained.reserve(made.size());
    for (std::size_t index = 0; index < made.size(); ++index) {
        explained.push_back(explanationOf(context, made[index], answers[index], carried));
        carried = explained.back().answer.value_or(carried);
    }

    std::vector<Explanation> rows;
    rows.reserve(answered.table.rows.size());
    for (const PowerTable::Row& row : answered.table.rows) {
        const auto index = calculations.of(row);
        if (!index) {
            rows.push_back(withoutCalculation(row));
        } else if (lastRows[*index] == &row) {
            rows.push_back(std::move(explained[*index]));
        } else {
            rows.push_back(explained[*index]);
        }
    }
    return rows;
}

/// Does something, and puts the file's name in front of what goes wrong.
template <class Work>
auto underName(const std::string& name, Work work) {
    try {
        return work();
    } catch (const AnalysisError& error) {
        throw AnalysisError(error.outcome(), (name.empty() ? "" : name + ": ") + error.what());
    }
}

} // namespace

std::string PowerTableQuery::askAt(std::size_t index, const Request& made,
                                   const std::set<std::string>& given) {
    const Calls::Any& call = made.call;
    request = AtRequest{index, std::visit([](const auto& named) { return named.name; }, call)};
    // Sets an argument that the request has and the question leaves to it.
    const auto take = [&](const char* name, auto& target, const auto& value, bool isThere) {
        if (isThere && !given.contains(name)) {
            target = value;
            request->arguments.insert(name);
        }
    };
    std::set<std::string> taken = {"frame-format", "rsec", "min", "max"};
    if (const auto* const all = std::get_if<Calls::GetMinMaxOutputPowerVsModulationArray>(&call)) {
        take("frame-format", frameFormatId, all->frameFormatId, true);
        take("rsec", rsec, all->referenceSec, all->referenceSec != EReferenceSEC::UNDEFINED);
        take("min", min, all->minModulationAndCode, isGiven(all->minModulationAndCode));
        take("max", max, all->maxModulationAndCode, isGiven(all->maxModulationAndCode));
    } else if (const auto* const fixed = std::get_if<Calls::CalculatePowerCapabilities>(&call)) {
        taken.clear();
        onePower = OnePower{OnePower::Call::PowerCapabilities, fixed->modulation, made.preset};
    } else if (const auto* const admod =
                   std::get_if<Calls::CalculateAdmodPowerCapabilities>(&call)) {
        taken = {"rsec"};
        onePower = OnePower{OnePower::Call::AdmodPowerCapabilities, admod->modulation, made.preset};
        take("rsec", rsec, admod->rsec, true);
    } else if (std::holds_alternative<Calls::GetUnrestrictedPmax>(call)) {
        taken.clear();
        onePower = OnePower{OnePower::Call::UnrestrictedPmax, Modulation::UNDEFINED, made.preset};
    } else {
        request->words += "; the powers of a frame format are asked for in its place";
    }
    if (onePower && onePower->call != OnePower::Call::UnrestrictedPmax) {
        request->words += " of " + convertAcmEnumToString(onePower->modulation);
    }
    for (const std::string& name : given) {
        if (!taken.contains(name)) {
            return name;
        }
    }
    return {};
}

bool PowerTableQuery::choosesRsec() const {
    return rsec != EReferenceSEC::UNDEFINED ||
           (onePower && onePower->call == OnePower::Call::AdmodPowerCapabilities);
}

PowerTable PowerTableQuery::run(const RadioFile& file) const {
    return ask(*this, file).table;
}

ExplainedTable PowerTableQuery::explain(const RadioFile& file) const {
    Answered answered = ask(*this, file);
    const PowerTable& table = answered.table;
    const RadioFilePlaces places(file, answered.startTrace, table.dpdVersion, table.market);
    ExplanationContext context{cutbackOf(table.inputs, answered.requests),
                               boosterOf(table.inputs, answered.requests),
                               static_cast<std::int32_t>(table.channelSpacing),
                               ExplanationContext::Radio{file, places, table.dpdVersion,
                                                         table.market, table.channelSpacing}};
    ExplainedTable explained{{}, explainRows(answered, context, onePower ? onePower->preset : 0)};
    explained.pmaxTable = places.pmaxTable();
    explained.pmaxTableKey = places.pmaxTableKey();
    explained.table = std::move(answered.table);
    return explained;
}

PowerTable RadioCase::powers() const {
    PowerTable table = underName(name, [this] { return query.run(file); });
    table.radioFile = name;
    return table;
}

ExplainedTable RadioCase::explain() const {
    ExplainedTable explained = underName(name, [this] { return query.explain(file); });
    explained.table.radioFile = name;
    return explained;
}
