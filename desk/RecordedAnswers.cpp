#include "RecordedAnswers.h"

#include <nlohmann/json.hpp>

std::optional<std::string> RecordedAnswers::difference(const Request& request, std::size_t index,
                                                       const std::string& line) {
    using Line = nlohmann::ordered_json;
    if (request.expect.empty()) {
        return std::nullopt;
    }
    const Line expected = Line::parse(request.expect);
    const Line answered = Line::parse(line);
    Line recorded;
    Line replayed;
    for (const auto& [key, value] : expected.items()) {
        if (answered.at(key) != value) {
            recorded[key] = value;
            replayed[key] = answered.at(key);
        }
    }
    if (recorded.empty()) {
        return std::nullopt;
    }
    Line difference;
    difference["request"] = index;
    difference["call"] = answered.at("call");
    difference["recorded"] = recorded;
    difference["replayed"] = replayed;
    return difference.dump();
}

std::vector<std::string> RecordedAnswers::differences(const RadioFile& file,
                                                      const std::vector<std::string>& lines) {
    std::vector<std::string> found;
    for (std::size_t index = 0; index < file.requests.size(); ++index) {
        if (index + 1 == lines.size()) {
            found.emplace_back("the replay ended before request " + std::to_string(index));
            break;
        }
        if (const auto differs = difference(file.requests[index], index, lines[index + 1])) {
            found.push_back(*differs);
        }
    }
    return found;
}
