#include "Messages.h"

#include <cstdio>
#include <string>

void complain(std::string_view line) {
    std::string text = "qor-power: ";
    text += line;
    text += '\n';
    // In one piece, so that the lines of tools that run side by side do not mix. Where standard
    // error is gone nobody can be told.
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}
