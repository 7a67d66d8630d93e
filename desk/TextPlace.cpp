#include "TextPlace.h"

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

} // namespace

TextPlace textPlaceOf(std::string_view text, std::size_t index) {
    const std::size_t start =
        text.substr(0, byteOrderMark.size()) == byteOrderMark ? byteOrderMark.size() : 0;
    TextPlace place;
    for (const char byte : text.substr(start, index > start ? index - start : 0)) {
        if (byte == '\n') {
            ++place.line;
            place.column = 1;
        } else if ((static_cast<unsigned char>(byte) & 0xC0U) != 0x80U) {
            ++place.column;
        }
    }
    return place;
}

std::string placeText(const TextPlace& place) {
    return std::to_string(place.line) + ":" + std::to_string(place.column);
}
