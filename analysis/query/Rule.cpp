#include "Rule.h"

#include <cstddef>

const char* codeOf(Rule rule) {
#define QOR_CODE(name, code, words) code,
    static constexpr const char* codes[] = {QOR_RULES(QOR_CODE)};
#undef QOR_CODE
    return codes[static_cast<std::size_t>(rule)];
}

const char* wordsFor(Rule rule) {
#define QOR_WORDS(name, code, words) words,
    static constexpr const char* texts[] = {QOR_RULES(QOR_WORDS)};
#undef QOR_WORDS
    return texts[static_cast<std::size_t>(rule)];
}

std::string wordsFor(const std::string& code) {
    for (const Rule rule : allRules()) {
        if (codeOf(rule) == code) {
            return wordsFor(rule);
        }
    }
    return code;
}

const std::vector<Rule>& allRules() {
#define QOR_VALUE(name, code, words) Rule::name,
    static const std::vector<Rule> rules{QOR_RULES(QOR_VALUE)};
#undef QOR_VALUE
    return rules;
}
