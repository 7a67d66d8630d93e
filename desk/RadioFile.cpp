#include "RadioFile.h"

#include "JsonPointer.h"
#include "ResultCode.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace {

using Handler = std::shared_ptr<const CapabilityHandlerAnswers>;
using Places = std::map<std::string, std::string>;

constexpr const char* handlerKey = "/capabilityHandler/";
constexpr const char* minPowerKey = "minOutputPower";

/// Forgets a place and all below it.
void forget(Places& places, const std::string& place) {
    std::erase_if(places, [&place](const auto& known) {
        return known.first == place || known.first.starts_with(place + '/');
    });
}

/// What a service has of the capability handler since it started.
struct Fetched {
    Handler handler;
    std::set<std::string> flatTables;
    Places places;

    /// Whether the service, started again, gets a table of the node as it is now; else it goes on
    /// with what it has.
    static bool gets(const CapabilityHandlerAnswers& now, std::size_t table) {
        // The tables that it tries, in this order, by their places in pmaxTables.
        static const std::array<std::vector<std::size_t>, pmaxTables.size()> candidates{
            {{0}, {1, 0}, {2, 0}, {3, 2, 0}}};
        for (const std::size_t candidate : candidates.at(table)) {
            const auto& answer = now.*pmaxTables.at(candidate).answer;
            const auto* const only = answer ? std::get_if<ResultOnly>(&*answer) : nullptr;
            if (only == nullptr) {
                return true;
            }
            if (!ResultCode::isFailure(only->result)) {
                return false; // a success that writes nothing
            }
        }
        return false;
    }

    /// Gives a node what was fetched, for a key that it has changed since.
    void keep(RadioFile& file, const std::string& key) const {
        const std::string place = handlerKey + key;
        forget(file.patched, place);
        for (const auto& [known, origin] : places) {
            if (known == place || known.starts_with(place + '/')) {
                file.patched[known] = origin;
            }
        }
        file.flatPmaxTables.erase(key);
        if (flatTables.contains(key)) {
            file.flatPmaxTables.insert(key);
        }
    }
};

/// The handler that a service has after it has started on a node.
Fetched started(const RadioFile& file, const Fetched* before) {
    Fetched now{file.node.capabilityHandler, file.flatPmaxTables, file.patched};
    if (before == nullptr || now.handler == nullptr) {
        return now;
    }
    RadioFile mixed = file;
    auto handler = std::make_shared<CapabilityHandlerAnswers>(*now.handler);
    for (std::size_t table = 0; table < pmaxTables.size(); ++table) {
        if (!Fetched::gets(*now.handler, table)) {
            (*handler).*pmaxTables.at(table).answer =
                (*before->handler).*pmaxTables.at(table).answer;
            before->keep(mixed, pmaxTables.at(table).key);
        }
    }
    if (handler->minOutputPower && std::holds_alternative<ResultOnly>(*handler->minOutputPower)) {
        handler->minOutputPower = before->handler->minOutputPower;
        before->keep(mixed, minPowerKey);
    }
    return {std::move(handler), mixed.flatPmaxTables, mixed.patched};
}

} // namespace

std::string RadioFile::placeOf(const std::vector<std::string>& path) const {
    // Most files have no patches.
    for (std::size_t length = patched.empty() ? 0 : path.size(); length > 0; --length) {
        const auto end = path.begin() + static_cast<std::ptrdiff_t>(length);
        const auto found = patched.find(pointerText({path.begin(), end}));
        if (found != patched.end()) {
            return found->second + (end == path.end() ? "" : pointerText({end, path.end()}));
        }
    }
    return pointerText(path);
}

RadioFile RadioFile::at(std::size_t request) const {
    RadioFile file = *this;
    file.requests.erase(file.requests.begin() + static_cast<std::ptrdiff_t>(request),
                        file.requests.end());
    Fetched fetched = started(file, nullptr);
    for (std::size_t index = 0; index < file.requests.size(); ++index) {
        const Calls::Any& call = file.requests[index].call;
        if (const auto* const patch = std::get_if<Calls::Patch>(&call)) {
            file.node = patch->answers;
            file.flatPmaxTables = patch->flatPmaxTables;
            for (const std::string& place : patch->replaced) {
                forget(file.patched, place);
                file.patched[place] =
                    pointerText({"requests", std::to_string(index), "file"}) + place;
            }
        } else if (std::holds_alternative<Calls::Initialize>(call)) {
            fetched = started(file, &fetched);
        }
    }
    if (fetched.handler != nullptr && fetched.handler != file.node.capabilityHandler) {
        auto handler = std::make_shared<CapabilityHandlerAnswers>(*file.node.capabilityHandler);
        for (const PmaxTableName& table : pmaxTables) {
            (*handler).*table.answer = (*fetched.handler).*table.answer;
            fetched.keep(file, table.key);
        }
        handler->minOutputPower = fetched.handler->minOutputPower;
        fetched.keep(file, minPowerKey);
        file.node.capabilityHandler = std::move(handler);
    }
    return file;
}
