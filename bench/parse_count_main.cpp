#include <nlohmann/json.hpp>

#include <cstddef>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

// Reads a list of radio files, one on a line, and does nothing with them: what the tool's reading
// is measured against.

namespace {

/// As a program would that knows nothing of radio files: the values in the document.
std::size_t parse(const std::string& text) {
    return nlohmann::json::parse(text).size();
}

/// The least that any reader has to do: finding where each token begins and ends.
std::size_t countTokens(std::string_view text) {
    constexpr std::string_view ends = " ,:]}";
    std::size_t tokens = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char byte = text[at];
        if (byte == ' ') {
            continue;
        }
        ++tokens;
        if (byte == '"') {
            for (++at; at < text.size() && text[at] != '"'; ++at) {
                at += text[at] == '\\' ? 1U : 0U;
            }
        } else if (std::string_view("{}[],:").find(byte) == std::string_view::npos) {
            while (at + 1 < text.size() && ends.find(text[at + 1]) == std::string_view::npos) {
                ++at;
            }
        }
    }
    return tokens;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: qor-bench-parse parse|tokens LIST\n";
        return 2;
    }
    const bool onlyTokens = std::string_view(argv[1]) == "tokens";
    std::ifstream list(argv[2]);
    std::size_t sum = 0;
    for (std::string line; std::getline(list, line);) {
        sum += onlyTokens ? countTokens(line) : parse(line);
    }
    std::cout << sum << '\n';
    return sum > 0 ? 0 : 1;
}
