#include "Datum.h"

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

struct JsonMaker {
    Json operator()(std::monostate) const { return nullptr; }
    Json operator()(const Datum::List& list) const {
        Json array = Json::array();
        for (const Datum& value : list) {
            array.push_back(std::visit(*this, value.held()));
        }
        return array;
    }
    Json operator()(const Datum::Object& members) const {
        Json object = Json::object();
        for (const auto& [key, value] : members) {
            object[key] = std::visit(*this, value.held());
        }
        return object;
    }
    template <class Plain>
    Json operator()(const Plain& value) const {
        return value;
    }
};

std::string printed(const Datum& value, int indentation) {
    const Json document = std::visit(JsonMaker(), value.held());
    return document.dump(indentation, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace

std::string jsonDocument(const Datum& value) {
    return printed(value, 2);
}

std::string jsonLine(const Datum& value) {
    return printed(value, -1);
}
