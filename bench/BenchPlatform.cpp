#include "BenchPlatform.h"

#include "BoardSupport.h"
#include "CStorageManager.h"
#include "InterfaceBroker.h"
#include "RawTrace.h"
#include "VelTrace.h"

#include <array>
#include <cstring>

namespace {

const std::int32_t* compensationArray = nullptr;
std::uint32_t compensationSize = 0;
std::uint32_t compensationValidSize = 0;
bool isCarrierAggregation = false;

// The library has one trace object for each of its source files; they register before main().
std::array<VelTrace*, 16> traces{};
std::size_t traceCount = 0;

} // namespace

void BenchPlatform::setCompensation(const std::int32_t* array, std::uint32_t size,
                                    std::uint32_t validSize) {
    compensationArray = array;
    compensationSize = size;
    compensationValidSize = validSize;
}

void BenchPlatform::setCarrierAggregation(bool isUsed) {
    isCarrierAggregation = isUsed;
}

void BenchPlatform::setTraceLevel(int level) {
    for (std::size_t i = 0; i < traceCount; ++i) {
        traces[i]->setLevel(level);
    }
    SPC_trace = level;
}

std::uint32_t CStorageManager_GetVariableContentAddressByName(const char* name,
                                                              const void** address,
                                                              std::uint32_t* size) {
    // The names differ in their last letter: "...array" and "...arraysize".
    if (name[std::strlen(name) - 1] == 'y') {
        *address = compensationArray;
        if (size != nullptr) {
            *size = compensationSize;
        }
    } else {
        *address = &compensationValidSize;
    }
    return 0;
}

bool os::bsp::rl::isFftypeCarrierAggregation() {
    return isCarrierAggregation;
}

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

VelTrace::VelTrace(const char* channelName, int level, int headerOption)
    : m_channelName(channelName)
    , m_level(level)
    , m_headerOption(headerOption) {
    traces.at(traceCount++) = this;
}

VelTrace::~VelTrace() = default;

void VelTrace::logMsg(int, const TraceHeader&, const std::string&) {}

void VelTrace::logEnterMsg(int, const TraceHeader&, const std::string&) {}

int SPC_trace = 3;

int CPexTraceHandler_DmLevel2VtLevel(std::uint32_t code) {
    return code >= 32768 ? 1 : 5;
}

void VT_beginImpl(const int*, int, const TraceHeader*) {}

void VT_rawprintf(const char*, ...) {}

void VT_endImpl() {}
