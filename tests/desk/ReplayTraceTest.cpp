#include "Replay.h"

#include "DeskTrace.h"
#include "RawTrace.h"
#include "SampleFile.h"
#include "VelTrace.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// The lines of the sample file with some requests, played with traces.
std::vector<std::string> linesOf(int level, const std::string& requests) {
    std::vector<std::string> lines;
    Replay(level).play(readFile(sampleFileWith(requests)),
                       [&lines](const std::string& line) { lines.push_back(line); });
    return lines;
}

/// The line of the last request.
std::string lastLineOf(int level, const std::string& requests) {
    return linesOf(level, requests).back();
}

/// A record of the service's own source, as JSON.
std::string record(int level, const std::string& kind, const std::string& function,
                   const std::string& text) {
    return R"({"level":)" + std::to_string(level) + R"(,"kind":")" + kind +
           R"(","file":"Control/OutputPowerCalculator/private/OutputPowerCalculator",)" +
           R"("function":")" + function + R"(","text":")" + text + R"("})";
}

/// A raw record of a Pmax table, as JSON.
std::string raw(const std::string& code, const std::string& function, const std::string& text) {
    return R"({"code":)" + code +
           R"(,"kind":"raw",)"
           R"("file":"Control/OutputPowerCalculator/private/TxRfMaxPowerCapability",)" +
           R"("function":")" + function + R"(","text":")" + text + R"("})";
}

const std::string setTemperature = R"([{"call": "setTemperature", "temperature": 25}])";

TEST(ReplayTraceTest, levelZeroAddsNothing) {
    EXPECT_EQ(lastLineOf(0, setTemperature), R"({"call":"setTemperature","result":0})");
}

TEST(ReplayTraceTest, everyLineHasTheKeyAboveLevelZero) {
    EXPECT_THAT(linesOf(1, R"([{"call": "findPminPmax"}, {"call": "patch", "file": {}}])"),
                ElementsAre(R"({"call":"initialize","result":0,"registered":true,"trace":[]})",
                            R"({"call":"findPminPmax","result":0,"pmin":-750,"pmax":2800,)"
                            R"("trace":[]})",
                            R"({"call":"patch","result":0,"trace":[]})"));
}

TEST(ReplayTraceTest, showsEntriesAndMessagesUpToTheLevel) {
    const std::string entry = record(6, "enter", "setTemperature", "25");
    const std::string message = record(5, "msg", "setTemperature", "New temperature = 25");

    EXPECT_EQ(lastLineOf(4, setTemperature), R"({"call":"setTemperature","result":0,"trace":[]})");
    EXPECT_EQ(lastLineOf(5, setTemperature),
              R"({"call":"setTemperature","result":0,"trace":[)" + message + "]}");
    EXPECT_EQ(lastLineOf(6, setTemperature),
              R"({"call":"setTemperature","result":0,"trace":[)" + entry + "," + message + "]}");
}

TEST(ReplayTraceTest, anEntryWithoutTextHasAnEmptyOne) {
    EXPECT_EQ(lastLineOf(6, R"([{"call": "findPminPmax"}])"),
              R"({"call":"findPminPmax","result":0,"pmin":-750,"pmax":2800,"trace":[)" +
                  record(6, "enter", "findPminPmax", "") + "," +
                  record(6, "enter", "getMinOutputPower", "28") + "]}");
}

TEST(ReplayTraceTest, showsRawRecordsByTheirCode) {
    // A record of its own for each of the two lookups of one modulation that no table has.
    const std::string unknown = raw(
        "32776", "getPower", R"(getPower, unknown modulation type: 128QAM      code: 0x8008\n)");

    EXPECT_EQ(lastLineOf(1, R"([{"call": "getUnrestrictedPmax"}])"),
              R"({"call":"getUnrestrictedPmax","result":0,"pmax":150,"trace":[)" + unknown + "," +
                  unknown + "]}");
}

TEST(ReplayTraceTest, showsTheWholeStart) {
    const auto info = [](const std::string& text) {
        return raw("2080", "initialize", text + R"(      code: 0x820\n)");
    };

    EXPECT_EQ(lastLineOf(6, "[]"),
              R"({"call":"initialize","result":0,"registered":true,"trace":[)" +
                  record(6, "enter", "initialize", "") + "," +
                  info("m_dpdVersion = 1, m_market = 0") + "," +
                  info("PmaxTable with value 2 succeeded for channel 1") + "," +
                  info("m_dpdVersion = 2, m_market = 0") + "," +
                  info("PmaxTable with value 3 failed for channel 1") + "," +
                  info("PmaxTable with value 2 succeeded for channel 1") + "," +
                  info("m_dpdVersion = 1, m_market = 1") + "," +
                  info("PmaxTable with value 0 succeeded for channel 1") + "," +
                  info("m_dpdVersion = 2, m_market = 1") + "," +
                  info("PmaxTable with value 1 succeeded for channel 1") + "]}");
}

TEST(ReplayTraceTest, showsWhyTheServiceDidNotStart) {
    json file = sampleFile();
    file.erase("frameFormat");
    std::vector<std::string> lines;

    Replay(1).play(readFile(file), [&lines](const std::string& line) { lines.push_back(line); });

    EXPECT_THAT(
        lines, ElementsAre(R"({"call":"initialize","result":32768,"registered":false,"trace":[)" +
                           record(1, "msg", "initialize", "Failed to get interfaceIFrameFormat_1") +
                           "]}"));
}

TEST(ReplayTraceTest, switchesTracesOffAfterwards) {
    Replay(6).play(readFile(sampleFile()), [](const std::string&) {});
    const VelTrace trace("A.Later.Trace", 3, 256);

    EXPECT_EQ(SPC_trace, 0);
    EXPECT_FALSE(trace.isEnabled(1));
    EXPECT_TRUE(DeskTrace::getInstance().records().empty());
}

TEST(ReplayTraceTest, switchesTracesOffWhenTheSinkThrows) {
    const RadioFile file = readFile(sampleFile());

    EXPECT_THROW(Replay(6).play(file, [](const std::string&) { throw std::runtime_error("full"); }),
                 std::runtime_error);

    EXPECT_EQ(SPC_trace, 0);
    EXPECT_TRUE(DeskTrace::getInstance().records().empty());
}

TEST(ReplayTraceTest, showsNoRecordOfAnEarlierTime) {
    DeskTrace::getInstance().write(
        {TraceRecord::Kind::Message, 1, 0, "earlier", "earlier", 1, "earlier"});

    EXPECT_THAT(linesOf(1, "[]").front(), Not(HasSubstr("earlier")));
}

} // namespace
