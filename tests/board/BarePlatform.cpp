#include "BarePlatform.h"

#include "BoardSupport.h"
#include "CStorageManager.h"
#include "InterfaceBroker.h"
#include "RawTrace.h"
#include "ResultCode.h"
#include "VelTrace.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

struct Entry {
    char name[48];
    IInterface* object;
};

// Zero before any constructor runs: the library's own trace objects come first.
Entry s_interfaces[16];
VelTrace* s_traces[32];
unsigned long s_traceRecords;

constexpr std::array<std::int32_t, 6> compensations = {28, 150, 40, -100, 56, -200};
constexpr std::uint32_t compensationsSize = compensations.size();

[[noreturn]] void tooMany(const char* what) {
    std::fprintf(stderr, "the bare platform has room for fewer %s\n", what);
    std::abort();
}

Entry* findEntry(std::string_view name) {
    const auto* const found =
        std::find_if(std::begin(s_interfaces), std::end(s_interfaces), [name](const Entry& entry) {
            return entry.object != nullptr && name == entry.name;
        });
    return found == std::end(s_interfaces) ? nullptr : s_interfaces + (found - s_interfaces);
}

} // namespace

namespace BarePlatform {

void setTraceLevel(int level) {
    SPC_trace = level;
    for (VelTrace* const trace : s_traces) {
        if (trace != nullptr) {
            trace->setLevel(level);
        }
    }
}

unsigned long traceRecords() {
    return s_traceRecords;
}

} // namespace BarePlatform

InterfaceBroker& InterfaceBroker::getInstance() {
    static InterfaceBroker broker;
    return broker;
}

unsigned InterfaceBroker::registerInterface(const std::string& name, IInterface* object) {
    Entry* entry = findEntry(name);
    for (Entry& candidate : s_interfaces) {
        if (entry == nullptr && candidate.object == nullptr) {
            entry = &candidate;
        }
    }
    if (entry == nullptr || name.size() >= sizeof(entry->name)) {
        tooMany("interfaces");
    }
    std::memcpy(entry->name, name.c_str(), name.size() + 1);
    entry->object = object;
    return ResultCode::Success;
}

unsigned InterfaceBroker::unregisterInterface(const std::string& name, IInterface** removed) {
    Entry* const entry = findEntry(name);
    if (removed != nullptr) {
        *removed = entry == nullptr ? nullptr : entry->object;
    }
    if (entry == nullptr) {
        return ResultCode::Failure;
    }
    entry->object = nullptr;
    return ResultCode::Success;
}

IInterface* InterfaceBroker::find(const std::string& name) const {
    const Entry* const entry = findEntry(name);
    return entry == nullptr ? nullptr : entry->object;
}

VelTrace::VelTrace(const char* channelName, int level, int headerOption)
    : m_channelName(channelName)
    , m_level(level)
    , m_headerOption(headerOption) {
    auto* const free = std::find(std::begin(s_traces), std::end(s_traces), nullptr);
    if (free == std::end(s_traces)) {
        tooMany("traces");
    }
    *free = this;
}

VelTrace::~VelTrace() {
    std::replace(std::begin(s_traces), std::end(s_traces), this, static_cast<VelTrace*>(nullptr));
}

void VelTrace::logMsg(int, const TraceHeader&, const std::string&) {
    ++s_traceRecords;
}

void VelTrace::logEnterMsg(int, const TraceHeader&, const std::string&) {
    ++s_traceRecords;
}

int SPC_trace;

int CPexTraceHandler_DmLevel2VtLevel(std::uint32_t code) {
    return ResultCode::isFailure(code) ? 1 : 5;
}

void VT_beginImpl(const int*, int, const TraceHeader*) {
    ++s_traceRecords;
}

void VT_rawprintf(const char*, ...) {}

void VT_endImpl() {}

std::uint32_t CStorageManager_GetVariableContentAddressByName(const char* name,
                                                              const void** address,
                                                              std::uint32_t* size) {
    const std::string_view wanted = name;
    if (wanted == "channel.1.tx.rf.pmax.cs.comp.v2.array") {
        *address = compensations.data();
    } else if (wanted == "channel.1.tx.rf.pmax.cs.comp.v2.arraysize") {
        *address = &compensationsSize;
    } else {
        return ResultCode::Failure;
    }
    if (size != nullptr) {
        *size = *address == &compensationsSize ? 1 : compensationsSize;
    }
    return ResultCode::Success;
}

bool os::bsp::rl::isFftypeCarrierAggregation() {
    return false;
}
