#include "DocumentText.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

struct Edit {
    const char* text;
    std::vector<std::string> path;
    const char* json;
    const char* changed;
};

const std::vector<Edit> edits{
    // The value alone changes; blanks and comments stay.
    {R"({ "a" : 1 /* one */, "b":2})", {"a"}, "7", R"({ "a" : 7 /* one */, "b":2})"},
    {"{\"a\": // why {\n  [1, 2]}", {"a", "1"}, "7", "{\"a\": // why {\n  [1, 7]}"},
    {R"({"a": {"b": "}\"]"}, "c": 1})", {"a"}, "[]", R"({"a": [], "c": 1})"},
    {R"([["4QAM", 2600],["16QAM", 2300]])", {"1", "1"}, "-5", R"([["4QAM", 2600],["16QAM", -5]])"},
    {"\xef\xbb\xbf{\"a\": 1}", {"a"}, "2", "\xef\xbb\xbf{\"a\": 2}"},
    {R"({"a~/b": 1})", {"a~/b"}, "2", R"({"a~/b": 2})"},
    // What is missing is added to what is there.
    {R"({"a": 1})", {"b"}, "2", R"({"b": 2, "a": 1})"},
    {"{ }", {"b"}, "2", R"({"b": 2 })"},
    {R"({"a": [1 /* last */]})", {"a", "1"}, "{}", R"({"a": [1, {} /* last */]})"},
    {R"({"a": []})", {"a", "0"}, "1", R"({"a": [1]})"},
    {R"({"a": [1]})", {"a", "-"}, "2", R"({"a": [1, 2]})"},
    // null takes away.
    {R"({"a": 1, "b": 2})", {"a"}, "null", R"({"b": 2})"},
    {R"({"a": 1, "b": 2 /* two */})", {"b"}, "null", R"({"a": 1 /* two */})"},
    {R"([1, [2], 3])", {"1"}, "null", R"([1, 3])"},
    {R"({"a": {"b": 1}})", {"a", "b"}, "null", R"({"a": {}})"},
    {R"({"a": 1})", {"b"}, "null", R"({"a": 1})"},
    // Where it would belong to nothing, nothing changes.
    {R"({"a": 1})", {"b", "c"}, "2", R"({"a": 1})"},
    {R"({"a": 1})", {"a", "c"}, "2", R"({"a": 1})"},
    {R"({"a": [1]})", {"a", "2"}, "2", R"({"a": [1]})"},
};

TEST(DocumentText, ChangesOneValueAndLeavesTheRestOfTheText) {
    for (const Edit& edit : edits) {
        EXPECT_EQ(DocumentText::withValue(edit.text, edit.path, edit.json), edit.changed)
            << edit.text;
    }
}

} // namespace
