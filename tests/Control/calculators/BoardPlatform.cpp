#include "BoardPlatform.h"

#include "BoardSupport.h"
#include "CStorageManager.h"
#include "InterfaceBroker.h"
#include "RawTrace.h"
#include "VelTrace.h"

#include <cstdarg>
#include <cstdio>

namespace BoardPlatform {

std::vector<TraceObject>& traceObjects() {
    static std::vector<TraceObject> objects;
    return objects;
}

std::vector<std::string>& calls() {
    static std::vector<std::string> calls;
    return calls;
}

std::map<std::string, Variable>& variables() {
    static std::map<std::string, Variable> variables;
    return variables;
}

int levelOfFailures = 2;
int levelOfOthers = 4;

namespace {

std::string textOf(const TraceHeader& header) {
    return std::string(header.file) + (header.line > 0 ? ":line " : ":no line ") + header.function;
}

} // namespace

} // namespace BoardPlatform

using namespace BoardPlatform;

// --- Broker

InterfaceBroker& InterfaceBroker::getInstance() {
    static InterfaceBroker broker;
    return broker;
}

unsigned InterfaceBroker::registerInterface(const std::string& name, IInterface* object) {
    m_interfaces[name] = object;
    return 0;
}

unsigned InterfaceBroker::unregisterInterface(const std::string& name, IInterface**) {
    m_interfaces.erase(name);
    return 0;
}

IInterface* InterfaceBroker::find(const std::string& name) const {
    const auto found = m_interfaces.find(name);
    return found == m_interfaces.end() ? nullptr : found->second;
}

// --- Trace

VelTrace::VelTrace(const char* channelName, int level, int headerOption)
    : m_channelName(channelName)
    , m_level(level)
    , m_headerOption(headerOption) {
    traceObjects().push_back({channelName, level, headerOption});
}

VelTrace::~VelTrace() = default;

void VelTrace::logMsg(int level, const TraceHeader& header, const std::string& text) {
    calls().push_back("logMsg " + std::to_string(level) + " " + textOf(header) + ": " + text);
}

void VelTrace::logEnterMsg(int level, const TraceHeader& header, const std::string& text) {
    calls().push_back("logEnterMsg " + std::to_string(level) + " " + textOf(header) + ": " + text);
}

int SPC_trace = 3;

int CPexTraceHandler_DmLevel2VtLevel(std::uint32_t code) {
    return code >= 32768 ? levelOfFailures : levelOfOthers;
}

void VT_beginImpl(const int* trace, int level, const TraceHeader* header) {
    calls().push_back("VT_beginImpl " + std::string(trace == &SPC_trace ? "SPC_trace " : "? ") +
                      std::to_string(level) + " " + textOf(*header));
}

void VT_rawprintf(const char* format, ...) {
    char text[512] = "";
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    calls().push_back("VT_rawprintf [" + std::string(format) + "] " + text);
}

void VT_endImpl() {
    calls().push_back("VT_endImpl");
}

// --- Store and board support

std::uint32_t CStorageManager_GetVariableContentAddressByName(const char* name,
                                                              const void** address,
                                                              std::uint32_t* size) {
    calls().push_back(std::string("read ") + name + (size == nullptr ? "" : " with its size"));
    const auto found = variables().find(name);
    if (found == variables().end()) {
        return 32768;
    }
    if (found->second.address != nullptr) {
        *address = found->second.address;
    }
    if (size != nullptr && found->second.size) {
        *size = *found->second.size;
    }
    return found->second.status;
}

bool os::bsp::rl::isFftypeCarrierAggregation() {
    return false;
}
