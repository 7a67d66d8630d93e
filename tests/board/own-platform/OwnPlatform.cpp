// The platform of a board whose headers are laid out in another way than those of platform/. It
// prints the traces if TRACES is set in the environment.

#include "BoardSupport.h"
#include "CStorageManager.h"
#include "InterfaceBroker.h"
#include "RawTrace.h"
#include "VelTrace.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

TraceObject* s_first;
TraceHeader s_rawHeader;

bool isTraced() {
    return std::getenv("TRACES") != nullptr;
}

void print(const char* kind, int level, const TraceHeader& header, const char* text) {
    std::printf("%d %s %s %s: %s\n", level, kind, header.thread, header.function, text);
}

} // namespace

TraceObject::TraceObject(const char* name)
    : m_name(name)
    , m_next(s_first) {
    s_first = this;
}

TraceObject::~TraceObject() = default;

VelTrace::VelTrace(const char* channelName, int level, int headerOption)
    : TraceObject(channelName)
    , m_level(isTraced() ? 6 : level)
    , m_headerOption(headerOption) {}

// At the end the counts are those of the records that came through.
VelTrace::~VelTrace() {
    unsigned sum = 0;
    for (const unsigned count : m_counts) {
        sum += count;
    }
    if (isTraced() && sum > 0) {
        std::printf("%s %d: %u records\n", name(), m_headerOption, sum);
    }
}

void VelTrace::logMsg(int level, const TraceHeader& header, const std::string& text) {
    ++m_counts[level];
    if (isTraced()) {
        print("msg", level, header, text.c_str());
    }
}

void VelTrace::logEnterMsg(int level, const TraceHeader& header, const std::string& text) {
    ++m_counts[level];
    if (isTraced()) {
        print("enter", level, header, text.c_str());
    }
}

int SPC_trace = 6;

int CPexTraceHandler_DmLevel2VtLevel(std::uint32_t code) {
    return code < 0x8000 ? 5 : 1;
}

void VT_beginImpl(const int*, int level, const TraceHeader* header) {
    s_rawHeader = *header;
    if (isTraced()) {
        print("raw", level, s_rawHeader, "");
    }
}

void VT_rawprintf(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    if (isTraced()) {
        std::vprintf(format, arguments);
    }
    va_end(arguments);
}

void VT_endImpl() {}

InterfaceBroker& InterfaceBroker::getInstance() {
    static InterfaceBroker broker;
    return broker;
}

InterfaceBroker::Entry& InterfaceBroker::entryOf(std::string_view name) {
    for (Entry& entry : m_entries) {
        if (entry.object == nullptr || entry.name == name) {
            return entry;
        }
    }
    std::abort();
}

unsigned InterfaceBroker::registerInterface(std::string_view name, IInterface* object) {
    entryOf(name) = {std::string(name), object};
    return 0;
}

unsigned InterfaceBroker::unregisterInterface(std::string_view name, IInterface** removed) {
    Entry& entry = entryOf(name);
    if (removed != nullptr) {
        *removed = entry.object;
    }
    entry.object = nullptr;
    return 0;
}

IInterface* InterfaceBroker::lookUp(std::string_view name) {
    return entryOf(name).object;
}

std::uint32_t CStorageManager_GetVariableContentAddressByName(const char* name,
                                                              const void** address,
                                                              std::uint32_t* size) {
    static const std::int32_t array[] = {28, -50};
    static const std::int32_t arraySize = 2;
    const bool isArray = std::string_view(name) == "channel.1.tx.rf.pmax.cs.comp.v2.array";
    if (!isArray && std::string_view(name) != "channel.1.tx.rf.pmax.cs.comp.v2.arraysize") {
        return 0x8000;
    }
    *address = isArray ? array : &arraySize;
    if (size != nullptr) {
        *size = isArray ? 2 : 1;
    }
    return 0;
}

bool os::bsp::rl::isFftypeCarrierAggregation() noexcept {
    return false;
}
