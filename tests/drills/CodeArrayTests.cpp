#include "EveryCase.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// Every array of one, two and three codes that a frame format could have, under the selections that
// tell its codes apart.

namespace {

using Codes = std::vector<std::int32_t>;

constexpr std::int32_t undefined = reference::undefinedCode;

/// All codes, the undefined one, and numbers below, between and above that are none.
const Codes& everyCode() {
    static const Codes all = [] {
        Codes codes = reference::listedCodes();
        codes.insert(codes.end(), {undefined, 13, 164});
        return codes;
    }();
    return all;
}

/// The undefined code, a number that is no code, and one code of each modulation.
Codes everySelectedCode() {
    Codes selected = {undefined, 13};
    std::vector<std::int32_t> seen;
    for (const std::int32_t code : reference::listedCodes()) {
        const std::int32_t modulation = reference::modulationOfCode(code);
        if (std::find(seen.begin(), seen.end(), modulation) == seen.end()) {
            seen.push_back(modulation);
            selected.push_back(code);
        }
    }
    return selected;
}

std::string textOf(const Codes& codes) {
    std::string text;
    for (const std::int32_t code : codes) {
        text += ' ' + std::to_string(code);
    }
    return text;
}

class EveryCodeArray : public EveryCase {
protected:
    /// The radio limits the modulations in their midst where there is a booster, and else not at
    /// all.
    void enterScene(bool hasBooster) {
        enter(hasBooster, true, hasBooster ? Limit::ByProfile : Limit::None);
        setUsual(Call::MaxModulationUnlimited, {reference::undefinedModulation});
    }

    template <class Action>
    void forEachScene(Action action) {
        for (const bool hasBooster : {false, true}) {
            enterScene(hasBooster);
            action();
            if (HasFatalFailure()) {
                return;
            }
        }
    }

    void compare(const Codes& codes, std::int32_t id, std::int32_t minCode, std::int32_t maxCode) {
        ++m_arrays;
        setUsual(id < 1 ? Call::Codes : Call::CodesById, codes);
        m_sides->restart();
        const auto when = [&] {
            return "for the codes" + textOf(codes) + " with " + std::to_string(minCode) + " to " +
                   std::to_string(maxCode) + " selected";
        };
        ASSERT_TRUE(isEqualOnBothSides(arrayOperation("the array", id, minCode, maxCode), when));
    }

    void setUsual(Call call, const Codes& values) {
        ScriptedAnswer answer;
        answer.values = values;
        m_sides->library.script.setUsual(call, answer);
        m_sides->reference.script.setUsual(call, answer);
    }

    std::size_t m_arrays = 0;
};

} // namespace

TEST_P(EveryCodeArray, ofOneCodeIsAsRestatedUnderEverySelection) {
    const Codes selected = everySelectedCode();
    forEachScene([&] {
        for (const std::int32_t id : {0, frameFormatId}) {
            for (const std::int32_t minCode : selected) {
                for (const std::int32_t maxCode : selected) {
                    for (const std::int32_t code : everyCode()) {
                        if (isTurn()) {
                            ASSERT_NO_FATAL_FAILURE(compare({code}, id, minCode, maxCode));
                        }
                    }
                }
            }
        }
    });
    countCases(m_arrays, "arrays of codes");
}

TEST_P(EveryCodeArray, ofTwoCodesIsAsRestatedUnderEverySelectionOfThem) {
    forEachScene([&] {
        for (const std::int32_t id : {0, frameFormatId}) {
            for (const std::int32_t first : everyCode()) {
                for (const std::int32_t second : everyCode()) {
                    for (const std::int32_t minCode : {undefined, first, second}) {
                        for (const std::int32_t maxCode : {undefined, first, second}) {
                            if (isTurn()) {
                                ASSERT_NO_FATAL_FAILURE(
                                    compare({first, second}, id, minCode, maxCode));
                            }
                        }
                    }
                }
            }
        }
    });
    countCases(m_arrays, "arrays of codes");
}

TEST_P(EveryCodeArray, ofThreeCodesIsAsRestatedUnderTheSelectionsOfItsEnds) {
    // There are millions of them: of all but the long run so many times fewer.
    constexpr std::size_t share = 17;
    enterScene(GetParam().channel == 2);
    for (const std::int32_t first : everyCode()) {
        for (const std::int32_t second : everyCode()) {
            for (const std::int32_t third : everyCode()) {
                const auto [low, high] = std::minmax({first, second, third});
                for (const auto& [minCode, maxCode] :
                     {std::pair(undefined, undefined), std::pair(low, high), std::pair(low, low)}) {
                    if (isTurn(share)) {
                        ASSERT_NO_FATAL_FAILURE(
                            compare({first, second, third}, 0, minCode, maxCode));
                    }
                }
            }
        }
    }
    countCases(m_arrays, "arrays of codes");
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, EveryCodeArray, ::testing::ValuesIn(placesOf(families)),
                         [](const auto& place) { return nameOf(place.param); });
