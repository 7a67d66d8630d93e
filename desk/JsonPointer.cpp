#include "JsonPointer.h"

#include "Printable.h"

std::string pointerText(const std::vector<std::string>& path) {
    if (path.empty()) {
        return "(document)";
    }
    std::string text;
    for (const std::string& key : path) {
        text += '/';
        for (const char letter : printable(key)) {
            if (letter == '~') {
                text += "~0";
            } else if (letter == '/') {
                text += "~1";
            } else {
                text += letter;
            }
        }
    }
    return text;
}
