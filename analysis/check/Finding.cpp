#include "Finding.h"

#include <algorithm>

const char* textOf(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Hint:
        break;
    }
    return "hint";
}

FilePlace FilePlace::operator/(const std::string& key) const {
    FilePlace place = *this;
    place.path.push_back(key);
    return place;
}

FilePlace FilePlace::operator/(std::size_t index) const {
    return *this / std::to_string(index);
}

bool FilePlace::isWithin(const FilePlace& outer) const {
    return path.size() >= outer.path.size() &&
           std::equal(outer.path.begin(), outer.path.end(), path.begin());
}
