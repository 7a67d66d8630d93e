#include "RadioFileReader.h"

#include "SampleFile.h"

#include <gmock/gmock.h>

#include <ostream>

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::Pair;

/// The sample file with a run of patches.
json filePatchedBy(const std::vector<std::string>& patches) {
    json file = sampleFile();
    for (const std::string& patch : patches) {
        file["requests"].push_back({{"call", "patch"}, {"file", json::parse(patch)}});
    }
    return file;
}

/// What the node answers after the last of some patches.
NodeAnswers answersAfter(const std::vector<std::string>& patches) {
    const RadioFile file = readFile(filePatchedBy(patches));
    return std::get<Calls::Patch>(file.requests.back().call).answers;
}

std::string patchErrorOf(const json& file) {
    try {
        readFile(file);
    } catch (const RadioFileError& error) {
        return error.what();
    }
    return std::string();
}

TEST(PatchTest, changesOneAnswerAndSharesAllOthers) {
    const RadioFile file = readFile(filePatchedBy({R"({"frameFormat": {"market": "Ansi"}})"}));

    const NodeAnswers& answers = std::get<Calls::Patch>(file.requests.at(0).call).answers;
    EXPECT_EQ(answers.frameFormat->market, EFrameFormatMarket::Ansi);
    EXPECT_EQ(answers.frameFormat->modulation, Modulation::QAM128);
    EXPECT_EQ(file.node.frameFormat->market, EFrameFormatMarket::Etsi);
    EXPECT_EQ(answers.capabilityHandler, file.node.capabilityHandler);
    EXPECT_EQ(answers.acmHandler, file.node.acmHandler);
    EXPECT_EQ(answers.systemPowerController, file.node.systemPowerController);
    EXPECT_EQ(answers.hardwareConfigurationHandler, file.node.hardwareConfigurationHandler);
    EXPECT_EQ(answers.variables, file.node.variables);
}

TEST(PatchTest, anEmptyPatchChangesNothing) {
    const RadioFile file = readFile(filePatchedBy({"{}"}));

    const NodeAnswers& answers = std::get<Calls::Patch>(file.requests.at(0).call).answers;
    EXPECT_EQ(answers.frameFormat, file.node.frameFormat);
    EXPECT_EQ(answers.carrierAggregation, file.node.carrierAggregation);
}

TEST(PatchTest, buildsOnThePatchesBeforeIt) {
    const NodeAnswers answers = answersAfter({R"({"frameFormat": {"market": "Ansi"}})",
                                              R"({"frameFormat": {"dpdVersion": 1}})",
                                              R"({"board": {"carrierAggregation": true}})"});

    EXPECT_EQ(answers.frameFormat->market, EFrameFormatMarket::Ansi);
    EXPECT_EQ(answers.frameFormat->dpdVersion, EDpdVersion::Dpd1);
    EXPECT_TRUE(answers.carrierAggregation);
}

TEST(PatchTest, addsAndRemovesKeysInsideANeighbour) {
    const NodeAnswers answers = answersAfter(
        {R"({"capabilityHandler": {"productNumber": null, "pmaxDpd2Etsi": [["4QAM", 1]],
             "maxModulationLimitedByHw": {"1": null, "9": "CW"}}})"});

    EXPECT_FALSE(answers.capabilityHandler->productNumber.has_value());
    EXPECT_THAT(std::get<std::vector<int>>(*answers.capabilityHandler->pmaxDpd2Etsi),
                ElementsAre(4, 1));
    EXPECT_THAT((std::get<std::map<short, Modulation>>(
                    *answers.capabilityHandler->maxModulationLimitedByHw)),
                ElementsAre(Pair(3, Modulation::QAM1024), Pair(5, Modulation::QAM16),
                            Pair(9, Modulation::CW)));
}

TEST(PatchTest, replacesListsAsAWhole) {
    const NodeAnswers answers = answersAfter({R"({"frameFormat": {"performanceProfiles": [9]}})"});

    EXPECT_THAT(answers.frameFormat->performanceProfiles, ElementsAre(9));
}

TEST(PatchTest, exchangesATableForAResultAndBack) {
    const RadioFile file =
        readFile(filePatchedBy({R"({"capabilityHandler": {"pmaxDpd1Etsi": {"result": 32770}}})",
                                R"({"capabilityHandler": {"pmaxDpd1Etsi": [["16QAM", 5]]}})"}));

    const auto pmaxAfter = [&file](std::size_t request) {
        return *std::get<Calls::Patch>(file.requests.at(request).call)
                    .answers.capabilityHandler->pmaxDpd1Etsi;
    };
    EXPECT_EQ(std::get<ResultOnly>(pmaxAfter(0)).result, 32770U);
    EXPECT_THAT(std::get<std::vector<int>>(pmaxAfter(1)), ElementsAre(16, 5));
}

TEST(PatchTest, exchangesAnAcmSelectionForAResultByRemovingIt) {
    const NodeAnswers answers =
        answersAfter({R"({"acmHandler": {"min": null, "max": null, "result": 5}})"});

    EXPECT_EQ(std::get<ResultOnly>(*answers.acmHandler->selection).result, 5U);
}

TEST(PatchTest, removesVariablesOneByOneOrAll) {
    const NodeAnswers one = answersAfter(
        {R"({"variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": null, "new": [7]}})"});
    const NodeAnswers none = answersAfter({R"({"variables": null})"});

    EXPECT_THAT(*one.variables,
                ElementsAre(Pair("channel.1.tx.rf.pmax.cs.comp.v2.arraysize", ElementsAre(4)),
                            Pair("new", ElementsAre(7))));
    EXPECT_EQ(none.variables, nullptr);
}

TEST(PatchTest, removesTheBoardWhichThenAnswersNo) {
    const NodeAnswers answers =
        answersAfter({R"({"board": {"carrierAggregation": true}})", R"({"board": null})"});

    EXPECT_FALSE(answers.carrierAggregation);
}

TEST(PatchTest, mayRemoveWhatIsNotThere) {
    EXPECT_EQ(patchErrorOf(filePatchedBy({R"({"board": null, "unheardOf": null})"})), "");
}

TEST(PatchTest, mayRemoveANeighbourThatIsNotThere) {
    EXPECT_EQ(patchErrorOf(json::parse(R"({"channel": 1, "requests": [
                  {"call": "patch", "file": {"acmHandler": null}}]})")),
              "");
}

struct BadPatch {
    const char* name;
    const char* patch;
    const char* error;
};

std::ostream& operator<<(std::ostream& stream, const BadPatch& bad) {
    return stream << bad.name;
}

class BadPatchTest : public testing::TestWithParam<BadPatch> {};

TEST_P(BadPatchTest, isRefusedWithPlaceAndReason) {
    EXPECT_EQ(patchErrorOf(filePatchedBy({GetParam().patch})), GetParam().error);
}

const BadPatch badPatches[] = {
    {"list", "[]", "/requests/0/file: expected an object, found a list"},
    {"null", "null", "/requests/0/file: expected an object, found null"},
    {"channel", R"({"channel": 1})", "/requests/0/file/channel: a patch cannot change \"channel\""},
    {"channelRemoved", R"({"channel": null})",
     "/requests/0/file/channel: a patch cannot change \"channel\""},
    {"requests", R"({"requests": []})",
     "/requests/0/file/requests: a patch cannot change \"requests\""},
    {"requestsRemoved", R"({"requests": null})",
     "/requests/0/file/requests: a patch cannot change \"requests\""},
    {"capabilityHandlerRemoved", R"({"capabilityHandler": null})",
     "/requests/0/file/capabilityHandler: a patch cannot remove a neighbour"},
    {"acmHandlerRemoved", R"({"acmHandler": null})",
     "/requests/0/file/acmHandler: a patch cannot remove a neighbour"},
    {"frameFormatRemoved", R"({"frameFormat": null})",
     "/requests/0/file/frameFormat: a patch cannot remove a neighbour"},
    {"systemPowerControllerRemoved", R"({"systemPowerController": null})",
     "/requests/0/file/systemPowerController: a patch cannot remove a neighbour"},
    {"hardwareConfigurationHandlerRemoved", R"({"hardwareConfigurationHandler": null})",
     "/requests/0/file/hardwareConfigurationHandler: a patch cannot remove a neighbour"},
    {"neighbourReplaced", R"({"acmHandler": 5})",
     "/requests/0/file/acmHandler: expected an object, found 5"},
    {"unknownKey", R"({"frameFormt": {}})",
     "/requests/0/file/frameFormt: unknown key; did you mean \"frameFormat\"?"},
    {"unknownKeyInside", R"({"frameFormat": {"markt": "Ansi"}})",
     "/requests/0/file/frameFormat/markt: unknown key; did you mean \"market\"?"},
    {"wrongValue", R"({"frameFormat": {"market": "Asni"}})",
     "/requests/0/file/frameFormat/market: unknown market \"Asni\"; did you mean \"Ansi\"?"},
    {"wrongElement", R"({"frameFormat": {"modulationAndCodes": [31, 1.5]}})",
     "/requests/0/file/frameFormat/modulationAndCodes/1: expected a text or an integer "
     "(modulation-and-code), found 1.5"},
    {"nullInAList", R"({"variables": {"a": [1, null]}})",
     "/requests/0/file/variables/a/1: expected an integer, found null"},
    {"requiredKeyRemoved", R"({"frameFormat": {"market": null}})",
     "/requests/0/file/frameFormat/market: required key is missing"},
    {"halfASelectionRemoved", R"({"acmHandler": {"min": null}})",
     "/requests/0/file/acmHandler/min: required key is missing"},
    {"resultBesideWhatIsThere", R"({"acmHandler": {"result": 1}})",
     "/requests/0/file/acmHandler: expected \"result\" alone, or \"min\" and \"max\""},
    {"rowsReplacedByBothForms", R"({"capabilityHandler": {"pmaxDpd2Etsi": {"integers": []}}})",
     "/requests/0/file/capabilityHandler/pmaxDpd2Etsi: expected exactly one of \"integers\" and "
     "\"result\""},
};
INSTANTIATE_TEST_SUITE_P(EveryKind, BadPatchTest, testing::ValuesIn(badPatches),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(PatchTest, namesThePlaceInThePatchedFileWhereThePatchDoesNotReach) {
    json file = filePatchedBy({R"({"acmHandler": {"min": 31}})"});
    file["acmHandler"] = json::object();

    EXPECT_EQ(patchErrorOf(file),
              "/requests/0/file: in the patched file, /acmHandler/max: required key "
              "is missing");
}

TEST(PatchTest, cannotAddANeighbour) {
    for (const std::string key : {"capabilityHandler", "acmHandler", "frameFormat",
                                  "systemPowerController", "hardwareConfigurationHandler"}) {
        json file = filePatchedBy({R"({")" + key + R"(": {}})"});
        file.erase(key);

        EXPECT_EQ(patchErrorOf(file),
                  "/requests/0/file/" + key + ": a patch cannot add a neighbour");
    }
}

TEST(PatchTest, isCheckedAfterAllPatchesBeforeIt) {
    const json file = filePatchedBy(
        {R"({"acmHandler": {"min": null, "max": null}})", R"({"acmHandler": {"min": 31}})"});

    EXPECT_EQ(patchErrorOf(file),
              "/requests/1/file: in the patched file, /acmHandler/max: required key "
              "is missing");
}

TEST(PatchTest, needsAFile) {
    EXPECT_EQ(patchErrorOf(sampleFileWith(R"([{"call": "patch"}])")),
              "/requests/0/file: required key is missing");
}

/// A file whose variables change with every patch, so that each patch keeps all of them.
std::string fileWithPatchesTo(const std::string& variables, int patches) {
    std::string file = R"({"channel": 1, "variables": )" + variables + R"(, "requests": [)";
    for (int patch = 0; patch < patches; ++patch) {
        file += R"({"call": "patch", "file": {"variables": {}}})";
        file += patch < patches - 1 ? "," : "]}";
    }
    return file;
}

TEST(PatchTest, refusesMorePatchesToALargeSectionThanCanBeKept) {
    // 1024 elements of 8 bytes, 8 for the list, 128 and 1 for the key and 8 for the section are
    // 8337 bytes: 2012 times that is 16774044, and 2013 times is 16782381, more than 16777216.
    const std::string large = json{{"a", std::vector<int>(1024, 1)}}.dump();

    EXPECT_EQ(RadioFileReader::read(fileWithPatchesTo(large, 2012)).requests.size(), 2012U);
    try {
        RadioFileReader::read(fileWithPatchesTo(large, 2013));
        FAIL() << "not refused";
    } catch (const RadioFileError& error) {
        EXPECT_STREQ(error.what(),
                     "/requests/2012/file: the patches up to this one change sections "
                     "of more than 16777216 bytes in all");
    }
}

TEST(PatchTest, countsTheNamesThatEveryPatchKeeps) {
    // A name of 1048576 bytes, 128 for its key, 8 for the value and 8 for the section are 1048720
    // bytes: 15 times that is 15730800, and 16 times is 16779520.
    const std::string large = json{{std::string(1048576, 'k'), 1}}.dump();

    EXPECT_EQ(RadioFileReader::read(fileWithPatchesTo(large, 15)).requests.size(), 15U);
    EXPECT_THROW(RadioFileReader::read(fileWithPatchesTo(large, 16)), RadioFileError);
}

} // namespace
