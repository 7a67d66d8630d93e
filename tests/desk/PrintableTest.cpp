#include "Printable.h"

#include <gtest/gtest.h>

namespace {

TEST(PrintableTest, leavesOrdinaryTextAlone) {
    EXPECT_EQ(printable("4QAM ~/ \xC3\xA9"), "4QAM ~/ \xC3\xA9");
}

TEST(PrintableTest, writesControlCharactersAsEscapes) {
    EXPECT_EQ(printable(std::string_view("a\nb\0c\x1B\x7F", 7)), "a\\u000ab\\u0000c\\u001b\\u007f");
    EXPECT_EQ(printable("\xC2\x80\xC2\x9F\xC2\xA0"), "\\u0080\\u009f\xC2\xA0");
}

TEST(PrintableTest, writesMarksOfDirectionAsEscapes) {
    EXPECT_EQ(printable("a\u200Eb\u200Fc\u061Cd\u202Ee\u2068"),
              "a\\u200eb\\u200fc\\u061cd\\u202ee\\u2068");
}

TEST(PrintableTest, writesInJsonOnlyWhatSteers) {
    EXPECT_EQ(printableJson("{\"a\":\"\u00E9\\u001b\"}"), "{\"a\":\"\u00E9\\u001b\"}");
    EXPECT_EQ(printableJson("[\"\x7F\u0085\u2028\u200F\"]"), "[\"\\u007f\\u0085\\u2028\\u200f\"]");
}

TEST(PrintableTest, shortensAboveEightyBytes) {
    EXPECT_EQ(printable(std::string(80, 'x')), std::string(80, 'x'));
    EXPECT_EQ(printable(std::string(81, 'x')), std::string(80, 'x') + "...");
}

TEST(PrintableTest, cutsNoCharacterInTwo) {
    const std::string text = std::string(79, 'x') + "\xC3\xA9" + "yz";

    EXPECT_EQ(printable(text), std::string(79, 'x') + "...");
}

} // namespace
