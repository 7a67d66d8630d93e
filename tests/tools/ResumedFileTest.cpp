#include "ResumedFile.h"

#include "AnalysisError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

namespace {

class ResumedFileTest : public testing::Test {
protected:
    ~ResumedFileTest() override { std::remove(path.c_str()); }

    void write(const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

    std::string content() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const std::string path = testing::TempDir() + "qor-resumed-file-" + std::to_string(::getpid());
};

TEST_F(ResumedFileTest, TellsItsLinesAndKeepsTheRestUntilItIsCut) {
    write("one\ntwo\nthr");
    ResumedFile sut(path);

    EXPECT_EQ(sut.lines(), 2U);
    EXPECT_EQ(sut.first(), "one\n");
    EXPECT_EQ(sut.last(), "two\n");
    EXPECT_EQ(sut.rest(), "thr");
    EXPECT_EQ(content(), "one\ntwo\nthr");

    sut.cutRest();
    std::fputs("three\n", sut.stream());
    std::fflush(sut.stream());

    EXPECT_EQ(content(), "one\ntwo\nthree\n");
}

TEST_F(ResumedFileTest, IsEmptyWhereNoneIs) {
    const ResumedFile sut(path);

    EXPECT_EQ(sut.lines(), 0U);
    EXPECT_EQ(sut.rest(), "");
}

TEST_F(ResumedFileTest, BelongsToOneRun) {
    const ResumedFile first(path);

    try {
        const ResumedFile second(path);
        ADD_FAILURE() << "two runs write one file";
    } catch (const AnalysisError& error) {
        EXPECT_THAT(error.what(), testing::EndsWith(": cannot go on: another run is writing it"));
    }
}

TEST_F(ResumedFileTest, HasNoLineThatNoAnswerWouldBe) {
    const std::string text(ResumedFile::maxLine + (std::size_t{1} << 20), 'x');
    write(text);

    EXPECT_THROW(ResumedFile sut(path), AnalysisError);
    EXPECT_EQ(content(), text);
}

} // namespace
