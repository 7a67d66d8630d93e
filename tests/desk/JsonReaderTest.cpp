#include "JsonReader.h"

#include "RadioFileError.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ostream>
#include <string>

namespace {

using nlohmann::json;

json readJson(std::string_view text) {
    return JsonReader::read(text, 1000000);
}

/// What is wrong with a text, as one line; empty if nothing is.
std::string jsonErrorOf(std::string_view text, std::size_t maxSize = 1000000) {
    try {
        JsonReader::read(text, maxSize);
    } catch (const RadioFileError& error) {
        return error.what();
    }
    return std::string();
}

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

TEST(JsonReaderTest, readsEveryKindOfValue) {
    const json document = readJson(R"({"a": [1, -2, "x", true, false, null], "b": {}})");

    EXPECT_EQ(document, json::parse(R"({"a": [1, -2, "x", true, false, null], "b": {}})"));
}

TEST(JsonReaderTest, allowsCommentsAndAByteOrderMark) {
    const json document = readJson("\xEF\xBB\xBF// first\n{\"a\": /* one */ 1} // last");

    EXPECT_EQ(document, json::parse(R"({"a": 1})"));
}

TEST(JsonReaderTest, readsEscapesInStrings) {
    EXPECT_EQ(readJson(R"("\u0034QAM\n")"), json("4QAM\n"));
}

TEST(JsonReaderTest, keepsTheEndsOf64Bits) {
    EXPECT_EQ(readJson("-9223372036854775808").get<std::int64_t>(),
              std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(readJson("18446744073709551615").get<std::uint64_t>(),
              std::numeric_limits<std::uint64_t>::max());
}

TEST(JsonReaderTest, refusesMoreThan150000Values) {
    // The list itself is one of them.
    const auto zeros = [](int count) {
        std::string text = "[0";
        for (int value = 1; value < count; ++value) {
            text += ",0";
        }
        return text + "]";
    };

    EXPECT_EQ(jsonErrorOf(zeros(149999)), "");
    EXPECT_EQ(jsonErrorOf(zeros(150000)), "/149999: more than 150000 values");
    EXPECT_EQ(jsonErrorOf(R"({"a": )" + zeros(149998) + R"(, "b": 0})"),
              "/b: more than 150000 values");
}

TEST(JsonReaderTest, tellsALargeIntegerFromAFractionAndKeepsBothAsWritten) {
    const auto textOf = [](const json& number) {
        return std::string(number.get_binary().begin(), number.get_binary().end());
    };

    const json large = readJson("18446744073709551616");
    const json small = readJson("-9223372036854775809");
    const json fraction = readJson("1.50");
    const json exponent = readJson("1E2");

    EXPECT_EQ(large.get_binary().subtype(), JsonReader::LargeInteger);
    EXPECT_EQ(textOf(large), "18446744073709551616");
    EXPECT_EQ(small.get_binary().subtype(), JsonReader::LargeInteger);
    EXPECT_EQ(textOf(small), "-9223372036854775809");
    EXPECT_EQ(fraction.get_binary().subtype(), JsonReader::Fraction);
    EXPECT_EQ(textOf(fraction), "1.50");
    EXPECT_EQ(exponent.get_binary().subtype(), JsonReader::Fraction);
    EXPECT_EQ(textOf(exponent), "1E2");
}

TEST(JsonReaderTest, allowsTheSameKeyInDifferentObjects) {
    EXPECT_EQ(jsonErrorOf(R"({"a": {"a": 1}, "b": [{"a": 1}, {"a": 1}]})"), "");
}

TEST(JsonReaderTest, allowsTheGreatestDepthAndSize) {
    EXPECT_EQ(jsonErrorOf(nested(64)), "");
    EXPECT_EQ(jsonErrorOf("[1]", 3), "");
}

TEST(JsonReaderTest, refusesOneLevelMore) {
    std::string place;
    for (int level = 0; level < 64; ++level) {
        place += "/0";
    }

    EXPECT_EQ(jsonErrorOf(nested(65)), place + ": nested deeper than 64 levels");
}

TEST(JsonReaderTest, refusesADepthThatNobodyCloses) {
    EXPECT_NE(jsonErrorOf(std::string(900000, '[')).find(": nested deeper than 64 levels"),
              std::string::npos);
}

TEST(JsonReaderTest, refusesOneByteMore) {
    EXPECT_EQ(jsonErrorOf("[1] ", 3), "(document): larger than 3 bytes");
}

struct BadText {
    const char* name;
    std::string text;
    const char* error;
};

std::ostream& operator<<(std::ostream& stream, const BadText& bad) {
    return stream << bad.name;
}

class JsonReaderBadTextTest : public testing::TestWithParam<BadText> {};

TEST_P(JsonReaderBadTextTest, isRefusedWithPlaceAndReason) {
    EXPECT_EQ(jsonErrorOf(GetParam().text), GetParam().error);
}

const BadText badTexts[] = {
    {"empty", "",
     "1:1: syntax error while parsing value - unexpected end of input; expected '[', '{', or a "
     "literal"},
    {"onlyAComment", "// nothing\n",
     "2:1: syntax error while parsing value - unexpected end of input; expected '[', '{', or a "
     "literal"},
    {"truncatedObject", "{\"channel\": 1",
     "1:14: syntax error while parsing object - unexpected end of input; expected '}'"},
    {"truncatedKey", "{",
     "1:2: syntax error while parsing object key - unexpected end of input; expected string "
     "literal"},
    {"truncatedString", "[\"abc",
     "1:6: syntax error while parsing value - invalid string: missing closing quote"},
    {"truncatedComment", "{} /* a",
     "1:8: syntax error while parsing value - invalid comment; missing closing '*/'; the comment "
     "that begins in 1:4 does not end: close it with */"},
    {"trailingComma", "{\n  \"a\": 1,\n}",
     "3:1: syntax error while parsing object key - unexpected '}'; expected string literal; take "
     "the comma before it away"},
    {"trailingCommaOfAList", "[1, ]",
     "1:5: syntax error while parsing value - unexpected ']'; expected '[', '{', or a literal; "
     "take "
     "the comma before it away"},
    {"typographicQuotes",
     "{\xE2\x80\x9C"
     "a\xE2\x80\x9D: 1}",
     "1:2: syntax error while parsing object key - invalid literal; texts stand in straight double "
     "quotes, \"like this\""},
    {"commentOfAnotherLanguage", "{# a\n\"a\": 1}",
     "1:2: syntax error while parsing object key - invalid literal; comments begin with // or "
     "stand "
     "between /* and */"},
    // No slip of these: only what is wrong is said.
    {"bracketWithoutAComma", "[1 }",
     "1:4: syntax error while parsing array - unexpected '}'; expected ']'"},
    {"missingColon", "{\n\"a\" 12345}",
     "2:5: syntax error while parsing object separator - unexpected number literal; expected ':'"},
    {"missingCommaBeforeString", R"({"a": "b" "cdef": 1})",
     "1:11: syntax error while parsing object - unexpected string literal; expected '}'"},
    {"missingCommaBeforeTrue", "[1 true]",
     "1:4: syntax error while parsing array - unexpected true literal; expected ']'"},
    {"missingCommaBeforeFalse", "[1 false]",
     "1:4: syntax error while parsing array - unexpected false literal; expected ']'"},
    {"missingCommaBeforeNull", "[1 null]",
     "1:4: syntax error while parsing array - unexpected null literal; expected ']'"},
    {"brokenLiteral", "[tru]", "1:5: syntax error while parsing value - invalid literal"},
    {"leadingZero", "[01]",
     "1:3: syntax error while parsing array - unexpected number literal; expected ']'"},
    {"plusSign", "[+1]", "1:2: syntax error while parsing value - invalid literal"},
    {"notANumber", "[NaN]", "1:2: syntax error while parsing value - invalid literal"},
    {"lineEndInString", "[\"a\nb\"]",
     "1:4: syntax error while parsing value - invalid string: control character U+000A (LF) must "
     "be escaped to \\u000A or \\n"},
    {"loneSurrogate", R"(["\ud800"])",
     "1:9: syntax error while parsing value - invalid string: surrogate U+D800..U+DBFF must be "
     "followed by U+DC00..U+DFFF"},
    {"invalidUtf8", "[\"\xFF\"]",
     "1:3: syntax error while parsing value - invalid string: ill-formed UTF-8 byte"},
    {"columnsCountCharacters", "[\"\xC3\xA9\xE2\x82\xAC\" x]",
     "1:7: syntax error while parsing array - invalid literal"},
    {"byteOrderMarkIsNoColumn", "\xEF\xBB\xBF[x]",
     "1:2: syntax error while parsing value - invalid literal"},
    {"secondDocument", "{}\n{}",
     "2:1: syntax error while parsing value - unexpected '{'; expected end of input"},
    {"textBehindTheDocument", "{} 12",
     "1:4: syntax error while parsing value - unexpected number literal; expected end of input"},
    {"nulBehindTheDocument", std::string("{}\0x", 4), "1:3: syntax error: NUL byte"},
    {"nulOfUtf16", std::string("\xFF\xFE{\0", 4),
     "1:4: syntax error: NUL byte; the text is UTF-16: save it as UTF-8"},
    {"nulOfUtf16InTheOtherOrder", std::string("\xFE\xFF\0{", 4),
     "1:3: syntax error: NUL byte; the text is UTF-16: save it as UTF-8"},
    {"nulInside", std::string("{\n \0}", 5), "2:2: syntax error: NUL byte"},
    {"nulInAComment", std::string("{} // \0", 7), "1:7: syntax error: NUL byte"},
    {"keyGivenTwice", R"({"a": 1, "a": 1})", "/a: key given twice"},
    {"keyGivenTwiceAsEscape", R"({"a": 1, "\u0061": 2})", "/a: key given twice"},
    {"keyGivenTwiceDeepInside", R"({"a": [0, {"b": {"c": 1, "d": 2, "c": 3}}]})",
     "/a/1/b/c: key given twice"},
    {"pointerIsEscaped", R"({"a/b": {"m~n": {"": 1, "": 2}}})", "/a~1b/m~0n/: key given twice"},
    {"pointerIsPrintable", R"({"a\nb": 1, "a\nb": 2})", "/a\\u000ab: key given twice"},
    {"numberBeyondEverything", R"({"a": [0, 1e999]})", "/a/1: number too large: 1e999"},
    {"numberBeyondEverythingAlone", "-1e999", "(document): number too large: -1e999"},
};

INSTANTIATE_TEST_SUITE_P(EveryKind, JsonReaderBadTextTest, testing::ValuesIn(badTexts),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
