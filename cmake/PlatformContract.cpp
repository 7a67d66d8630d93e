// What the library and the flight recorder use of the platform's headers, and nothing else. It is
// compiled with a board's own headers before the library is, so that what they lack is named here.
// The library copes with everything that passes: more members, other members, another order, other
// bases.

#include "BoardSupport.h"
#include "CStorageManager.h"
#include "ICapabilityHandler.h"
#include "InterfaceBroker.h"
#include "RawTrace.h"
#include "VelTrace.h"

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

template <class Value, class Expected>
constexpr bool is = std::is_same_v<Value, Expected>;

// Traces. A source file of the library has one object of static lifetime, which is made when the
// library is loaded, and asks it from any thread.

static_assert(std::is_constructible_v<VelTrace, const char*, int, int>,
              "VelTrace is made of a channel's name, a level and a header option");
static_assert(is<decltype(std::declval<const VelTrace&>().isEnabled(0)), bool>,
              "VelTrace::isEnabled(int) const answers with a bool");
static_assert(is<decltype(TraceHeader{"", 0, ""}), TraceHeader>,
              "TraceHeader begins with a file, a line and a function");

void traces(VelTrace& trace, const TraceHeader& header, const std::string& text) {
    trace.logMsg(0, header, text);
    trace.logEnterMsg(0, header, text);
}

static_assert(is<decltype(SPC_trace), int>, "the raw trace's threshold is an int");
static_assert(is<decltype(CPexTraceHandler_DmLevel2VtLevel(std::uint32_t{})), int>,
              "a code's level is an int");

void rawTraces(const TraceHeader& header) {
    VT_beginImpl(&SPC_trace, 0, &header);
    VT_rawprintf("%d %s", 0, "");
    VT_endImpl();
}

// Result codes have 32 bits, whatever the type.

template <class Value>
constexpr bool isCode = std::is_integral_v<Value> && sizeof(Value) == 4;

static_assert(isCode<decltype(CStorageManager_GetVariableContentAddressByName(
                  "", std::declval<const void**>(), std::declval<std::uint32_t*>()))>,
              "the store of named variables answers with a result code");

static_assert(isCode<decltype(InterfaceBroker::getInstance().registerInterface(
                  std::string(), std::declval<IInterface*>()))>,
              "InterfaceBroker::registerInterface() answers with a result code");
static_assert(
    isCode<decltype(InterfaceBroker::getInstance().unregisterInterface(std::string(), nullptr))>,
    "InterfaceBroker::unregisterInterface() answers with a result code");
static_assert(
    is<decltype(InterfaceBroker::getInstance().getInterface<ICapabilityHandler>(std::string())),
       ICapabilityHandler*>,
    "InterfaceBroker::getInterface<T>() answers with a T*");

static_assert(is<decltype(os::bsp::rl::isFftypeCarrierAggregation()), bool>,
              "the board support answers with a bool");

// A name is found under any type of neighbour, so the template must be one.
IInterface* root(const std::string& name) {
    return InterfaceBroker::getInstance().getInterface<IInterface>(name);
}
