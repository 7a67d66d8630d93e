#include "RecordingTriggers.h"

#include "ResultCode.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace {

/// The last maximum power of each operation and modulation, or code of a power map.
class LastPowers {
public:
    /// @return whether another power was known.
    bool isChangedTo(const char* call, std::int32_t key, long power) {
        const auto end = m_powers.begin() + static_cast<std::ptrdiff_t>(m_count);
        const auto found = std::find_if(m_powers.begin(), end, [&](const Power& known) {
            return known.call == call && known.key == key;
        });
        if (found == end) {
            if (m_count < m_powers.size()) {
                m_powers[m_count++] = {call, key, power};
            }
            return false;
        }
        const bool isChanged = found->power != power;
        found->power = power;
        return isChanged;
    }

private:
    struct Power {
        const char* call; ///< names of operations are literals
        std::int32_t key;
        long power;
    };
    std::array<Power, 128> m_powers{};
    std::size_t m_count = 0;
};

bool hasPowers(const RecordedRequest& request) {
    return request.result == ResultCode::Success;
}

} // namespace

RecordingTrigger RecordingTriggers::powerBelow(long limit) {
    return [limit](const RecordedRequest& request) {
        if (!hasPowers(request)) {
            return false;
        }
        if (request.maxPower != nullptr && *request.maxPower < limit) {
            return true;
        }
        return request.powerMap != nullptr &&
               std::any_of(request.powerMap->begin(), request.powerMap->end(),
                           [limit](const auto& entry) { return entry.second < limit; });
    };
}

RecordingTrigger RecordingTriggers::failure() {
    return [](const RecordedRequest& request) { return ResultCode::isFailure(request.result); };
}

RecordingTrigger RecordingTriggers::powerChanged() {
    return [last = LastPowers()](const RecordedRequest& request) mutable {
        if (!hasPowers(request)) {
            return false;
        }
        bool isChanged = false;
        if (request.maxPower != nullptr) {
            isChanged = last.isChangedTo(
                request.call, static_cast<std::int32_t>(request.modulation), *request.maxPower);
        }
        if (request.powerMap != nullptr) {
            for (const auto& [code, power] : *request.powerMap) {
                isChanged = last.isChangedTo(request.call, code.code, power) || isChanged;
            }
        }
        return isChanged;
    };
}
