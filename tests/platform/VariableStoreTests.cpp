#include "CStorageManager.h"
#include "DeskVariableStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;

class VariableStoreTest : public ::testing::Test {
protected:
    VariableStoreTest() { sut.clear(); }
    ~VariableStoreTest() override { sut.clear(); }

    static std::vector<std::int32_t> elementsAt(const void* address, std::size_t count) {
        const auto* const elements = static_cast<const std::int32_t*>(address);
        return {elements, elements + count};
    }

    DeskVariableStore& sut = DeskVariableStore::getInstance();
};

TEST_F(VariableStoreTest, IsOneForTheWholeProcess) {
    EXPECT_EQ(&DeskVariableStore::getInstance(), &sut);
}

TEST_F(VariableStoreTest, AnswersThroughThePlatformCall) {
    sut.set("array", {1, -200, 3});
    const void* address = nullptr;
    std::uint32_t size = 0;

    EXPECT_EQ(CStorageManager_GetVariableContentAddressByName("array", &address, &size), 0U);

    EXPECT_EQ(size, 3U);
    EXPECT_THAT(elementsAt(address, 3), ElementsAre(1, -200, 3));
}

TEST_F(VariableStoreTest, ReportsTheSizeInElementsOf32Bits) {
    sut.set("one", {std::numeric_limits<std::int32_t>::min()});
    sut.set("many", std::vector<std::int32_t>(1000, 7));
    const void* address = nullptr;
    std::uint32_t size = 0;

    EXPECT_EQ(sut.find("one", &address, &size), 0U);
    EXPECT_EQ(size, 1U);
    EXPECT_EQ(sut.find("many", &address, &size), 0U);
    EXPECT_EQ(size, 1000U);
    EXPECT_EQ(elementsAt(address, 1000), std::vector<std::int32_t>(1000, 7));
}

TEST_F(VariableStoreTest, NeedNotReportTheSize) {
    sut.set("array", {5});
    const void* address = nullptr;

    EXPECT_EQ(CStorageManager_GetVariableContentAddressByName("array", &address, nullptr), 0U);

    EXPECT_THAT(elementsAt(address, 1), ElementsAre(5));
}

TEST_F(VariableStoreTest, FailsForAnUnknownNameAndWritesNothing) {
    sut.set("array", {1});
    const int somewhere = 0;
    const void* address = &somewhere;
    std::uint32_t size = 77;

    EXPECT_EQ(CStorageManager_GetVariableContentAddressByName("arra", &address, &size), 32768U);
    EXPECT_EQ(CStorageManager_GetVariableContentAddressByName("array ", &address, &size), 32768U);
    EXPECT_EQ(CStorageManager_GetVariableContentAddressByName("", &address, nullptr), 32768U);

    EXPECT_EQ(address, &somewhere);
    EXPECT_EQ(size, 77U);
}

TEST_F(VariableStoreTest, GivesEmptyContentASizeOf0AndAnAddress) {
    sut.set("empty", {});
    const void* address = nullptr;
    std::uint32_t size = 77;

    EXPECT_EQ(sut.find("empty", &address, &size), 0U);

    EXPECT_NE(address, nullptr);
    EXPECT_EQ(size, 0U);
    EXPECT_THAT(elementsAt(address, 1), ElementsAre(0));
}

TEST_F(VariableStoreTest, KeepsReplacedContentReadableWhereItWas) {
    sut.set("array", {1, 2});
    const void* former = nullptr;
    const void* latter = nullptr;
    std::uint32_t size = 0;
    sut.find("array", &former, nullptr);

    sut.set("array", {3, 4, 5});

    EXPECT_EQ(sut.find("array", &latter, &size), 0U);
    EXPECT_NE(former, latter);
    EXPECT_EQ(size, 3U);
    EXPECT_THAT(elementsAt(latter, 3), ElementsAre(3, 4, 5));
    EXPECT_THAT(elementsAt(former, 2), ElementsAre(1, 2));
}

TEST_F(VariableStoreTest, KeepsRemovedContentReadableWhereItWas) {
    sut.set("array", {1, 2});
    const void* address = nullptr;
    sut.find("array", &address, nullptr);

    sut.remove("array");

    EXPECT_EQ(sut.find("array", &address, nullptr), 32768U);
    EXPECT_THAT(elementsAt(address, 2), ElementsAre(1, 2));
}

TEST_F(VariableStoreTest, RemovesOneVariableAlone) {
    sut.set("one", {1});
    sut.set("two", {2});
    const void* address = nullptr;

    sut.remove("one");
    sut.remove("unheard of");

    EXPECT_EQ(sut.find("one", &address, nullptr), 32768U);
    EXPECT_EQ(sut.find("two", &address, nullptr), 0U);
}

TEST_F(VariableStoreTest, ClearsEveryVariable) {
    sut.set("one", {1});
    sut.set("two", {2});
    const void* address = nullptr;

    sut.clear();

    EXPECT_EQ(sut.find("one", &address, nullptr), 32768U);
    EXPECT_EQ(sut.find("two", &address, nullptr), 32768U);
}

} // namespace
