#include "TextWrap.h"

std::string wrapped(std::string_view paragraph, std::size_t width) {
    std::string text;
    std::size_t column = 0;
    while (!paragraph.empty()) {
        const std::string_view word = paragraph.substr(0, paragraph.find(' '));
        paragraph.remove_prefix(word.size());
        paragraph.remove_prefix(paragraph.empty() ? 0 : 1);
        const bool fits = column == 0 || column + 1 + word.size() <= width;
        if (!text.empty()) {
            text += fits ? ' ' : '\n';
        }
        column = fits && column > 0 ? column + 1 + word.size() : word.size();
        text += word;
    }
    return text;
}
