#include "DrivenTool.h"
#include "Expectations.h"
#include "HostileFile.h"
#include "MeasuredTool.h"
#include "ToolCommand.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <ostream>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

// The tool against files that are made to break or exhaust it. Whatever the file, the tool says one
// clear line, ends with the documented status, stays within a second of processor time and 64 MiB
// of memory, and leaves nothing behind.

namespace {

/// A file that is refused.
struct Refused {
    const char* name;
    void (*write)(HostileFile& file);
    const char* problem;
};

std::ostream& operator<<(std::ostream& stream, const Refused& refused) {
    return stream << refused.name;
}

class RefusedFile : public testing::TestWithParam<std::tuple<ToolCommand, Refused>> {};

TEST_P(RefusedFile, isOneLineAndStatus2) {
    const auto& [command, refused] = GetParam();
    StagedCommand staged(command);
    HostileFile file;
    refused.write(file);

    const ToolRun run = staged.on(file.path()).run();

    expectRefusal(command, run, refused.problem);
    EXPECT_TRUE(file.isUntouched());
    EXPECT_TRUE(staged.isUntouched());
}

constexpr const char* tooLarge = "(document): larger than 2097152 bytes";
constexpr const char* tooMany = "more than 150000 values";

const std::vector<Refused> largeFiles{
    {"hundredMebibytesOfNothing",
     [](HostileFile& file) { file.add(100, std::string(mebibyte, '\0')); }, tooLarge},
    {"hundredMebibytesOfBlanks", [](HostileFile& file) { file.add(100 * mebibyte, " "); },
     tooLarge},
    {"sixteenMebibytesOfZeros",
     [](HostileFile& file) { file.add("[").fillTo(16 * mebibyte, "0,"); }, tooLarge},
    {"aByteTooMany",
     [](HostileFile& file) { file.add("{").fillTo(2 * mebibyte - 1, " ").add("} "); }, tooLarge},
    {"asLargeAsAllowed",
     [](HostileFile& file) { file.add("{").fillTo(2 * mebibyte - 1, " ").add("}"); },
     "/channel: required key is missing"},
    {"zeros", [](HostileFile& file) { file.add("[0").fillTo(2 * mebibyte - 2, ",0").add("]"); },
     tooMany},
    {"zerosWithoutEnd", [](HostileFile& file) { file.add("[0").fillTo(2 * mebibyte - 2, ",0"); },
     tooMany},
    {"emptyObjects",
     [](HostileFile& file) { file.add("[{}").fillTo(2 * mebibyte - 4, ",{}").add("]"); }, tooMany},
    {"emptyLists",
     [](HostileFile& file) { file.add("[[]").fillTo(2 * mebibyte - 4, ",[]").add("]"); }, tooMany},
    {"emptyTexts",
     [](HostileFile& file) { file.add("[\"\"").fillTo(2 * mebibyte - 4, ",\"\"").add("]"); },
     tooMany},
    {"objectsInObjects",
     [](HostileFile& file) {
         file.add("[{\"a\":{}}").fillTo(2 * mebibyte - 11, ",{\"a\":{}}").add("]");
     },
     tooMany},
    {"asManyValuesAsAllowed", // the list itself is one
     [](HostileFile& file) { file.add("[0").add(149998, ",0").add("]"); },
     "(document): expected an object, found a list"},
    {"aValueTooMany", [](HostileFile& file) { file.add("[0").add(149999, ",0").add("]"); },
     "/149999: more than 150000 values"},
    {"largestObjectsOfAll",
     [](HostileFile& file) { file.add("[{\"a\":{}}").add(74998, ",{\"a\":{}}").add("]"); },
     "(document): expected an object, found a list"},
    {"oneText", [](HostileFile& file) { file.add("\"").fillTo(2 * mebibyte - 1, "k").add("\""); },
     "(document): expected an object, found \"kkkk"},
    {"textOfEscapes",
     [](HostileFile& file) { file.add("\"").fillTo(2 * mebibyte - 8, "\\u0001").add("\""); },
     "(document): expected an object, found \"\\u0001\\u0001"},
    {"keyOfAMebibyte", [](HostileFile& file) { file.add("{\"").add(mebibyte, "k").add("\": 1}"); },
     "...: unknown key"},
    {"keyOfHalfAMebibyteTwice",
     [](HostileFile& file) {
         file.add("{\"")
             .add(mebibyte / 2, "k")
             .add("\": 1, \"")
             .add(mebibyte / 2, "k")
             .add("\": 1}");
     },
     "...: key given twice"},
    {"callOfAMebibyte",
     [](HostileFile& file) {
         file.add(radioStart).add("\"requests\": [{\"call\": \"").add(mebibyte, "k").add("\"}]}");
     },
     "/requests/0/call: unknown call \"kkkk"},
    {"numberOfAMebibyte",
     [](HostileFile& file) { file.add("{\"channel\": ").add(mebibyte, "1").add("}"); },
     "/channel: number too large: 1111"},
    {"smallNumberOfAMebibyte",
     [](HostileFile& file) { file.add("{\"channel\": 0.").add(mebibyte, "0").add("1}"); },
     "/channel: expected an integer, found 0.0000"},
    {"commentWithoutEnd", [](HostileFile& file) { file.add("/*").fillTo(2 * mebibyte, "*"); },
     "syntax error"},
    {"lineFeeds", [](HostileFile& file) { file.add("{").fillTo(2 * mebibyte, "\n"); },
     "2097152:1: syntax error"},
    {"aThousandPatchesToALongName",
     [](HostileFile& file) {
         file.add(radioStart).add(capabilityHandler).add(",\n\"requests\": [");
         file.add("{\"call\": \"patch\", \"file\": {\"variables\": {\"");
         file.add(mebibyte, "k").add("\": 1}}}");
         file.add(1000, ",{\"call\": \"patch\", \"file\": {\"variables\": {\"v\": 2}}}").add("]}");
     },
     "the patches up to this one"},
    {"aThousandPatchesToALongProductNumber",
     [](HostileFile& file) {
         file.add(radioStart).add("\"capabilityHandler\": {\"productNumber\": \"");
         file.add(mebibyte, "k").add("\"}, \"requests\": [{\"call\": \"findPminPmax\"}");
         file.add(1000, ",{\"call\": \"patch\", \"file\":"
                        " {\"capabilityHandler\": {\"minOutputPower\": 1}}}")
             .add("]}");
     },
     "the patches up to this one"},
    {"aListTooLong",
     [](HostileFile& file) {
         file.add(radioStart).add("\"capabilityHandler\": {\"pmaxDpd1Etsi\": {\"integers\": [0");
         file.add(4096, ",0").add("]}}}");
     },
     "/capabilityHandler/pmaxDpd1Etsi/integers: longer than 512 elements"},
};

std::string nested(const char* open, std::size_t times) {
    std::string text;
    for (std::size_t depth = 0; depth < times; ++depth) {
        text += open;
    }
    return text;
}

const std::vector<Refused> deepFiles{
    {"lists", [](HostileFile& file) { file.add(mebibyte, "["); }, "nested deeper than 64 levels"},
    {"objects", [](HostileFile& file) { file.add(mebibyte / 4, "{\"a\":"); },
     "/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/"
     "a/"
     "a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a: nested deeper than 64 levels"},
    {"listsInObjects", [](HostileFile& file) { file.add(mebibyte / 4, "[{\"a\":"); },
     "nested deeper than 64 levels"},
    {"aLevelTooDeep", [](HostileFile& file) { file.add(nested("[", 65)).add(nested("]", 65)); },
     "nested deeper than 64 levels"},
    {"asDeepAsAllowed", [](HostileFile& file) { file.add(nested("[", 64)).add(nested("]", 64)); },
     "(document): expected an object, found a list"},
};

const std::vector<Refused> oddNumbers{
    {"largeExponent", [](HostileFile& file) { file.add("{\"channel\": 1e999999999}"); },
     "/channel: number too large: 1e999999999"},
    {"smallExponent", [](HostileFile& file) { file.add("{\"channel\": 1e-999999999}"); },
     "/channel: expected an integer, found 1e-999999999"},
    {"minusLarge", [](HostileFile& file) { file.add("{\"channel\": -1e400}"); },
     "/channel: number too large: -1e400"},
    {"twentyDigits", [](HostileFile& file) { file.add("{\"channel\": 18446744073709551616}"); },
     "/channel: 18446744073709551616 is out of range; expected 0 to 4294967295"},
    {"aboveTheField", [](HostileFile& file) { file.add("{\"channel\": 4294967296}"); },
     "/channel: 4294967296 is out of range; expected 0 to 4294967295"},
    {"integerWithFraction", [](HostileFile& file) { file.add("{\"channel\": 1.0}"); },
     "/channel: expected an integer, found 1.0"},
    {"notANumber", [](HostileFile& file) { file.add("{\"channel\": NaN}"); }, "1:13: syntax error"},
    {"plusSign", [](HostileFile& file) { file.add("{\"channel\": +1}"); }, "1:13: syntax error"},
    {"leadingZero", [](HostileFile& file) { file.add("{\"channel\": 01}"); }, "1:14: syntax error"},
};

const std::vector<Refused> oddTexts{
    {"nothing", [](HostileFile& file) { file.add(""); }, "1:1: syntax error"},
    {"blanksOnly", [](HostileFile& file) { file.add(" \n "); }, "2:2: syntax error"},
    {"byteOrderMarkOnly", [](HostileFile& file) { file.add("\xEF\xBB\xBF"); }, "1:1: syntax error"},
    {"sixteenBitText", [](HostileFile& file) { file.add(std::string_view("\xFF\xFE{\0}\0", 6)); },
     "1:4: syntax error: NUL byte"},
    {"nulInFront", [](HostileFile& file) { file.add(std::string_view("\0{}", 3)); },
     "1:1: syntax error: NUL byte"},
    {"nulInAText", [](HostileFile& file) { file.add(std::string_view("{\"a\0\": 1}", 9)); },
     "1:4: syntax error: NUL byte"},
    {"nulAtTheEnd", [](HostileFile& file) { file.add(std::string_view("{\"channel\": 1}\0", 15)); },
     "1:15: syntax error: NUL byte"},
    {"invalidByteInAText", [](HostileFile& file) { file.add("{\"channel\": \"\xFF\"}"); },
     "1:14: syntax error"},
    {"invalidByteInAKey", [](HostileFile& file) { file.add("{\"\xC3\x28\": 1}"); },
     "1:4: syntax error"},
    {"overlongSlash", [](HostileFile& file) { file.add("{\"\xC0\xAF\": 1}"); },
     "1:3: syntax error"},
    {"halfACharacterAtTheEnd", [](HostileFile& file) { file.add("{\"\xE2\x82"); },
     "1:4: syntax error"},
    {"surrogateAsBytes", [](HostileFile& file) { file.add("{\"\xED\xA0\x80\": 1}"); },
     "1:4: syntax error"},
    {"halfASurrogatePair", [](HostileFile& file) { file.add("{\"\\ud800\": 1}"); }, "syntax error"},
    {"terminalCodesInAKey", [](HostileFile& file) { file.add("{\"\\u001b[2J\\n\": 1}"); },
     "/\\u001b[2J\\u000a: unknown key"},
    {"keyTwice", [](HostileFile& file) { file.add("{\"channel\": 1, \"channel\": 1}"); },
     "/channel: key given twice"},
    {"keyTwiceSpelledOtherwise",
     [](HostileFile& file) { file.add("{\"channel\": 1, \"\\u0063hannel\": 1}"); },
     "/channel: key given twice"},
    {"keyTwiceInAPatch",
     [](HostileFile& file) {
         file.add(radioStart)
             .add("\"requests\": [{\"call\": \"patch\", \"file\":"
                  " {\"board\": {}, \"board\": {}}}]}");
     },
     "/requests/0/file/board: key given twice"},
    {"twoDocuments", [](HostileFile& file) { file.add("{\"channel\": 1} {\"channel\": 1}"); },
     "1:16: syntax error"},
};

/// Whether a command reads a file in its own way, or has its own way to say what is wrong with it.
bool hasOwnWay(const ToolCommand& command) {
    const std::vector<std::string_view> names{"replay", "check"};
    return std::find(names.begin(), names.end(), command.name) != names.end();
}

std::vector<ToolCommand> commandsInOwnWay() {
    std::vector<ToolCommand> found = radioFileCommands();
    std::erase_if(found, std::not_fn(hasOwnWay));
    return found;
}

/// The others share one way. Some files of each kind are enough for them.
std::vector<ToolCommand> commandsInCommonWay() {
    std::vector<ToolCommand> found = radioFileCommands();
    std::erase_if(found, hasOwnWay);
    return found;
}

std::vector<Refused> filesOfEachKind() {
    const std::vector<std::string_view> names{"aByteTooMany",
                                              "emptyLists",
                                              "keyOfHalfAMebibyteTwice",
                                              "numberOfAMebibyte",
                                              "objects",
                                              "largeExponent",
                                              "nulInAText",
                                              "invalidByteInAText",
                                              "keyTwice",
                                              "terminalCodesInAKey",
                                              "nothing"};
    std::vector<Refused> found;
    for (const auto& files : {largeFiles, deepFiles, oddNumbers, oddTexts}) {
        std::copy_if(files.begin(), files.end(), std::back_inserter(found),
                     [&names](const Refused& refused) {
                         return std::find(names.begin(), names.end(), refused.name) != names.end();
                     });
    }
    return found;
}

std::string nameOfRefused(const testing::TestParamInfo<std::tuple<ToolCommand, Refused>>& test) {
    return std::string(std::get<0>(test.param).name) + '_' + std::get<1>(test.param).name;
}

INSTANTIATE_TEST_SUITE_P(Large, RefusedFile,
                         testing::Combine(testing::ValuesIn(DrivenTool::chosen(commandsInOwnWay())),
                                          testing::ValuesIn(largeFiles)),
                         nameOfRefused);

INSTANTIATE_TEST_SUITE_P(Deep, RefusedFile,
                         testing::Combine(testing::ValuesIn(commandsInOwnWay()),
                                          testing::ValuesIn(deepFiles)),
                         nameOfRefused);

INSTANTIATE_TEST_SUITE_P(Numbers, RefusedFile,
                         testing::Combine(testing::ValuesIn(commandsInOwnWay()),
                                          testing::ValuesIn(oddNumbers)),
                         nameOfRefused);

INSTANTIATE_TEST_SUITE_P(Texts, RefusedFile,
                         testing::Combine(testing::ValuesIn(commandsInOwnWay()),
                                          testing::ValuesIn(oddTexts)),
                         nameOfRefused);

INSTANTIATE_TEST_SUITE_P(
    OfEachKind, RefusedFile,
    testing::Combine(testing::ValuesIn(DrivenTool::chosen(commandsInCommonWay())),
                     testing::ValuesIn(filesOfEachKind())),
    nameOfRefused);

} // namespace
