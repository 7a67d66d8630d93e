#include "ChannelSpacingCompensation.h"

#include "CStorageManager.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

constexpr const char* functionName = "getCompensationForChannelSpacing";

/// Names of a channel's two stored variables, which begin alike. They are built in place, because a
/// query takes nothing from the heap.
class VariableNames {
public:
    explicit VariableNames(RadioChannel channel) {
        append("channel.");
        appendNumber(channel);
        append(".tx.rf.pmax.cs.comp.v2.array");
    }

    const char* array() { return m_text.data(); }

    /// Ends what array() answered.
    const char* arraySize() {
        append("size");
        return m_text.data();
    }

private:
    /// Appends a literal and its final zero, which the next piece overwrites.
    template <std::size_t size>
    void append(const char (&literal)[size]) {
        std::memcpy(m_text.data() + m_length, literal, size);
        m_length += size - 1;
    }

    void appendNumber(std::uint32_t number) {
        std::size_t digits = 1;
        for (std::uint32_t rest = number; rest >= 10; rest /= 10) {
            ++digits;
        }
        m_length += digits;
        for (std::size_t place = m_length; digits > 0; --digits, number /= 10) {
            m_text[--place] = static_cast<char>('0' + number % 10);
        }
    }

    std::array<char, 64> m_text; // 51 at most: ten digits, 40 characters and the final zero
    std::size_t m_length = 0;
};

/// Address of a stored variable's content.
/// @param[out] size if not null, the size that the store reports.
/// @return false after a trace if the variable cannot be read.
bool readVariable(TraceSource& trace, const char* name, const void*& content, std::uint32_t* size) {
    const unsigned status = CStorageManager_GetVariableContentAddressByName(name, &content, size);
    if (ResultCode::isFailure(status)) {
        TRACE_MSG_OF(trace, functionName, TraceLevel::Error, functionName,
                     " Failed to get variable ", name);
        return false;
    }
    return true;
}

/// The compensation of the first pair with a channel spacing, 0 without one.
/// @param size elements of the array that may be read.
/// @param validSize elements that are calibrated, at least 1. The first pair is compared even if
///        that is less than a pair.
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
    VariableNames names(channel);
    const void* array = nullptr;
    std::uint32_t size = 0;
    if (!readVariable(trace, names.array(), array, &size)) {
        return ResultCode::Failure;
    }
    const void* arraySize = nullptr;
    if (!readVariable(trace, names.arraySize(), arraySize, nullptr)) {
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
