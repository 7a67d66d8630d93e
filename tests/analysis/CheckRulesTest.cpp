#include "CheckRules.h"
#include "ChangedDocument.h"
#include "JsonPointer.h"
#include "NodeRules.h"
#include "PowerTableQuery.h"
#include "RadioFileCheck.h"
#include "RadioFileReader.h"
#include "reference/RandomRadioFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

using nlohmann::json;

/// What changes of a radio in which nothing is to be found lead to.
json listed(const std::string& which) {
    return documentAt(QOR_ANALYSIS_TESTS "/findings.json").at(which);
}

json soundRadio() {
    return documentAt(QOR_ANALYSIS_TESTS "/radios/sound.json");
}

/// "QP-101 /capabilityHandler/pmaxDpd1Etsi/1" for each finding, in the order found.
std::vector<std::string> findingsIn(const std::string& text) {
    std::vector<std::string> findings;
    for (const RadioFileCheck::PlacedFinding& placed : RadioFileCheck::run(text).findings) {
        std::string line = placed.finding.rule->code;
        line += ' ';
        for (const std::string& key : placed.finding.place.path) {
            line += '/' + key;
        }
        findings.push_back(line);
    }
    return findings;
}

using Findings = std::vector<std::string>;

TEST(CheckRules, FindTheOneThingThatIsChanged) {
    for (const json& row : listed("one")) {
        const json radio = changed(soundRadio(), row[1]);

        EXPECT_EQ(findingsIn(radio.dump()),
                  Findings{row[0].get<std::string>() + ' ' + row[2].get<std::string>()})
            << row;
    }
}

TEST(CheckRules, FindNothingInASoundRadio) {
    EXPECT_EQ(findingsIn(soundRadio().dump()), std::vector<std::string>());
}

TEST(CheckRules, FindNothingJustInsideTheirLimits) {
    for (const json& row : listed("none")) {
        EXPECT_EQ(findingsIn(changed(soundRadio(), row[1]).dump()), Findings()) << row;
    }
}

TEST(CheckRules, NameAVariableThatIsAlmostRead) {
    json radio = soundRadio();
    radio["variables"] = {{"channel.1.tx.rf.pmax.cs.comp.v2.aray", {28, -50, 56, -150}},
                          {"channel.1.tx.rf.pmax.cs.comp.v2.arraysize", 4}};

    // Without the variable itself no array query succeeds.
    EXPECT_EQ(findingsIn(radio.dump()),
              (std::vector<std::string>{"QP-201 /frameFormat",
                                        "QP-201 /hardwareConfigurationHandler/frameFormats/0",
                                        "QP-405 /variables/channel.1.tx.rf.pmax.cs.comp.v2.aray"}));
}

TEST(CheckRules, PlaceASyntaxErrorByLineAndColumn) {
    const RadioFileCheck check = RadioFileCheck::run("{\n  \"channel\": 1,\n}");

    ASSERT_EQ(check.findings.size(), 1U);
    EXPECT_FALSE(check.isRadioFile);
    EXPECT_EQ(check.findings[0].finding.rule, &CheckRules::NotJson);
    EXPECT_FALSE(check.findings[0].hasPointer);
    EXPECT_EQ(check.findings[0].textPlace.line, 3U);
    EXPECT_EQ(check.findings[0].textPlace.column, 1U);
    EXPECT_TRUE(RadioFileCheck::run("{\n  \"channel\": 1 /* , */\n}").isRadioFile);
}

TEST(CheckRules, PlaceAFindingAtItsKey) {
    const RadioFileCheck check = RadioFileCheck::run(
        "{ // one\n  \"board\": {\"carierAggregation\": true},\n  \"channel\": 1\n}");

    ASSERT_EQ(check.findings.size(), 1U);
    EXPECT_EQ(check.findings[0].finding.rule, &CheckRules::NotARadioFile);
    EXPECT_EQ(check.findings[0].textPlace.line, 2U);
    EXPECT_EQ(check.findings[0].textPlace.column, 13U);
}

TEST(CheckRules, StopAtAHundredFindingsOfAKind) {
    json radio = soundRadio();
    for (int index = 0; index < 150; ++index) {
        radio["variables"]["unread" + std::to_string(index)] = 1;
    }

    const std::vector<std::string> findings = findingsIn(radio.dump());

    EXPECT_EQ(findings.size(), 101U);
    EXPECT_EQ(findings.front(), "QP-406 ");
}

TEST(CheckRules, StopAtAsManyPatchesAndQueriesAsAreChecked) {
    json radio = soundRadio();
    for (int index = 0; index < 65; ++index) {
        EXPECT_TRUE(index != 64 || findingsIn(radio.dump()).empty());
        radio["requests"].push_back(
            {{"call", "patch"},
             {"file",
              {{"systemPowerController", {{"referenceSec", index % 2 == 0 ? "6LB" : "4L"}}}}}});
    }
    EXPECT_EQ(findingsIn(radio.dump()), std::vector<std::string>{"QP-012 /requests/64"});

    radio = soundRadio();
    json& records = radio["hardwareConfigurationHandler"]["frameFormats"];
    while (records.size() < 1000) {
        records.push_back(records[0]);
        records.back()["id"] = records.size() + 7;
    }
    EXPECT_EQ(findingsIn(radio.dump()), std::vector<std::string>{"QP-012 "});
}

// Odd values are strewn in, so that most of these files have many findings.
TEST(CheckRules, TellPlacesThatRandomFilesHave) {
    std::set<std::string> codes;
    for (std::uint64_t seed = 0; seed < 150; ++seed) {
        const json radio = reference::randomRadioFile(seed);

        const RadioFileCheck check = RadioFileCheck::run(radio.dump(1));

        EXPECT_TRUE(check.isRadioFile) << seed;
        for (const RadioFileCheck::PlacedFinding& placed : check.findings) {
            const std::vector<std::string>& path = placed.finding.place.path;
            EXPECT_NE(valueAt(radio, path), nullptr)
                << seed << ": " << placed.finding.rule->code << ' ' << pointerText(path);
            codes.insert(placed.finding.rule->code);
        }
    }
    EXPECT_GT(codes.size(), 25U);
}

TEST(CheckRules, HaveCodesOfTheirOwnInOrder) {
    const std::vector<const CheckRule*>& rules = CheckRules::all();
    for (std::size_t index = 1; index < rules.size(); ++index) {
        EXPECT_LT(std::string(rules[index - 1]->code), rules[index]->code);
    }
}

TEST(CheckRules, AreEachTriedWithTheMistakeAndWithTheNearMiss) {
    for (const char* const which : {"one", "none"}) {
        // Tests of their own; what is unlike every variable that is read is QP-406.
        std::set<std::string> tried{CheckRules::NotJson.code, CheckRules::NotAllChecked.code,
                                    CheckRules::NearVariable.code};
        for (const json& row : listed(which)) {
            tried.insert(row[0].get<std::string>());
        }
        for (const CheckRule* const rule : CheckRules::all()) {
            EXPECT_EQ(tried.count(rule->code), 1U) << which << ' ' << rule->code;
        }
    }
}

TEST(KnownProducts, AreThoseThatTheLibraryKnows) {
    for (const std::string& number : knownProducts()) {
        json radio = soundRadio();
        radio["capabilityHandler"]["productNumber"] = number;

        const PowerTable table = PowerTableQuery().run(RadioFileReader::read(radio.dump()));

        EXPECT_NE(table.family.className, "CalculatorVo5") << number;
    }
    EXPECT_EQ(knownProducts().size(), 23U);
}

/// "QP-101 warning a Pmax table rises with the modulation" by code, out of the list of all
/// findings.
std::map<std::string, std::string> listedFindings() {
    std::ifstream document(QOR_PROJECT "/docs/reference/checks.md");
    const std::regex row(R"(\| `(QP-\d{3})` \| (\w+) \| ([^|]+) \| [^|]+ \|)");
    std::map<std::string, std::string> findings;
    for (std::string line; std::getline(document, line);) {
        std::smatch match;
        if (std::regex_match(line, match, row)) {
            findings[match[1]] = match[2].str() + ' ' + match[3].str();
        }
    }
    return findings;
}

TEST(CheckRules, AreListedInTheDocuments) {
    std::map<std::string, std::string> rules;
    for (const CheckRule* const rule : CheckRules::all()) {
        rules[rule->code] = std::string(textOf(rule->severity)) + ' ' + rule->title;
    }

    EXPECT_EQ(listedFindings(), rules);
}

} // namespace
