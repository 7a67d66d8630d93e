#include "Suggestion.h"

#include <gtest/gtest.h>

namespace {

const std::vector<std::string> known{"modulation",     "rsec", "cutback",
                                     "minOutputPower", "4QAM", "16QAM"};

TEST(SuggestionTest, findsAWordWithALetterDroppedInsertedReplacedOrSwapped) {
    EXPECT_EQ(Suggestion::nearest("modultion", known), "modulation");
    EXPECT_EQ(Suggestion::nearest("modulations", known), "modulation");
    EXPECT_EQ(Suggestion::nearest("cutbeck", known), "cutback");
    EXPECT_EQ(Suggestion::nearest("recs", {"rsec"}), std::nullopt); // two letters away of four
    EXPECT_EQ(Suggestion::nearest("resc", known), "rsec");
}

TEST(SuggestionTest, findsAWordInOtherCase) {
    EXPECT_EQ(Suggestion::nearest("MINOUTPUTPOWER", known), "minOutputPower");
    EXPECT_EQ(Suggestion::nearest("16qam", known), "16QAM");
}

TEST(SuggestionTest, findsAWordByItsBeginning) {
    EXPECT_EQ(Suggestion::nearest("min", known), "minOutputPower");
    EXPECT_EQ(Suggestion::nearest("mi", known), std::nullopt);
}

TEST(SuggestionTest, prefersTheNearerAndThenTheFirst) {
    EXPECT_EQ(Suggestion::nearest("5QAM", {"16QAM", "4QAM"}), "4QAM");
    EXPECT_EQ(Suggestion::nearest("5B", {"4B", "6B"}), "4B");
}

TEST(SuggestionTest, goesAThirdOfTheLongerWordAndNoFurther) {
    EXPECT_EQ(Suggestion::nearest("abcxyz", {"abcdyz"}), "abcdyz");     // 1 of 6
    EXPECT_EQ(Suggestion::nearest("abxxyz", {"abcdyz"}), "abcdyz");     // 2 of 6
    EXPECT_EQ(Suggestion::nearest("axxxyz", {"abcdyz"}), std::nullopt); // 3 of 6
}

TEST(SuggestionTest, findsNoWordWithoutALetterInCommon) {
    EXPECT_EQ(Suggestion::nearest("X", {"2", "4L"}), std::nullopt);
    EXPECT_EQ(Suggestion::nearest("4M", {"2", "4L"}), "4L");
}

TEST(SuggestionTest, findsNothingForAnEmptyOrAnEndlessWord) {
    EXPECT_EQ(Suggestion::nearest("", known), std::nullopt);
    EXPECT_EQ(Suggestion::nearest(std::string(65, 'a'), {std::string(65, 'a')}), std::nullopt);
    EXPECT_EQ(Suggestion::nearest(std::string(64, 'a'), {std::string(64, 'a')}),
              std::string(64, 'a'));
}

TEST(SuggestionTest, asksWhetherTheNearestWordWasMeant) {
    EXPECT_EQ(Suggestion::remedy("rsek", known), "did you mean \"rsec\"?");
}

TEST(SuggestionTest, listsWhatIsKnownWhenNothingIsNear) {
    EXPECT_EQ(Suggestion::remedy("zzz", {"min", "max"}), "known: \"min\", \"max\"");
}

TEST(SuggestionTest, countsTheLettersBetweenTwoWords) {
    EXPECT_EQ(Suggestion::lettersApart("QZT 846 001", "qzt 846 001"), 0U);
    EXPECT_EQ(Suggestion::lettersApart("QZT 846 01", "QZT 846 001"), 1U);
    EXPECT_EQ(Suggestion::lettersApart("QZT 864 001", "QZT 846 001"), 1U);
    EXPECT_EQ(Suggestion::lettersApart("abc", ""), 3U);
}

} // namespace
