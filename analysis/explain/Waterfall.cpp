#include "Waterfall.h"

#include "Decibels.h"

#include <algorithm>
#include <utility>

using Step = Explanation::Step;

Step& Waterfall::add(Step step) {
    step.running = m_running;
    m_explanation.steps.push_back(std::move(step));
    return m_explanation.steps.back();
}

Step& Waterfall::start(Rule rule, const std::string& words, std::int32_t power) {
    m_running = power;
    m_explanation.bounds.push_back({rule, words, power, {}});
    return add({rule, Step::Kind::Start, words});
}

void Waterfall::nameFirstBound(Rule rule, const std::string& words) {
    m_explanation.bounds.front().rule = rule;
    m_explanation.bounds.front().words = words;
}

Step& Waterfall::change(Rule rule, const std::string& words, std::int64_t amount) {
    for (Explanation::Bound& bound : m_explanation.bounds) {
        const std::int64_t moved = bound.value + amount;
        bound.value = wrapped(moved);
        m_wraps |= moved != bound.value;
    }
    const std::int64_t sum = m_running + amount;
    m_running = wrapped(sum);
    Step& step = add({rule, Step::Kind::Change, words, amount});
    step.wraps = sum != m_running;
    m_wraps |= step.wraps;
    return step;
}

Step& Waterfall::bound(Rule rule, const std::string& words, std::int32_t power,
                       const std::string& pointer) {
    const std::int64_t before = m_running;
    m_explanation.bounds.push_back({rule, words, power, pointer});
    if (power < m_running) {
        m_running = power;
        m_holder = m_explanation.bounds.size() - 1;
    }
    Step& step = add({rule, Step::Kind::Bound, words, m_running - before});
    step.bound = power;
    step.pointer = pointer;
    return step;
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
        findRunnerUp();
    }
}

void Waterfall::leaveOpen(bool mayBind) {
    m_explanation.hasOpenBound = true;
    if (mayBind) {
        m_unsureBounds = m_explanation.bounds.size();
    }
}

void Waterfall::findRunnerUp() {
    const std::vector<Explanation::Bound>& bounds = m_explanation.bounds;
    for (std::size_t index = 0; index < bounds.size(); ++index) {
        const std::optional<std::size_t>& best = m_explanation.runnerUpIndex;
        if (index != m_holder && (!best || bounds[index].value < bounds[*best].value)) {
            m_explanation.runnerUpIndex = index;
        }
    }
    // After a wrap the order of the bounds says nothing any more.
    if (m_wraps) {
        m_explanation.runnerUpIndex.reset();
    }
    if (m_explanation.runnerUpIndex) {
        m_explanation.headroom =
            std::int64_t{bounds[*m_explanation.runnerUpIndex].value} - bounds[m_holder].value;
    }
}
