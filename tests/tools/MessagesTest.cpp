#include "Messages.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace {

struct FittedCase {
    const char* message;
    std::size_t width;
    const char* fitted;
};

TEST(FittedMessage, IsBrokenAtBlanksAndKeepsWhatIsCopied) {
    const FittedCase cases[] = {
        {"qor-power: one two three", 24, "qor-power: one two three"},
        {"qor-power: one two three", 23, "qor-power: one two\n    three"},
        {"qor-power: one two three", 0, "qor-power: one two three"},
        // counted in characters, not in bytes
        {"qor-power: \u00e4\u00e4\u00e4 b", 16, "qor-power: \u00e4\u00e4\u00e4 b"},
        // words, paths and pointers that are wider
        {"qor-power: my nodes/the first.json: cannot be read", 20,
         "qor-power: my nodes/the first.json:\n    cannot be read"},
        {"qor-power: a b.json: /variables/my key: expected an integer", 22,
         "qor-power: a b.json: /variables/my key:\n    expected an\n    integer"},
        {"qor-power: a.json: /channel", 20, "qor-power: a.json: /channel"},
        {"qor-power: unknown option \"--a b c d\"; try it", 20,
         "qor-power: unknown\n    option\n    \"--a b c d\"; try\n    it"},
        // one quotation mark alone protects nothing
        {"qor-power: 19\" rack and more", 20, "qor-power: 19\" rack\n    and more"},
        // columns stay columns as long as they fit
        {"qor-power:   a   b   c  d", 20, "qor-power:   a   b\n    c  d"},
    };
    for (const FittedCase& row : cases) {
        EXPECT_EQ(fittedMessage(row.message, row.width), row.fitted) << row.message;
    }
}

} // namespace
