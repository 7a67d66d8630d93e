#include "PowerTableQuery.h"

#include "DeskTrace.h"
#include "Node.h"
#include "OneLine.h"
#include "OutputPowerCalculator.h"
#include "ResultCode.h"
#include "ToolError.h"

#include <map>
#include <variant>

namespace {

using PowerMap = std::map<ModulationAndCoding, long>;

/// Traces everything for as long as it lives; nothing is left behind afterwards.
class FullTrace {
public:
    FullTrace() {
        DeskTrace::getInstance().clear();
        DeskTrace::getInstance().setLevel(6);
    }
    ~FullTrace() {
        DeskTrace::getInstance().setLevel(0);
        DeskTrace::getInstance().clear();
    }
    FullTrace(const FullTrace&) = delete;
    FullTrace& operator=(const FullTrace&) = delete;

    /// What was traced since the last call.
    static std::vector<TraceRecord> take() { return DeskTrace::getInstance().take(); }
};

/// Sets inputs on a service and remembers them.
class InputSetter {
public:
    explicit InputSetter(OutputPowerCalculator& service)
        : m_service(service) {}

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

private:
    void setPermanent(std::uint32_t cutback) {
        m_service.setPowerCutback(cutback);
        m_inputs.permanentCutback = cutback;
    }
    void setTemporary(const OperatingInputs::TemporaryCutback& temporary) {
        m_service.setTemporaryPowerCutback(temporary.inForce, temporary.cutback);
        m_inputs.temporaryCutback = temporary;
    }
    void setBooster(const OperatingInputs::Booster& booster) {
        m_service.setBoosterPresence(booster.presence, booster.gain, booster.maxInputPower,
                                     booster.maxModulation);
        m_inputs.booster = booster;
    }
    void setTemperature(std::int32_t temperature) {
        m_service.setTemperature(temperature);
        m_inputs.temperature = temperature;
    }

    OutputPowerCalculator& m_service;
    OperatingInputs m_inputs;
};

void start(OutputPowerCalculator& service) {
    const unsigned result = service.initialize();
    if (!ResultCode::isFailure(result)) {
        return;
    }
    // The last error is the one that ended it; errors before it (a Pmax table that cannot be
    // fetched) do not stop the service.
    std::string why = "result " + std::to_string(result);
    for (const TraceRecord& record : FullTrace::take()) {
        if (record.kind == TraceRecord::Kind::Message && record.level == 1) {
            why = record.text;
        }
    }
    throw ToolError(ExitStatus::ServiceDidNotStart, "the service did not start: " + oneLine(why));
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

/// The family, where the query itself ended before one was asked.
QueryTrace::Family selectedFamily(const OutputPowerCalculator& service) {
    long unused = 0;
    service.getUnrestrictedPmax(unused);
    for (const TraceRecord& record : FullTrace::take()) {
        if (const auto family = QueryTrace::familyIn(record)) {
            return *family;
        }
    }
    return {"unknown", "unknown family"};
}

std::string wordsFor(const QueryTrace::Calculation& calculation) {
    std::string words;
    for (const QueryTrace::Trouble& trouble : calculation.troubles) {
        words += (words.empty() ? "" : "; ") + trouble.text;
        if (trouble.countsAsZero && !calculation.failed) {
            words += " (counted as 0 dBm)";
        }
    }
    return words;
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
void explain(const PowerTable& table, const QueryTrace& trace, PowerTable::Row& row) {
    const QueryTrace::Calculation* const calculation = trace.find(row.modulation);
    if (row.maxPower) {
        row.warning = calculation == nullptr ? "" : wordsFor(*calculation);
        row.isBelowMinimum = table.minOutputPower && *row.maxPower < *table.minOutputPower;
    } else if (row.modulation == Modulation::UNDEFINED) {
        row.reason = "no modulation has this code";
    } else if (!table.failure.empty()) {
        row.reason = "the query failed: " + table.failure;
    } else if (calculation != nullptr) {
        row.reason = wordsFor(*calculation);
    } else {
        row.reason = aboveLimit(trace);
    }
}

std::optional<std::string> usedRsec(const PowerTable& table, const QueryTrace& trace) {
    if (trace.rsec && table.market == EFrameFormatMarket::Ansi) {
        return convertRsecEnumToString(EReferenceSEC::Class2);
    }
    return trace.rsec;
}

} // namespace

PowerTable PowerTableQuery::run(const RadioFile& file) const {
    const FullTrace fullTrace;
    Node node(file.channel, file.node);
    OutputPowerCalculator service(file.channel);
    start(service);
    InputSetter setter(service);
    for (const Request& request : file.requests) {
        std::visit(setter, request.call);
    }
    setter.set(inputs);

    PowerTable table;
    table.channel = file.channel;
    table.servedChannel = Node::servedChannel(file.channel);
    table.productNumber = node.capabilityHandler()->getTmuHwProductNumber();
    table.frameFormatId = frameFormatId;
    const std::vector<ModulationAndCoding> codes = describeFrameFormat(node, table);
    table.isRsecGiven = rsec != EReferenceSEC::UNDEFINED;
    table.rsec = table.isRsecGiven ? rsec : node.systemPowerController()->getReferenceSec();
    describeSelection(node, table);
    table.inputs = setter.inputs();

    constexpr ModulationAndCoding asSelected{ModulationAndCoding::UNDEFINED};
    PowerMap powers;
    long minOutputPower = 0;
    static_cast<void>(FullTrace::take());
    table.result = service.getMinMaxOutputPowerVsModulationArray(
        frameFormatId, asSelected, asSelected, rsec, minOutputPower, powers);
    const QueryTrace trace = QueryTrace::read(FullTrace::take());

    table.family = trace.family ? *trace.family : selectedFamily(service);
    table.usedRsec = usedRsec(table, trace);
    table.isAdaptive = trace.isAdaptive;
    table.modulationLimit = trace.modulationLimit;
    table.notes = trace.notes;
    if (ResultCode::isFailure(table.result)) {
        table.failure =
            trace.failure.empty() ? "result " + std::to_string(table.result) : trace.failure;
        if (codes.empty() && frameFormatId >= 1) {
            const std::string missing = missingFrameFormat(node, frameFormatId);
            table.failure = missing.empty() ? table.failure : missing;
        }
    } else {
        table.minOutputPower = minOutputPower;
    }

    for (const ModulationAndCoding& code : codes) {
        PowerTable::Row row{code, convertCodeToModulation(code), {}, {}, {}};
        if (const auto power = powers.find(code); power != powers.end()) {
            row.maxPower = power->second;
        }
        explain(table, trace, row);
        table.rows.push_back(row);
    }
    return table;
}
