#include "TextColumns.h"

#include <gtest/gtest.h>

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

} // namespace
