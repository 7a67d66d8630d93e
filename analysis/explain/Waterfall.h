#pragma once

#include "Explanation.h"

#include <cstdint>
#include <optional>
#include <string>

/// Adds up the steps of an explanation, in the library's own arithmetic: signed 32 bits that wrap.
/// Keeps what each bound would lead to alone, and compares the sum with what the library reported
/// on the way.
class Waterfall {
public:
    explicit Waterfall(Explanation& explanation)
        : m_explanation(explanation) {}

    /// The power to start from, which is also the first bound.
    /// @param figure that it rises with, see Explanation::Bound.
    Explanation::Step& start(Rule rule, const std::string& words, std::int32_t power,
                             const std::string& figure = std::string());

    /// Calls what start() began otherwise: the rule that made the most of it.
    void nameFirstBound(Rule rule, const std::string& words);

    /// @param cutback how much of the amount is a cutback that is taken off; negative: put back.
    Explanation::Step& change(Rule rule, const std::string& words, std::int64_t amount,
                              std::int64_t cutback = 0);

    Explanation::Step& bound(const Explanation::Bound& bound);

    /// Compares the sum so far with what the library reported, if it did.
    void expect(const std::string& what, const std::optional<std::int32_t>& reported);

    /// Compares any figure that should be the same.
    void expectFigure(const std::string& what, std::int32_t figure,
                      const std::optional<std::int32_t>& reported);

    /// A bound at this place is not told, so none is the next one.
    /// @param mayBind whether it may be what the power is at so far.
    void leaveOpen(bool mayBind);

    /// The cutback that is taken off somewhere.
    /// @param isWhole whether the bounds say everything that it takes.
    void setCutback(Rule rule, bool isWhole);

    /// Names the binding bound, what holds next and a cutback that binds, and compares with the
    /// library's answer.
    void finish(const std::optional<std::int32_t>& answer);

    std::int32_t running() const { return m_running; }

    /// The 32 bits of a sum.
    static std::int32_t wrapped(std::int64_t sum) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(sum));
    }

private:
    Explanation::Step& add(Explanation::Step step);
    void findNext();
    bool isSplitBy(const Explanation::Bound& bound, const std::string& figure) const;
    void consider(Explanation::Bound bound, const std::string& figure);
    void findWithoutCutback();

    Explanation& m_explanation;
    std::int32_t m_running = 0;
    std::optional<Rule> m_cutback;
    bool m_isCutbackWhole = true;
    std::size_t m_holder = 0;       ///< the bound whose power is running
    std::size_t m_unsureBounds = 0; ///< that a bound which is not told may be below
};
