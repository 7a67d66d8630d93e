#include "TextColumns.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace {

TEST(Wrapped, BreaksBetweenWordsWhereTheWidthEnds) {
    EXPECT_EQ(wrapped("one two three", 7), "one two\nthree");
    EXPECT_EQ(wrapped("one two three", 6), "one\ntwo\nthree");
    EXPECT_EQ(wrapped("one two three", 13), "one two three");
    EXPECT_EQ(wrapped("one two three", 12), "one two\nthree");
}

TEST(Wrapped, KeepsAWordThatIsWiderWhole) {
    EXPECT_EQ(wrapped("a PRESENCE,GAIN,MAXINPUT b", 5), "a\nPRESENCE,GAIN,MAXINPUT\nb");
}

TEST(Wrapped, OfNothingIsNothing) {
    EXPECT_EQ(wrapped("", 5), "");
}

/// Where a second column stands behind a cell, in columns of the terminal.
std::size_t columnBehind(const std::string& cell) {
    const std::string text = alignedColumns({Align::Left, Align::Left}, {{cell, "b"}, {"a", "c"}});
    return text.find('c') - text.find("\na") - 1;
}

TEST(AlignedColumns, AreAsWideAsTheCellsOfUpTo200Characters) {
    EXPECT_EQ(columnBehind(std::string(200, 'x')), 202U);
    EXPECT_EQ(columnBehind(std::string(201, 'x')), 3U);
}

TEST(AlignedColumns, CountCharactersAndNotBytes) {
    EXPECT_EQ(columnBehind("\u00e4\u00f6\u20ac"), 5U);
}

TEST(Fitted, CountsCharactersAndNotTheSequencesThatStyleThem) {
    for (const std::string text :
         {"\x1b[1mone\x1b[0m two\n", "\u00e4\u00e4\u00e4 \u00f6\u00f6\u00f6\n"}) {
        EXPECT_EQ(fitted(text, 7), text);
    }
    EXPECT_EQ(fitted("one two three\n", 12), "one two\n    three\n");
}

} // namespace
