#include "OneLine.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(OneLine, OrdinaryTextStaysAsItIs) {
    EXPECT_EQ(oneLine("radios/Göteborg 1.json"), "radios/Göteborg 1.json");
    EXPECT_EQ(oneLine("\xF0\x9F\x93\xA1"), "\xF0\x9F\x93\xA1");
}

TEST(OneLine, LineEndsAndControlCharactersAreShown) {
    EXPECT_EQ(oneLine("a\nb\r\tc"), "a\\nb\\r\\tc");
    EXPECT_EQ(oneLine("\x1b[31mred\x7f"), "\\x1b[31mred\\x7f");
    EXPECT_EQ(oneLine(std::string("a\0b", 3)), "a\\x00b");
}

TEST(OneLine, LineEndsAndDirectionsOfUnicodeAreShown) {
    EXPECT_EQ(oneLine("a\u0085b"), "a\\u0085b");
    EXPECT_EQ(oneLine("a\u2028b\u2029c"), "a\\u2028b\\u2029c");
    EXPECT_EQ(oneLine("a\u202Eb\u2066c"), "a\\u202eb\\u2066c");
    EXPECT_EQ(oneLine("a\u200Eb\u200Fc\u061Cd"), "a\\u200eb\\u200fc\\u061cd");
    EXPECT_EQ(oneLine("\u200D\u2029\u202F\u2065"), "\u200D\\u2029\u202F\u2065"); // beside them
}

TEST(OneLine, BytesThatAreNoUtf8AreShown) {
    EXPECT_EQ(oneLine("caf\xE9!"), "caf\\xe9!");
    EXPECT_EQ(oneLine("\xC0\x8A"), "\\xc0\\x8a");          // a line feed in a form too long
    EXPECT_EQ(oneLine("\xED\xA0\x80"), "\\xed\\xa0\\x80"); // half of a pair
    EXPECT_EQ(oneLine("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80"); // behind the last character
    EXPECT_EQ(oneLine("a\xE2\x80"), "a\\xe2\\x80");                 // cut off
}

TEST(OneLine, QuotationMarksGoAround) {
    EXPECT_EQ(inQuotes("a\nb"), "\"a\\nb\"");
}

} // namespace
