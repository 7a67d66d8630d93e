#include "JsonReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string placeIn(std::string_view text, const std::vector<std::string>& path) {
    return placeText(JsonReader::placesIn(text).find(path));
}

constexpr const char* placedDocument = R"({
  "a": [1, "two", {"deep": true}],
  "b" : {
    "c~/d": null, "e": [[], [7]]
  }
})";

TEST(DocumentPlacesTest, findsAMemberAtItsKeyAndAnElementAtItsValue) {
    EXPECT_EQ(placeIn(placedDocument, {"a"}), "2:3");
    EXPECT_EQ(placeIn(placedDocument, {"a", "0"}), "2:9");
    EXPECT_EQ(placeIn(placedDocument, {"a", "1"}), "2:12");
    EXPECT_EQ(placeIn(placedDocument, {"a", "2"}), "2:19");
    EXPECT_EQ(placeIn(placedDocument, {"a", "2", "deep"}), "2:20");
    EXPECT_EQ(placeIn(placedDocument, {"b"}), "3:3");
    EXPECT_EQ(placeIn(placedDocument, {"b", "c~/d"}), "4:5");
    EXPECT_EQ(placeIn(placedDocument, {"b", "e", "0"}), "4:25");
    EXPECT_EQ(placeIn(placedDocument, {"b", "e", "1", "0"}), "4:30");
}

TEST(DocumentPlacesTest, findsTheDocumentWhereItBegins) {
    EXPECT_EQ(placeIn("{}", {}), "1:1");
    EXPECT_EQ(placeIn("\n  // so\n  {}", {}), "3:3");
    EXPECT_EQ(placeIn("\xEF\xBB\xBF {}", {}), "1:2");
}

TEST(DocumentPlacesTest, findsWhatIsMissingWhereTheInnermostValueStands) {
    EXPECT_EQ(placeIn(placedDocument, {"b", "c~/d", "more"}), "4:5");
    EXPECT_EQ(placeIn(placedDocument, {"b", "missing"}), "3:3");
    EXPECT_EQ(placeIn(placedDocument, {"a", "3"}), "2:3");
    EXPECT_EQ(placeIn(placedDocument, {"a", "01x"}), "2:3");
    EXPECT_EQ(placeIn(placedDocument, {"missing", "a"}), "1:1");
}

TEST(DocumentPlacesTest, passesCommentsOver) {
    EXPECT_EQ(placeIn("/* \"a\": */ {// {\n /**/ \"a\" /*/ , */: //\n 1, /* } */ \"b\": 2}", {"b"}),
              "3:13");
}

TEST(DocumentPlacesTest, readsEscapesInKeysAndStrings) {
    EXPECT_EQ(placeIn(R"({"x\"": "\\", "\u0061": "}"})", {"x\""}), "1:2");
    EXPECT_EQ(placeIn(R"({"x\"": "\\", "\u0061": "}"})", {"a"}), "1:15");
}

TEST(DocumentPlacesTest, countsCharactersNotBytes) {
    EXPECT_EQ(placeIn("{\"\xC3\xA4\xE2\x82\xAC\": 1, \"b\": 2}", {"b"}), "1:11");
}

TEST(DocumentPlacesTest, findsTheSecondOfTwoEqualKeys) {
    EXPECT_EQ(placeIn(R"({"a": {"x": 1, "x": 2}, "a": 3})", {"a", "x"}), "1:16");
    EXPECT_EQ(placeIn(R"({"a": 1, "a": 2, "a": 3})", {"a"}), "1:10");
}

TEST(DocumentPlacesTest, findsInABrokenTextWhatStandsBeforeTheBreak) {
    for (const std::string rest : {"", "\"b", "\"b\"", "\"b\":", "\"b\": [", "\"b\" 1}",
                                   "\"b\": \"\\", "]", "/*", "//", "\"b\": 1]", "\"b\": [1 2]"}) {
        EXPECT_EQ(placeIn("{\"a\": {\"x\": 1}, " + rest, {"a", "x"}), "1:8") << rest;
    }
    EXPECT_EQ(placeIn("", {"a"}), "1:1");
}

TEST(DocumentPlacesTest, followsNoMoreThanTheReader) {
    const std::string deep = std::string(100000, '[');

    EXPECT_EQ(placeIn(deep, {"0", "0"}), "1:3");
}

TEST(DocumentPlacesTest, takesALargeTextWithoutBlanksInItsStride) {
    std::string text = "[0";
    for (int index = 1; index < 140000; ++index) {
        text += ",0";
    }

    EXPECT_EQ(placeIn(text + "]", {"139999"}), "1:280000");
}

} // namespace
