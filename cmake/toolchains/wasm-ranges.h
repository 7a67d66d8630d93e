#pragma once

// The standard library of Debian's emscripten (libc++ 14) lacks the algorithms on whole ranges.
// Those that are used here, as the standard has them; a later one brings its own.

#include <version>

#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION < 15000 && __cplusplus > 201703L

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace std::ranges {

template <class Range, class Predicate, class Projection = std::identity>
constexpr auto find_if(Range&& range, Predicate predicate, Projection projection = {}) {
    return std::find_if(std::begin(range), std::end(range), [&](auto&& element) -> bool {
        return std::invoke(predicate,
                           std::invoke(projection, std::forward<decltype(element)>(element)));
    });
}

template <class Range, class Predicate>
constexpr auto find_if_not(Range&& range, Predicate predicate) {
    return std::find_if_not(std::begin(range), std::end(range), predicate);
}

template <class Range, class Value, class Projection = std::identity>
constexpr auto find(Range&& range, const Value& value, Projection projection = {}) {
    return ranges::find_if(
        range, [&value](const auto& element) { return element == value; }, projection);
}

template <class Range, class Predicate>
constexpr bool any_of(Range&& range, Predicate predicate) {
    return std::any_of(std::begin(range), std::end(range), predicate);
}

template <class Range, class Predicate>
constexpr bool all_of(Range&& range, Predicate predicate) {
    return std::all_of(std::begin(range), std::end(range), predicate);
}

template <class Range, class Predicate>
constexpr bool none_of(Range&& range, Predicate predicate) {
    return std::none_of(std::begin(range), std::end(range), predicate);
}

template <class Range, class Predicate>
constexpr auto count_if(Range&& range, Predicate predicate) {
    return std::count_if(std::begin(range), std::end(range), predicate);
}

template <class Left, class Right>
constexpr bool equal(Left&& left, Right&& right) {
    return std::equal(std::begin(left), std::end(left), std::begin(right), std::end(right));
}

template <class Left, class Right, class Predicate>
constexpr bool equal(Left&& left, Right&& right, Predicate predicate) {
    return std::equal(std::begin(left), std::end(left), std::begin(right), std::end(right),
                      predicate);
}

template <class Compare, class Projection>
auto projected(Compare compare, Projection projection) {
    return [compare, projection](auto&& left, auto&& right) -> bool {
        return std::invoke(compare, std::invoke(projection, left), std::invoke(projection, right));
    };
}

template <class Range, class Compare = std::less<>, class Projection = std::identity>
constexpr auto min_element(Range&& range, Compare compare = {}, Projection projection = {}) {
    return std::min_element(std::begin(range), std::end(range), projected(compare, projection));
}

template <class Range, class Compare = std::less<>, class Projection = std::identity>
constexpr auto max_element(Range&& range, Compare compare = {}, Projection projection = {}) {
    return std::max_element(std::begin(range), std::end(range), projected(compare, projection));
}

template <class Iterator>
struct MinMax {
    Iterator min;
    Iterator max;
};

template <class Range>
constexpr auto minmax_element(Range&& range) {
    const auto found = std::minmax_element(std::begin(range), std::end(range));
    return MinMax<std::decay_t<decltype(found.first)>>{found.first, found.second};
}

template <class Range>
constexpr void reverse(Range&& range) {
    std::reverse(std::begin(range), std::end(range));
}

template <class Range, class Compare = std::less<>, class Projection = std::identity>
constexpr void sort(Range&& range, Compare compare = {}, Projection projection = {}) {
    std::sort(std::begin(range), std::end(range), projected(compare, projection));
}

template <class Range, class Compare = std::less<>, class Projection = std::identity>
void stable_sort(Range&& range, Compare compare = {}, Projection projection = {}) {
    std::stable_sort(std::begin(range), std::end(range), projected(compare, projection));
}

template <class Range, class Value>
constexpr auto lower_bound(Range&& range, const Value& value) {
    return std::lower_bound(std::begin(range), std::end(range), value);
}

template <class Range, class Value, class Compare = std::less<>, class Projection = std::identity>
constexpr auto upper_bound(Range&& range, const Value& value, Compare compare = {},
                           Projection projection = {}) {
    return std::upper_bound(
        std::begin(range), std::end(range), value, [&](const auto& wanted, auto&& element) -> bool {
            return std::invoke(compare, wanted, std::invoke(projection, element));
        });
}

template <class Range, class Value>
constexpr void replace(Range&& range, const Value& before, const Value& after) {
    std::replace(std::begin(range), std::end(range), before, after);
}

template <class Range, class Output, class Operation>
constexpr auto transform(Range&& range, Output output, Operation operation) {
    return std::transform(std::begin(range), std::end(range), output, operation);
}

} // namespace std::ranges

#endif
