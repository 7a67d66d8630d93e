#include "ChannelSpacingCompensation.h"

#include "CStorageManager.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdint>
#include <cstdio>

namespace {

constexpr const char* functionName = "getCompensationForChannelSpacing";

/// Name of a channel's stored variable. It is built in place, because a query takes nothing from
/// the heap.
class VariableName {
public:
    /// @param suffix what follows the channel.
    VariableName(RadioChannel channel, const char* suffix) {
        std::snprintf(m_text.data(), m_text.size(), "channel.%" PRIu32 "%s", channel, suffix);
    }

    const char* text() const { return m_text.data(); }

private:
    std::array<char, 64> m_text; // 51 at most: "channel.", ten digits, a suffix and the end
};

/// Address of a stored variable's content.
/// @param[out] size if not null, the size that the store reports.
/// @return false after a trace if the variable cannot be read.
bool readVariable(TraceSource& trace, const VariableName& name, const void*& content,
                  std::uint32_t* size) {
    const unsigned status =
        CStorageManager_GetVariableContentAddressByName(name.text(), &content, size);
    if (ResultCode::isFailure(status)) {
        TRACE_MSG_OF(trace, functionName, TraceLevel::Error,
                     functionName << " Failed to get variable " << name.text());
        return false;
    }
    return true;
}

/// The compensation of the first pair with a channel spacing, 0 without one.
/// @param size elements of the array that may be read.
/// @param validSize elements that are calibrated, at least 1. The first pair is compared even if
/// that
///        is less than a pair.
long findCompensation(const std::int32_t* elements, std::uint32_t size, std::uint32_t validSize,
                      std::int32_t channelSpacing) {
    const std::uint32_t end = std::min(size, validSize);
    for (std::uint32_t i = 0;; i += 2) {
        const bool isWhole = size - i >= 2;
        if (isWhole && elements[i] == channelSpacing) {
            return elements[i + 1];
        }
        if (end - i <= 2) {
            return 0;
        }
    }
}

} // namespace

int channelSpacingCompensation(TraceSource& trace, RadioChannel channel,
                               EChannelSpacingType channelSpacing, long& compensation) {
    const void* array = nullptr;
    std::uint32_t size = 0;
    if (!readVariable(trace, {channel, ".tx.rf.pmax.cs.comp.v2.array"}, array, &size)) {
        return ResultCode::Failure;
    }
    const void* arraySize = nullptr;
    if (!readVariable(trace, {channel, ".tx.rf.pmax.cs.comp.v2.arraysize"}, arraySize, nullptr)) {
        return ResultCode::Failure;
    }

    compensation = 0;
    // A store that answers without an address has no content either.
    if (array == nullptr || arraySize == nullptr) {
        return ResultCode::Success;
    }
    const std::uint32_t validSize = *static_cast<const std::uint32_t*>(arraySize);
    if (size == 0 || validSize == 0) {
        return ResultCode::Success;
    }
    compensation = findCompensation(static_cast<const std::int32_t*>(array), size, validSize,
                                    numberOf(channelSpacing));
    return ResultCode::Success;
}
