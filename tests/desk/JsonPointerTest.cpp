#include "JsonPointer.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

TEST(JsonPointerTest, isShownWithItsEscapes) {
    EXPECT_EQ(pointerText({}), "(document)");
    EXPECT_EQ(pointerText({"a~b", "c/d", "0"}), "/a~0b/c~1d/0");
}

TEST(JsonPointerTest, leadsToAValue) {
    const auto document = nlohmann::json::parse(R"({"a": [1, {"b": null}], "0": 2})");

    EXPECT_EQ(valueAt(document, {}), &document);
    EXPECT_EQ(valueAt(document, {"a", "0"}), &document["a"][0]);
    EXPECT_EQ(valueAt(document, {"a", "1", "b"}), &document["a"][1]["b"]);
    EXPECT_EQ(valueAt(document, {"0"}), &document["0"]);
}

TEST(JsonPointerTest, leadsNowhereWhereThereIsNothing) {
    const auto document = nlohmann::json::parse(R"({"a": [1, {"b": null}], "0": 2})");

    EXPECT_EQ(valueAt(document, {"c"}), nullptr);
    EXPECT_EQ(valueAt(document, {"a", "2"}), nullptr);
    EXPECT_EQ(valueAt(document, {"a", "-1"}), nullptr);
    EXPECT_EQ(valueAt(document, {"a", "b"}), nullptr);
    EXPECT_EQ(valueAt(document, {"a", "0", "0"}), nullptr);
    EXPECT_EQ(valueAt(document, {"a", "1", "b", "c"}), nullptr);
}

} // namespace
