#include "Explanation.h"

Rule Explanation::decisiveRule() const {
    if (const Bound* const bound = binding()) {
        return bound->rule;
    }
    return refusal.value_or(Rule::Unexplained);
}
