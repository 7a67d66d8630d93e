#include "DeskTrace.h"
#include "RawTrace.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

const TraceHeader rawHeader = {"some/folder/File", 9, "operation"};

class RawTraceTest : public ::testing::Test {
protected:
    RawTraceTest() { DeskTrace::getInstance().clear(); }
    ~RawTraceTest() override { DeskTrace::getInstance().clear(); }

    static TraceRecord only() {
        const std::vector<TraceRecord> records = DeskTrace::getInstance().take();
        EXPECT_EQ(records.size(), 1U);
        return records.empty() ? TraceRecord{} : records.front();
    }
};

TEST_F(RawTraceTest, MapsCodesFrom32768UpToErrorsAndOthersToResults) {
    EXPECT_EQ(CPexTraceHandler_DmLevel2VtLevel(0), 5);
    EXPECT_EQ(CPexTraceHandler_DmLevel2VtLevel(1), 5);
    EXPECT_EQ(CPexTraceHandler_DmLevel2VtLevel(2080), 5);
    EXPECT_EQ(CPexTraceHandler_DmLevel2VtLevel(32767), 5);
    EXPECT_EQ(CPexTraceHandler_DmLevel2VtLevel(32768), 1);
    EXPECT_EQ(CPexTraceHandler_DmLevel2VtLevel(32776), 1);
    EXPECT_EQ(CPexTraceHandler_DmLevel2VtLevel(std::numeric_limits<std::uint32_t>::max()), 1);
}

TEST_F(RawTraceTest, JoinsThePiecesOfARecord) {
    VT_beginImpl(&SPC_trace, 5, &rawHeader);
    VT_rawprintf("%s=%d", "power", -250);
    VT_rawprintf(", ");
    VT_rawprintf("%lu", 3UL);
    VT_endImpl();

    EXPECT_EQ(only().text, "power=-250, 3");
}

TEST_F(RawTraceTest, WritesNothingBeforeARecordIsClosed) {
    VT_beginImpl(&SPC_trace, 5, &rawHeader);
    VT_rawprintf("open");

    EXPECT_TRUE(DeskTrace::getInstance().records().empty());
    VT_endImpl();
    EXPECT_EQ(only().text, "open");
}

TEST_F(RawTraceTest, KeepsNothingOfTheRecordBefore) {
    VT_beginImpl(&SPC_trace, 1, &rawHeader);
    VT_rawprintf("one      code: %#lx\n", 32768UL);
    VT_endImpl();
    DeskTrace::getInstance().clear();

    VT_beginImpl(&SPC_trace, 5, &rawHeader);
    VT_rawprintf("two");
    VT_endImpl();

    const TraceRecord record = only();
    EXPECT_EQ(record.text, "two");
    EXPECT_EQ(record.code, 0U);
    EXPECT_EQ(record.level, 5);
}

TEST_F(RawTraceTest, TakesTheLevelItIsGivenWhateverTheCode) {
    VT_beginImpl(&SPC_trace, 4, &rawHeader);
    VT_rawprintf("      code: %#lx\n", 32768UL);
    VT_endImpl();

    const TraceRecord record = only();
    EXPECT_EQ(record.level, 4);
    EXPECT_EQ(record.code, 32768U);
}

TEST_F(RawTraceTest, ReadsTheCodeFromTheLastCodeLine) {
    VT_beginImpl(&SPC_trace, 5, &rawHeader);
    VT_rawprintf("said code: 0x1 before");
    VT_rawprintf("      code: %#lx\n", 2080UL);
    VT_endImpl();

    EXPECT_EQ(only().code, 2080U);
}

TEST_F(RawTraceTest, ReadsTheLargestCode) {
    VT_beginImpl(&SPC_trace, 5, &rawHeader);
    VT_rawprintf("      code: %#lx\n", 4294967295UL);
    VT_endImpl();

    EXPECT_EQ(only().code, 4294967295U);
}

TEST_F(RawTraceTest, HasCode0WithoutACodeLine) {
    VT_beginImpl(&SPC_trace, 5, &rawHeader);
    VT_rawprintf("no key at all\n");
    VT_endImpl();

    EXPECT_EQ(only().code, 0U);
}

TEST_F(RawTraceTest, KeepsALongText) {
    const std::string longText(10000, 'x');

    VT_beginImpl(&SPC_trace, 5, &rawHeader);
    VT_rawprintf("%s", longText.c_str());
    VT_rawprintf("%s", "");
    VT_rawprintf("|");
    VT_endImpl();

    EXPECT_EQ(only().text, longText + "|");
}

} // namespace
