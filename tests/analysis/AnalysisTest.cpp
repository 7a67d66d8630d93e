#include "Analysis.h"

#include "LoopStride.h"
#include "QuestionInWords.h"
#include "RadioFileReader.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <sys/resource.h>

// What holds of every answer, tried on the example radios. FactsTest.cpp has what they say.

namespace {

using Words = std::vector<std::string>;

Words radioFiles() {
    Words paths;
    for (const auto& entry : std::filesystem::directory_iterator(QOR_EXAMPLE_RADIOS)) {
        paths.push_back(entry.path().string());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string textOfRadio(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Asks the example radios; the second one is what others are compared with.
Reply reply(const Words& words, const TextLook& look = {}) {
    Question question = questionIn(words);
    question.look = look;
    if (question.topic == Question::Topic::Diff) {
        question.otherRadio = textOfRadio(question.otherName);
    }
    return answerTo(question, textOfRadio(question.radioName));
}

nlohmann::json jsonOf(Words words) {
    words.insert(words.end(), {"--format", "json"});
    return nlohmann::json::parse(reply(words).text);
}

/// The sanitizers look at memory through a pipe.
#ifdef __SANITIZE_ADDRESS__
constexpr bool opensFilesItself = true;
#elif defined(__has_feature)
constexpr bool opensFilesItself = __has_feature(address_sanitizer);
#else
constexpr bool opensFilesItself = false;
#endif

/// As long as it lives the process can open nothing.
class NoMoreFiles {
public:
    NoMoreFiles() {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit none{opensFilesItself ? m_before.rlim_cur : 0, m_before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoMoreFiles() { ::setrlimit(RLIMIT_NOFILE, &m_before); }
    NoMoreFiles(const NoMoreFiles&) = delete;
    NoMoreFiles& operator=(const NoMoreFiles&) = delete;

private:
    rlimit m_before{};
};

/// Whether the answer may be no.
bool mayBeNo(const std::string& topic) {
    return topic == "why-not" || topic == "diff";
}

TEST(Answers, OnEveryTopicInEveryFormNeedNoFileAndAreTheSameEachTime) {
    std::size_t count = 0;
    for (const std::string& path : radioFiles()) {
        for (const Words& words : questionsAbout(path, radioFiles().at(1))) {
            if (count++ % loopStride() != 0) {
                continue;
            }
            SCOPED_TRACE(testing::PrintToString(words));
            Question question = questionIn(words);
            const std::string text = textOfRadio(path);
            question.otherRadio = textOfRadio(radioFiles().at(1));

            std::vector<Reply> replies;
            {
                const NoMoreFiles guard;
                replies = {answerTo(question, text), answerTo(question, text)};
            }

            EXPECT_TRUE(replies[0].outcome == Outcome::Done ||
                        (mayBeNo(words[0]) && replies[0].outcome == Outcome::AnswerIsNo));
            EXPECT_TRUE(replies[0].text.ends_with('\n'));
            EXPECT_TRUE(replies[0].messages.empty());
            EXPECT_EQ(replies[0].outcome, replies[1].outcome);
            EXPECT_EQ(replies[0].text, replies[1].text);
            EXPECT_EQ(replies[0].text.find('\x1b'), std::string::npos);
            EXPECT_EQ(words.back() == "json", nlohmann::json::accept(replies[0].text));
        }
    }
    EXPECT_EQ(count, radioFiles().size() * 22);
}

TEST(Answers, AreColouredForPeopleWhereTheLookAllowsIt) {
    TextLook coloured;
    coloured.allowsColor = true;
    for (const Words& words : questionsAbout(radioFiles().at(0), radioFiles().at(1))) {
        const std::string& topic = words.front();
        const bool hasColours =
            words.back() == "text" && (topic == "explain" || topic == "check" || topic == "plot");

        EXPECT_EQ(reply(words, coloured).text.find('\x1b') != std::string::npos, hasColours)
            << testing::PrintToString(words);
    }
}

TEST(Answers, WithoutANameSpeakOfTheRadioAlone) {
    Question question = questionIn({"table", ""});

    EXPECT_EQ(answerTo(question, "{}").messages, Words{"/channel: required key is missing"});
}

TEST(Answers, HoldAsManyCodesAsARadioFileMayList) {
    nlohmann::json radio =
        nlohmann::json::parse(textOfRadio(radioFiles().at(0)), nullptr, true, true);
    nlohmann::json& codes = radio.at("frameFormat").at("modulationAndCodes");
    codes = nlohmann::json::array();
    for (std::size_t index = 0; index < RadioFileReader::maxCodes; ++index) {
        codes.push_back(index % 2 == 0 ? 31 : 41);
    }

    const Reply sut = answerTo(questionIn({"table", "it", "--format", "csv"}), radio.dump());

    EXPECT_EQ(std::count(sut.text.begin(), sut.text.end(), '\n'),
              static_cast<std::ptrdiff_t>(RadioFileReader::maxCodes) + 1);
}

/// How many columns a text takes.
std::ptrdiff_t widestLineOf(const std::string& text) {
    std::istringstream lines(text);
    std::ptrdiff_t widest = 0;
    for (std::string line; std::getline(lines, line);) {
        const auto width = std::count_if(line.begin(), line.end(), [](char byte) {
            return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
        });
        widest = std::max(widest, width);
    }
    return widest;
}

TEST(Pictures, AreAsWideAsTheyMay) {
    for (const std::string& path : radioFiles()) {
        for (const std::ptrdiff_t width : {80, 132}) {
            TextLook look;
            look.width = static_cast<std::size_t>(width);

            const std::string text =
                reply({"plot", path, "--over", "temporary-cutback"}, look).text;

            EXPECT_LE(widestLineOf(text), width) << text;
            EXPECT_GT(widestLineOf(text), width - 10) << text;
        }
    }
}

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t number = 0;
    for (std::size_t place = text.find(part); place != std::string::npos;
         place = text.find(part, place + part.size())) {
        ++number;
    }
    return number;
}

/// What is wrong with a text as XML: tags that do not match, an open quotation, a bare ampersand.
std::string xmlTroubleOf(const std::string& text) {
    Words open;
    std::size_t place = text.find("?>") + 2;
    while ((place = text.find_first_of("<&", place)) != std::string::npos) {
        const std::size_t end = text.find(text[place] == '<' ? '>' : ';', place);
        if (end == std::string::npos) {
            return "no end of what begins at " + text.substr(place, 40);
        }
        const std::string inside = text.substr(place + 1, end - place - 1);
        if (text[place] == '&') {
            if (inside != "amp" && inside != "lt" && inside != "gt" && inside != "quot") {
                return "unknown entity " + inside.substr(0, 40);
            }
        } else if (countOf(inside, "\"") % 2 != 0) {
            return "open quotation in " + inside;
        } else if (inside.front() == '/') {
            if (open.empty() || open.back() != inside.substr(1)) {
                return "unexpected end " + inside;
            }
            open.pop_back();
        } else if (inside.back() != '/') {
            open.push_back(inside.substr(0, inside.find(' ')));
        }
        place = end + 1;
    }
    return open.empty() ? "" : "no end of " + open.back();
}

void expectSvg(const std::string& svg) {
    EXPECT_EQ(xmlTroubleOf(svg), "");
    EXPECT_TRUE(svg.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns="));
    EXPECT_EQ(svg.find("<script"), std::string::npos);
    EXPECT_EQ(svg.find("href"), std::string::npos);
    EXPECT_EQ(countOf(svg, "<title id=\"title\">"), 1U);
    EXPECT_EQ(countOf(svg, "<desc id=\"description\">"), 1U);
}

TEST(Pictures, AreWellFormedAndHaveNoScript) {
    for (const std::string& path : radioFiles()) {
        for (const char* const input : {"", "rsec", "cutback", "channel-spacing"}) {
            SCOPED_TRACE(path + ' ' + input);
            Question question = questionIn({"plot", path, "--format", "svg"});
            if (*input != '\0') {
                question.over = {input};
            }

            expectSvg(answerTo(question, textOfRadio(path)).text);
        }
    }
}

TEST(Pictures, HoldTextsThatLookLikeTags) {
    nlohmann::json radio =
        nlohmann::json::parse(textOfRadio(radioFiles().at(0)), nullptr, true, true);
    radio["capabilityHandler"]["productNumber"] = "<script>&\"'\n\a";

    expectSvg(answerTo(questionIn({"plot", "it", "--format", "svg"}), radio.dump()).text);
}

/// The words that ask for the table of the configured frame format, and for that of each id.
std::vector<Words> tablesOf(const std::string& path) {
    const auto radio = nlohmann::json::parse(textOfRadio(path), nullptr, true, true);
    std::vector<Words> tables{{"table", path}};
    for (const auto& record : radio.at("hardwareConfigurationHandler").at("frameFormats")) {
        tables.push_back({"table", path, "--frame-format", record.at("id").dump()});
    }
    return tables;
}

// Limits of the radio, of the selection and of the booster belong to an example. Missing rows,
// missing table entries and unknown versions do not.
TEST(ExampleRadios, LeaveACodeWithoutPowerOnlyBecauseOfALimit) {
    for (const std::string& path : radioFiles()) {
        for (const Words& words : tablesOf(path)) {
            const auto table = jsonOf(words);

            EXPECT_TRUE(table.at("notes").empty()) << table.dump(2);
            EXPECT_FALSE(table.at("rows").at(0).at("maxPowerCentiDbm").is_null()) << table.dump(2);
            for (const auto& row : table.at("rows")) {
                EXPECT_TRUE(row.at("warning").is_null()) << row;
                EXPECT_FALSE(row.at("belowMinimum").get<bool>()) << row;
                if (row.at("maxPowerCentiDbm").is_null()) {
                    EXPECT_TRUE(row.at("reason").get<std::string>().starts_with("above the "))
                        << row;
                }
            }
        }
    }
}

nlohmann::json powersIn(const nlohmann::json& rows) {
    nlohmann::json powers;
    for (const auto& row : rows) {
        powers.push_back(row.at("maxPowerCentiDbm"));
    }
    return powers;
}

// What a table can be asked for by an input of its own gives the same powers there.
TEST(Sweeps, AgreeWithTheTableOfEachValue) {
    const std::vector<Words> inputs{{"rsec", "6LB"},
                                    {"cutback", "2.5"},
                                    {"temporary-cutback", "7"},
                                    {"booster", "7,15,14,256QAM"}};
    for (const std::string& path : radioFiles()) {
        for (const Words& input : inputs) {
            const auto sweep = jsonOf({"sweep", path, "--over", input[0] + '=' + input[1]});
            const auto table = jsonOf({"table", path, "--" + input[0], input[1]});

            EXPECT_EQ(powersIn(sweep.at("points").at(0).at("rows")), powersIn(table.at("rows")))
                << path << ' ' << input[0];
        }
    }
}

} // namespace
