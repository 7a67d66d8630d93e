#include "Field.h"
#include "EChannelSpacingType.h"

#include <gtest/gtest.h>

namespace {

struct Reading {
    std::string place;
    std::optional<std::int64_t> power;
    std::int64_t change;
    std::string remark = {};
};

/// Every way in which a field can be shown.
Fields<Reading> readingFields() {
    using enum Shown;
    return {
        {{"place"}, &Reading::place, InBoth, "Place", {}, {"All"}},
        {{"maxPower", "dBm"},
         &Reading::power,
         InBoth,
         "Max power",
         [](const Reading& reading) { return reading.remark; }},
        {{"change", "dB"}, &Reading::change, InBoth, "Change", {}, {500}},
        {{"isHigh"}, [](const Reading& reading) { return reading.power > 1000; }},
        {{"remark"}, orNothing<Reading>(&Reading::remark), InCsv},
        {{"length"}, [](const Reading& reading) { return reading.place.size(); }, Nowhere, "Size"},
    };
}

const std::vector<Reading> readings = {{"north, hill", 1250, 100}, {"sea", {}, 0, "dead"}};

TEST(Fields, StandInTextAsAlignedColumnsUnderTheirUnits) {
    FootNotes notes;

    EXPECT_EQ(textColumns(readingFields(), readings, "-", &notes),
              "Place        Max power/dBm      Change/dB  Size\n"
              "north, hill          12.50          +1.00    11\n"
              "sea                      - [1]       0.00     3\n"
              "All                                 +5.00\n");
    EXPECT_EQ(notes.text(), "\n[1] dead\n");
}

TEST(Fields, StandInCsvWithoutSignsAndWithNamesOfSmallLetters) {
    EXPECT_EQ(csvForm(readingFields(), readings), "place,max_power_dBm,change_dB,remark\n"
                                                  "\"north, hill\",12.50,1.00,\n"
                                                  "sea,,0.00,dead\n");
    EXPECT_EQ(FieldNames{"maxPower_4QAM_STRONG"}.inCsv(), "max_power_4QAM_STRONG");
    EXPECT_EQ((FieldNames{"channel-spacing", "MHz"}.inCsv()), "channel_spacing_MHz");
}

TEST(Fields, HoldNoLineEndAndNoFormulaInCsv) {
    const auto cellOf = [](const Datum& value) { return FieldNames{"text"}.csvCell(value); };

    EXPECT_EQ(cellOf("a\r\nb\x1B[2J\u202E"), "a\\r\\nb\\x1b[2J\\u202e");
    EXPECT_EQ(csvLine({cellOf("a\n\"b\", c")}), "\"a\\n\"\"b\"\", c\"\n");
    for (const std::string text : {"=1+1", "+cmd", "-1-1", "@sum", "-", "+1.505"}) {
        EXPECT_EQ(cellOf(text), '\'' + text);
    }
    for (const std::string text : {"-1.50", "+3", "a=b", "'=1", ""}) {
        EXPECT_EQ(cellOf(text), text);
    }
    EXPECT_EQ((FieldNames{"power", "dBm"}.csvCell(-150)), "-1.50");
    EXPECT_EQ((FieldNames{"text"}.textCell("=1+1", "-")), "=1+1");
}

TEST(Fields, StandInJsonInTheirOrderCountedInHundredths) {
    EXPECT_EQ(
        jsonLine(listOf(readingFields(), readings)),
        R"([{"place":"north, hill","maxPowerCentiDbm":1250,"changeCentiDb":100,"isHigh":true},)"
        R"({"place":"sea","maxPowerCentiDbm":null,"changeCentiDb":0,"isHigh":false}])"
        "\n");
    EXPECT_EQ(jsonDocument(Datum::Object{{"b", Datum::List()}, {"a", Datum::Object()}}),
              "{\n  \"b\": [],\n  \"a\": {}\n}\n");
}

TEST(Datum, HasTheTextOfItsKindOrElseItsNumber) {
    EXPECT_EQ(
        jsonLine(Datum::List{EFrameFormatMarket::Ansi, EFrameFormatMarket{7},
                             EChannelSpacingType{28}, Modulation::QAM64, ModulationAndCoding{31},
                             EReferenceSEC::Class4L, 4294967295U, "caf\xE9"}),
        "[\"Ansi\",\"7\",28,\"64QAM\",\"4QAM\",\"4L\",4294967295,\"caf\xEF\xBF\xBD\"]\n");
}

TEST(Datum, HasNothingInJsonThatSteersATerminal) {
    EXPECT_EQ(jsonDocument(Datum::List{"\x1B\x7F\u0085\u200F\u00E9"}),
              "[\n  \"\\u001b\\u007f\\u0085\\u200f\u00E9\"\n]\n");
}

} // namespace
