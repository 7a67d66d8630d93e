#include "Suggestion.h"

#include "Printable.h"

#include <algorithm>
#include <cstddef>

namespace {

/// Longer words are no typing mistakes.
constexpr std::size_t maxWordLength = 64;

std::string lowerCase(std::string_view word) {
    std::string lower(word);
    for (char& letter : lower) {
        if (letter >= 'A' && letter <= 'Z') {
            letter = static_cast<char>(letter - 'A' + 'a');
        }
    }
    return lower;
}

/// How many letters must be inserted, dropped, replaced or swapped with their neighbour.
std::size_t distance(const std::string& left, const std::string& right) {
    std::vector<std::size_t> beforeLast(right.size() + 1);
    std::vector<std::size_t> last(right.size() + 1);
    std::vector<std::size_t> row(right.size() + 1);
    for (std::size_t column = 0; column < row.size(); ++column) {
        row[column] = column;
    }
    for (std::size_t line = 1; line <= left.size(); ++line) {
        std::swap(beforeLast, last);
        std::swap(last, row);
        row[0] = line;
        for (std::size_t column = 1; column < row.size(); ++column) {
            const bool isEqual = left[line - 1] == right[column - 1];
            row[column] = std::min(
                {last[column] + 1, row[column - 1] + 1, last[column - 1] + (isEqual ? 0U : 1U)});
            if (line > 1 && column > 1 && left[line - 1] == right[column - 2] &&
                left[line - 2] == right[column - 1]) {
                row[column] = std::min(row[column], beforeLast[column - 2] + 1);
            }
        }
    }
    return row.back();
}

} // namespace

std::size_t Suggestion::lettersApart(std::string_view left, std::string_view right) {
    return distance(lowerCase(left), lowerCase(right));
}

std::optional<std::string> Suggestion::nearest(std::string_view word,
                                               const std::vector<std::string>& known) {
    if (word.empty() || word.size() > maxWordLength) {
        return std::nullopt;
    }
    const std::string wanted = lowerCase(word);

    const std::string* best = nullptr;
    std::size_t bestDistance = 0;
    for (const std::string& candidate : known) {
        const std::string offered = lowerCase(candidate);
        const std::size_t letters = distance(wanted, offered);
        const std::size_t allowed =
            std::max<std::size_t>(1, std::max(wanted.size(), offered.size()) / 3);
        if (letters <= allowed && letters < std::max(wanted.size(), offered.size()) &&
            (best == nullptr || letters < bestDistance)) {
            best = &candidate;
            bestDistance = letters;
        }
    }
    if (best != nullptr) {
        return *best;
    }

    constexpr std::size_t shortestBeginning = 3;
    for (const std::string& candidate : known) {
        if (wanted.size() >= shortestBeginning && lowerCase(candidate).starts_with(wanted)) {
            return candidate;
        }
    }
    return std::nullopt;
}

std::string Suggestion::remedy(std::string_view word, const std::vector<std::string>& known) {
    if (const std::optional<std::string> near = nearest(word, known)) {
        return "did you mean \"" + printable(*near) + "\"?";
    }
    std::string text = "known: ";
    for (const std::string& candidate : known) {
        text += (&candidate == &known.front() ? "\"" : ", \"") + candidate + "\"";
    }
    return text;
}
