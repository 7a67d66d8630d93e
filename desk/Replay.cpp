#include "Replay.h"

#include "DeskTrace.h"
#include "InterfaceBroker.h"
#include "Node.h"
#include "OutputPowerCalculator.h"
#include "Printable.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <utility>

namespace {

/// The answer to a call, as JSON. It is written straight into its text: names and numbers need no
/// escape.
class Line {
public:
    Line(const char* call, unsigned result)
        : m_result(result)
        , m_text(std::string("{\"call\":\"") + call + '"') {
        add("result", result);
    }

    void add(const char* key, std::int64_t number) { addWritten(key, std::to_string(number)); }
    void addFlag(const char* key, bool flag) { addWritten(key, flag ? "true" : "false"); }

    void add(const char* key, const std::map<ModulationAndCoding, long>& powerMap) {
        std::string entries = "[";
        for (const auto& [code, maxPower] : powerMap) {
            entries += entries.size() == 1 ? "{\"code\":" : ",{\"code\":";
            entries += std::to_string(code.code);
            entries += ",\"maxPower\":";
            entries += std::to_string(maxPower);
            entries += '}';
        }
        addWritten(key, entries + ']');
    }

    unsigned result() const { return m_result; }
    std::string text() const { return m_text + '}'; }

private:
    void addWritten(const char* key, const std::string& value) {
        m_text += ",\"";
        m_text += key;
        m_text += "\":";
        m_text += value;
    }

    unsigned m_result;
    std::string m_text;
};

std::string textOf(const TraceRecord& record) {
    static constexpr const char* kinds[] = {"enter", "msg", "raw"}; // by TraceRecord::Kind
    // The order in which keys are added is the order in which they are printed.
    nlohmann::ordered_json line;
    if (record.kind == TraceRecord::Kind::Raw) {
        line["code"] = record.code;
    } else {
        line["level"] = record.level;
    }
    line["kind"] = kinds[static_cast<std::size_t>(record.kind)];
    line["file"] = record.file;
    line["function"] = record.function;
    line["text"] = record.text;
    constexpr int compact = -1;
    return printableJson(
        line.dump(compact, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

/// Adds the last key of a line. Record by record: all of them as one JSON value would take ten
/// times the memory of their text.
void addTrace(std::string& text) {
    text += "\"trace\":[";
    const char* separator = "";
    for (const TraceRecord& record : DeskTrace::getInstance().take()) {
        text += separator;
        text += textOf(record);
        separator = ",";
    }
    text += ']';
}

/// Makes each call of a request and the line that reports it.
class Player {
public:
    Player(std::uint32_t channel, Node& node, OutputPowerCalculator& service,
           const std::function<void()>& attach)
        : m_serviceName(IOutputPowerCalculator::interfaceName(Node::servedChannel(channel)))
        , m_node(node)
        , m_service(service)
        , m_asked(&service)
        , m_attach(attach) {}

    Line play(const Request& request) {
        m_preset = request.preset;
        return std::visit([this](const auto& call) { return play(call); }, request.call);
    }

private:
    template <class Call>
    static Line answerOf(const Call&, unsigned result) {
        return {Call::name, result};
    }

    template <class Call>
    static Line answerOf(const Call& call, int result) {
        return answerOf(call, static_cast<unsigned>(result));
    }

    Line play(const Calls::Initialize& call) {
        Line line = answerOf(call, m_service.initialize());
        const auto* const published =
            InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(m_serviceName);
        // What was put before the service is the service to whoever looks it up.
        line.addFlag("registered",
                     published != nullptr && (published == &m_service || published == m_asked));
        if (m_attach && published != nullptr) {
            m_attach();
            m_asked =
                InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(m_serviceName);
        }
        return line;
    }

    Line play(const Calls::SetPowerCutback& call) {
        return answerOf(call, m_asked->setPowerCutback(call.cutback));
    }

    Line play(const Calls::SetTemporaryPowerCutback& call) {
        return answerOf(call, m_asked->setTemporaryPowerCutback(call.use, call.cutback));
    }

    Line play(const Calls::SetTemperature& call) {
        return answerOf(call, m_asked->setTemperature(call.temperature));
    }

    Line play(const Calls::SetBoosterPresence& call) {
        return answerOf(call, m_asked->setBoosterPresence(call.presence, call.gain,
                                                          call.maxInputPower, call.maxModulation));
    }

    Line play(const Calls::CalculatePowerCapabilities& call) {
        long minPower = m_preset;
        long maxPower = m_preset;
        Line line = answerOf(
            call, m_asked->calculatePowerCapabilities(call.modulation, minPower, maxPower));
        line.add("minPower", minPower);
        line.add("maxPower", maxPower);
        return line;
    }

    Line play(const Calls::CalculateAdmodPowerCapabilities& call) {
        long minPower = m_preset;
        long maxPower = m_preset;
        Line line = answerOf(call, m_asked->calculateAdmodPowerCapabilities(
                                       call.modulation, call.rsec, minPower, maxPower));
        line.add("minPower", minPower);
        line.add("maxPower", maxPower);
        return line;
    }

    Line play(const Calls::FindPminPmax& call) {
        long pmin = m_preset;
        long pmax = m_preset;
        Line line = answerOf(call, m_asked->findPminPmax(pmin, pmax));
        line.add("pmin", pmin);
        line.add("pmax", pmax);
        return line;
    }

    Line play(const Calls::GetUnrestrictedPmax& call) {
        long pmax = m_preset;
        Line line = answerOf(call, m_asked->getUnrestrictedPmax(pmax));
        line.add("pmax", pmax);
        return line;
    }

    Line play(const Calls::GetMinMaxOutputPowerVsModulationArray& call) {
        long minOutputPower = m_preset;
        std::map<ModulationAndCoding, long> powerMap = call.powerMap;
        Line line = answerOf(call, m_asked->getMinMaxOutputPowerVsModulationArray(
                                       call.frameFormatId, call.minModulationAndCode,
                                       call.maxModulationAndCode, call.referenceSec, minOutputPower,
                                       powerMap));
        line.add("minOutputPower", minOutputPower);
        line.add("powerMap", powerMap);
        return line;
    }

    Line play(const Calls::Patch& call) {
        m_node.apply(call.answers);
        return answerOf(call, ResultCode::Success);
    }

    std::string m_serviceName;
    Node& m_node;
    OutputPowerCalculator& m_service;
    IOutputPowerCalculator* m_asked;
    const std::function<void()>& m_attach;
    long m_preset = 0;
};

} // namespace

Replay::Replay(int traceLevel)
    : m_traceLevel(traceLevel) {}

bool Replay::play(const RadioFile& file, const LineSink& sink) const {
    const DeskTraceScope traceScope(m_traceLevel);
    Node node(file.channel, file.node);
    OutputPowerCalculator service(file.channel);
    Player player(file.channel, node, service, m_attach);
    if (m_attach) {
        m_attach();
    }

    const auto report = [&](const Request& request) {
        const Line line = player.play(request);
        std::string text = line.text();
        if (m_traceLevel > 0) {
            text.back() = ','; // in place of the end of the object
            addTrace(text);
            text += '}';
        }
        sink(text);
        return line.result();
    };

    if (ResultCode::isFailure(report({Calls::Initialize{}}))) {
        return false;
    }
    for (const Request& request : file.requests) {
        report(request);
    }
    return true;
}

bool Replay::play(const RadioFile& file, std::ostream& stream) const {
    return play(file, [&stream](const std::string& line) { stream << line << '\n'; });
}
