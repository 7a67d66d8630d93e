#include "Waterfall.h"

#include "Decibels.h"

#include <algorithm>
#include <limits>
#include <utility>

using Step = Explanation::Step;

Step& Waterfall::add(Step step) {
    step.running = m_running;
    m_explanation.steps.push_back(std::move(step));
    return m_explanation.steps.back();
}

Step& Waterfall::start(Rule rule, const std::string& words, std::int32_t power,
                       const std::string& figure) {
    m_running = power;
    m_explanation.bounds.push_back({rule, words, power, {}, figure});
    return add({rule, Step::Kind::Start, words});
}

void Waterfall::nameFirstBound(Rule rule, const std::string& words) {
    m_explanation.bounds.front().rule = rule;
    m_explanation.bounds.front().words = words;
}

Step& Waterfall::change(Rule rule, const std::string& words, std::int64_t amount,
                        std::int64_t cutback) {
    for (Explanation::Bound& bound : m_explanation.bounds) {
        const std::int64_t moved = bound.value + amount;
        bound.value = wrapped(moved);
        bound.cutback += cutback;
        m_explanation.wraps |= moved != bound.value;
    }
    const std::int64_t sum = m_running + amount;
    m_running = wrapped(sum);
    Step& step = add({rule, Step::Kind::Change, words, amount});
    step.wraps = sum != m_running;
    return step;
}

Step& Waterfall::bound(const Explanation::Bound& bound) {
    const std::int64_t before = m_running;
    m_explanation.bounds.push_back(bound);
    if (bound.value < m_running) {
        m_running = bound.value;
        m_holder = m_explanation.bounds.size() - 1;
    }
    Step& step = add({bound.rule, Step::Kind::Bound, bound.words, m_running - before});
    step.bound = bound.value;
    step.pointer = bound.pointer;
    return step;
}

void Waterfall::setCutback(Rule rule, bool isWhole) {
    m_cutback = rule;
    m_isCutbackWhole = isWhole;
}

void Waterfall::expect(const std::string& what, const std::optional<std::int32_t>& reported) {
    expectFigure(what, m_running, reported);
}

void Waterfall::expectFigure(const std::string& what, std::int32_t figure,
                             const std::optional<std::int32_t>& reported) {
    if (reported && *reported != figure && m_explanation.mismatch.empty()) {
        m_explanation.mismatch = what + " is " + Decibels::format(figure) + " dBm by the steps, " +
                                 Decibels::format(*reported) + " dBm by the library";
    }
}

void Waterfall::finish(const std::optional<std::int32_t>& answer) {
    expect("the answer", answer);
    if (m_holder >= m_unsureBounds) {
        m_explanation.bindingIndex = m_holder;
    }
    if (!m_explanation.hasOpenBound) {
        findNext();
    }
    findWithoutCutback();
}

void Waterfall::leaveOpen(bool mayBind) {
    m_explanation.hasOpenBound = true;
    if (mayBind) {
        m_unsureBounds = m_explanation.bounds.size();
    }
}

void Waterfall::findNext() {
    // After a wrap the order of the bounds says nothing any more.
    if (m_explanation.wraps) {
        return;
    }
    const std::vector<Explanation::Bound>& bounds = m_explanation.bounds;
    const std::string figure = m_explanation.bindingFigure();
    for (std::size_t index = 0; index < bounds.size(); ++index) {
        if (isSplitBy(bounds[index], figure)) {
            // Of the selected modulation's bounds some rise and others do not.
            const Explanation& selected = m_explanation.ofSelected.front();
            for (std::size_t inner = 0; inner < selected.bounds.size(); ++inner) {
                Explanation::Bound bound = selected.bounds[inner];
                bound.words += ", for the selected modulation";
                if (index != m_holder || inner != selected.bindingIndex) {
                    consider(std::move(bound), figure);
                }
            }
        } else if (index != m_holder) {
            consider(bounds[index], figure);
        }
    }
    if (m_explanation.next) {
        m_explanation.headroom = std::int64_t{m_explanation.next->value} - bounds[m_holder].value;
    }
}

/// Whether a bound is the power of the selected modulation and that one has bounds with a figure.
bool Waterfall::isSplitBy(const Explanation::Bound& bound, const std::string& figure) const {
    return bound.rule == Rule::SelectedModulation && !figure.empty() &&
           !m_explanation.ofSelected.empty() &&
           std::ranges::find(m_explanation.ofSelected.front().bounds, figure,
                             &Explanation::Bound::figure) !=
               m_explanation.ofSelected.front().bounds.end();
}

/// Takes a bound for the next one if it is the lowest of those that do not rise with a figure.
void Waterfall::consider(Explanation::Bound bound, const std::string& figure) {
    std::optional<Explanation::Bound>& next = m_explanation.next;
    if (!figure.empty() && bound.figure == figure) {
        m_explanation.sameFigure.push_back(std::move(bound));
    } else if (!next || bound.value < next->value) {
        next = std::move(bound);
    }
}

void Waterfall::findWithoutCutback() {
    if (!m_cutback || m_explanation.wraps || m_explanation.hasOpenBound) {
        return;
    }
    std::int64_t without = std::numeric_limits<std::int64_t>::max();
    for (const Explanation::Bound& bound : m_explanation.bounds) {
        without = std::min(without, bound.value + bound.cutback);
    }
    if (without > m_running && without == wrapped(without)) {
        m_explanation.cutback = m_cutback;
        if (m_isCutbackWhole) {
            m_explanation.withoutCutback = wrapped(without);
        }
    }
}
