#include "Csv.h"

#include <cstddef>

namespace {

std::string quotedWhereNeeded(const std::string& field) {
    if (field.find_first_of(",\"\r\n") == std::string::npos) {
        return field;
    }
    std::string quoted = "\"";
    for (const char letter : field) {
        quoted.append(letter == '"' ? 2 : 1, letter);
    }
    return quoted + '"';
}

} // namespace

std::string csvLine(const std::vector<std::string>& fields) {
    std::string line;
    for (std::size_t index = 0; index < fields.size(); ++index) {
        line += index == 0 ? "" : ",";
        line += quotedWhereNeeded(fields[index]);
    }
    return line + '\n';
}
