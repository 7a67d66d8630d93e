#include "DeskTrace.h"
#include "RawTrace.h"
#include "VelTrace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const TraceHeader header = {"some/folder/File", 42, "operation"};

class DeskTraceTest : public ::testing::Test {
protected:
    DeskTraceTest() {
        sut.clear();
        sut.setLevel(0);
    }
    ~DeskTraceTest() override {
        sut.printTo(nullptr);
        sut.setLevel(0);
        sut.clear();
    }

    static std::vector<std::string> texts(const std::vector<TraceRecord>& records) {
        std::vector<std::string> texts;
        for (const TraceRecord& record : records) {
            texts.push_back(record.text);
        }
        return texts;
    }

    DeskTrace& sut = DeskTrace::getInstance();
};

TEST_F(DeskTraceTest, IsOneForTheWholeProcess) {
    EXPECT_EQ(&DeskTrace::getInstance(), &sut);
}

TEST_F(DeskTraceTest, SetsTheLevelOfEveryObjectThatIsThere) {
    const VelTrace first("first", 3, 0);
    const VelTrace second("second", 6, 0);

    sut.setLevel(4);

    EXPECT_TRUE(first.isEnabled(4));
    EXPECT_FALSE(first.isEnabled(5));
    EXPECT_TRUE(second.isEnabled(4));
    EXPECT_FALSE(second.isEnabled(5));
}

TEST_F(DeskTraceTest, SetsTheLevelOfEveryObjectToCome) {
    sut.setLevel(5);

    const VelTrace trace("later", 3, 256);

    EXPECT_TRUE(trace.isEnabled(5));
    EXPECT_FALSE(trace.isEnabled(6));
}

TEST_F(DeskTraceTest, WithLevel0SwitchesEverythingOff) {
    const VelTrace trace("off", 6, 0);

    sut.setLevel(0);

    EXPECT_FALSE(trace.isEnabled(1));
    EXPECT_EQ(SPC_trace, 0);
}

TEST_F(DeskTraceTest, SetsTheThresholdOfTheRawTrace) {
    sut.setLevel(5);
    EXPECT_EQ(SPC_trace, 5);

    sut.setLevel(6);
    EXPECT_EQ(SPC_trace, 6);
}

TEST_F(DeskTraceTest, ForgetsAnObjectThatHasEnded) {
    { const VelTrace shortLived("short", 3, 0); }
    const VelTrace trace("long", 3, 0);

    sut.setLevel(2);

    EXPECT_TRUE(trace.isEnabled(2));
    EXPECT_FALSE(trace.isEnabled(3));
}

TEST_F(DeskTraceTest, KeepsRecordsInTheOrderWrittenWithAllTheirParts) {
    VelTrace trace("channel", 6, 0);
    trace.logEnterMsg(6, header, "a=1");
    trace.logMsg(2, {"other/File", 7, "other"}, "careful");
    VT_beginImpl(&SPC_trace, 5, &header);
    VT_rawprintf("done %d", 3);
    VT_rawprintf("      code: %#lx\n", 2080UL);
    VT_endImpl();

    const std::vector<TraceRecord> records = sut.records();

    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].kind, TraceRecord::Kind::Enter);
    EXPECT_EQ(records[0].level, 6);
    EXPECT_EQ(records[0].code, 0U);
    EXPECT_EQ(records[0].file, "some/folder/File");
    EXPECT_EQ(records[0].function, "operation");
    EXPECT_EQ(records[0].line, 42);
    EXPECT_EQ(records[0].text, "a=1");
    EXPECT_EQ(records[1].kind, TraceRecord::Kind::Message);
    EXPECT_EQ(records[1].level, 2);
    EXPECT_EQ(records[1].code, 0U);
    EXPECT_EQ(records[1].file, "other/File");
    EXPECT_EQ(records[1].function, "other");
    EXPECT_EQ(records[1].line, 7);
    EXPECT_EQ(records[1].text, "careful");
    EXPECT_EQ(records[2].kind, TraceRecord::Kind::Raw);
    EXPECT_EQ(records[2].level, 5);
    EXPECT_EQ(records[2].code, 2080U);
    EXPECT_EQ(records[2].file, "some/folder/File");
    EXPECT_EQ(records[2].function, "operation");
    EXPECT_EQ(records[2].line, 42);
    EXPECT_EQ(records[2].text, "done 3      code: 0x820\n");
}

TEST_F(DeskTraceTest, ReadsBackTheRecordsUpToALevel) {
    VelTrace trace("channel", 6, 0);
    for (int level = 1; level <= 7; ++level) {
        trace.logMsg(level, header, std::to_string(level));
    }

    EXPECT_THAT(texts(sut.records(0)), IsEmpty());
    EXPECT_THAT(texts(sut.records(1)), ElementsAre("1"));
    EXPECT_THAT(texts(sut.records(4)), ElementsAre("1", "2", "3", "4"));
    EXPECT_THAT(texts(sut.records(5)), ElementsAre("1", "2", "3", "4", "5"));
    EXPECT_THAT(texts(sut.records()), ElementsAre("1", "2", "3", "4", "5", "6"));
    EXPECT_THAT(texts(sut.records(7)), ElementsAre("1", "2", "3", "4", "5", "6", "7"));
}

TEST_F(DeskTraceTest, KeepsRecordsThatAreReadBack) {
    VelTrace trace("channel", 6, 0);
    trace.logMsg(1, header, "stays");

    sut.records();

    EXPECT_THAT(texts(sut.records()), ElementsAre("stays"));
}

TEST_F(DeskTraceTest, ForgetsRecordsThatAreTaken) {
    VelTrace trace("channel", 6, 0);
    trace.logMsg(1, header, "one");
    trace.logMsg(6, header, "two");

    EXPECT_THAT(texts(sut.take()), ElementsAre("one", "two"));

    EXPECT_THAT(sut.records(), IsEmpty());
    EXPECT_THAT(sut.take(), IsEmpty());
    trace.logMsg(1, header, "three");
    EXPECT_THAT(texts(sut.records()), ElementsAre("three"));
}

TEST_F(DeskTraceTest, ForgetsRecordsThatAreCleared) {
    VelTrace trace("channel", 6, 0);
    trace.logMsg(1, header, "one");

    sut.clear();

    EXPECT_THAT(sut.records(), IsEmpty());
}

TEST_F(DeskTraceTest, OutlivesTheObjectThatWroteToIt) {
    auto trace = std::make_unique<VelTrace>("channel", 6, 0);
    trace->logMsg(1, header, "last words");

    trace.reset();

    EXPECT_THAT(texts(sut.records()), ElementsAre("last words"));
}

TEST_F(DeskTraceTest, PrintsEveryFurtherRecordToAStream) {
    VelTrace trace("channel", 6, 0);
    std::ostringstream stream;
    trace.logMsg(1, header, "before");

    sut.printTo(&stream);
    trace.logMsg(1, header, "broken");
    trace.logEnterMsg(6, header, "");
    VT_beginImpl(&SPC_trace, 1, &header);
    VT_rawprintf("%s", "first\nsecond\n");
    VT_endImpl();
    sut.printTo(nullptr);
    trace.logMsg(1, header, "after");

    EXPECT_EQ(stream.str(), "1 msg some/folder/File:42 operation: broken\n"
                            "6 enter some/folder/File:42 operation: \n"
                            "1 raw some/folder/File:42 operation: first\nsecond\n");
    EXPECT_THAT(texts(sut.records()),
                ElementsAre("before", "broken", "", "first\nsecond\n", "after"));
}

TEST_F(DeskTraceTest, WritesARecordAsOneLine) {
    std::ostringstream stream;

    stream << TraceRecord{TraceRecord::Kind::Message, 5, 0, "a/B", "c", 12, "d e"};

    EXPECT_EQ(stream.str(), "5 msg a/B:12 c: d e");
}

TEST(DeskTraceScope, BeginsWithoutRecordsAndTracesUpToItsLevel) {
    VelTrace trace("QOR.Test", 3, 256);
    trace.logMsg(1, header, "before");

    const DeskTraceScope sut(4);

    EXPECT_TRUE(DeskTrace::getInstance().records().empty());
    EXPECT_TRUE(trace.isEnabled(4));
    EXPECT_FALSE(trace.isEnabled(5));
}

TEST(DeskTraceScope, LeavesNothingBehindWhenAnExceptionEndsIt) {
    VelTrace trace("QOR.Test", 3, 256);

    try {
        const DeskTraceScope sut(6);
        trace.logMsg(1, header, "inside");
        throw std::runtime_error("the node cannot be built");
    } catch (const std::runtime_error&) {
        EXPECT_FALSE(trace.isEnabled(1));
        EXPECT_TRUE(DeskTrace::getInstance().records().empty());
    }
}

TEST(VelTrace, KeepsWhatItWasBuiltWith) {
    const VelTrace sut("QOR.Test", 3, 256);

    EXPECT_STREQ(sut.channelName(), "QOR.Test");
    EXPECT_EQ(sut.headerOption(), 256);
}

TEST(VelTrace, LetsThroughWhatIsAtOrBelowItsLevel) {
    VelTrace sut("QOR.Test", 3, 256);

    sut.setLevel(4);

    EXPECT_TRUE(sut.isEnabled(1));
    EXPECT_TRUE(sut.isEnabled(4));
    EXPECT_FALSE(sut.isEnabled(5));
}

TEST(VelTrace, DoesNotTestTheLevelAgainWhenItWrites) {
    DeskTrace& deskTrace = DeskTrace::getInstance();
    deskTrace.clear();
    VelTrace sut("QOR.Test", 3, 256);
    sut.setLevel(0);

    sut.logMsg(6, header, "asked for");

    EXPECT_EQ(deskTrace.take().size(), 1U);
}

} // namespace
