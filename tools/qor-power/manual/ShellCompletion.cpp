#include "ShellCompletion.h"

std::string ShellCompletion::joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

std::string ShellCompletion::replaced(std::string_view text, char character,
                                      std::string_view with) {
    std::string result;
    for (const char letter : text) {
        if (letter == character) {
            result += with;
        } else {
            result += letter;
        }
    }
    return result;
}
