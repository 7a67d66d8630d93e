#include "Messages.h"

#include "Terminal.h"
#include "TextColumns.h"

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace {

constexpr std::string_view toolName = "qor-power: ";
constexpr std::string_view placeEnd = ": ";

/// Where the file and the JSON Pointer end that a message begins with.
std::size_t endOfPlace(std::string_view message) {
    const std::size_t begin = message.starts_with(toolName) ? toolName.size() : 0;
    std::size_t end = message.find(placeEnd, begin);
    if (end != std::string_view::npos && message.substr(end + placeEnd.size()).starts_with('/')) {
        end = std::min(message.find(placeEnd, end + 1), message.size());
    }
    return end == std::string_view::npos ? begin : end;
}

/// The next blank at which a message may be broken, or its end.
std::size_t nextBreak(std::string_view message, std::size_t from) {
    for (std::size_t at = std::max(from, endOfPlace(message)); at < message.size(); ++at) {
        if (message[at] == ' ') {
            return at;
        }
        if (message[at] == '"') {
            const std::size_t end = message.find('"', at + 1);
            at = end == std::string_view::npos ? at : end;
        }
    }
    return message.size();
}

} // namespace

std::string fittedMessage(std::string_view message, std::size_t width) {
    if (width == 0 || textWidth(message) <= width) {
        return std::string(message);
    }
    const std::string indent(4, ' ');
    std::string text;
    std::size_t column = 0;
    for (std::size_t at = 0; at < message.size();) {
        // A piece begins with the blanks in front of it.
        const std::size_t begin = std::min(message.find_first_not_of(' ', at), message.size());
        const std::size_t end = nextBreak(message, begin);
        const std::string_view piece = message.substr(begin, end - begin);
        if (column > 0 && column + (begin - at) + textWidth(piece) > width) {
            text += '\n' + indent;
            column = indent.size();
        } else {
            text.append(begin - at, ' ');
            column += begin - at;
        }
        text += piece;
        column += textWidth(piece);
        at = end;
    }
    return text;
}

void complain(std::string_view line) {
    const Terminal terminal(STDERR_FILENO);
    const std::string text = fittedMessage(std::string(toolName).append(line),
                                           terminal.isTerminal() ? terminal.width() : 0) +
                             '\n';
    // In one piece, so that the lines of tools that run side by side do not mix. Where standard
    // error is gone nobody can be told.
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}
