#include "ChannelSpacingCompensation.h"

#include "CStorageManager.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace {

constexpr const char* functionName = "getCompensationForChannelSpacing";

/// Names of a channel's two stored variables, built without the heap: a query takes nothing from
/// it.
class VariableNames {
public:
    explicit constexpr VariableNames(RadioChannel channel)
        : m_array(nameOf(channel, ""))
        , m_arraySize(nameOf(channel, "size")) {}

    const char* array() const { return m_array.data(); }
    const char* arraySize() const { return m_arraySize.data(); }

private:
    using Text = std::array<char, 64>; ///< 51 at most: ten digits, 40 characters, the final zero

    static constexpr Text nameOf(RadioChannel channel, const char* ending) {
        Text text{};
        std::size_t length = appended(text, 0, "channel.");
        std::size_t digits = 1;
        for (std::uint32_t rest = channel; rest >= 10; rest /= 10) {
            ++digits;
        }
        length += digits;
        for (std::size_t place = length; digits > 0; --digits, channel /= 10) {
            text[--place] = static_cast<char>('0' + channel % 10);
        }
        length = appended(text, length, ".tx.rf.pmax.cs.comp.v2.array");
        appended(text, length, ending);
        return text;
    }

    /// @return the length with a piece appended.
    static constexpr std::size_t appended(Text& text, std::size_t length, const char* piece) {
        for (; *piece != '\0'; ++piece) {
            text[length++] = *piece;
        }
        return length;
    }

    Text m_array;
    Text m_arraySize;
};

/// Those of the channels that services serve, 1 and 2, which no query has to build.
constexpr std::array<VariableNames, 2> servedChannels = {VariableNames(1), VariableNames(2)};

/// Address of a stored variable's content.
/// @param[out] size if not null, the size that the store reports.
/// @return false after a trace if the variable cannot be read.
inline __attribute__((always_inline)) bool readVariable(TraceSource& trace, const char* name,
                                                        const void*& content, std::uint32_t* size) {
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
/// @param validSize elements that are calibrated. A pair of which only the first element is counts.
long findCompensation(const std::int32_t* elements, std::uint32_t size, std::uint32_t validSize,
                      std::int32_t channelSpacing) {
    const std::uint32_t end = std::min(size, validSize);
    std::uint32_t pairs = std::min(end / 2 + end % 2, size / 2);
    for (const std::int32_t* pair = elements; pairs > 0; --pairs, pair += 2) {
        if (pair[0] == channelSpacing) {
            return pair[1];
        }
    }
    return 0;
}

inline __attribute__((always_inline)) int storedCompensation(TraceSource& trace,
                                                             const VariableNames& names,
                                                             EChannelSpacingType channelSpacing,
                                                             long& compensation) {
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
    compensation =
        findCompensation(static_cast<const std::int32_t*>(array), size,
                         *static_cast<const std::uint32_t*>(arraySize), numberOf(channelSpacing));
    return ResultCode::Success;
}

/// Of a channel that no service serves.
__attribute__((cold, noinline)) int otherCompensation(TraceSource& trace, RadioChannel channel,
                                                      EChannelSpacingType channelSpacing,
                                                      long& compensation) {
    return storedCompensation(trace, VariableNames(channel), channelSpacing, compensation);
}

} // namespace

int channelSpacingCompensation(TraceSource& trace, RadioChannel channel,
                               EChannelSpacingType channelSpacing, long& compensation) {
    // Channel 0 wraps to above them.
    const RadioChannel place = channel - 1;
    return place < servedChannels.size()
               ? storedCompensation(trace, servedChannels[place], channelSpacing, compensation)
               : otherCompensation(trace, channel, channelSpacing, compensation);
}
