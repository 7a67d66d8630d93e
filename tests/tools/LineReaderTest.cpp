#include "LineReader.h"

#include "AnalysisError.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

/// A file with a text, taken away at the end.
class TextFile {
public:
    explicit TextFile(const std::string& text) {
        const int file = ::mkstemp(m_path);
        EXPECT_EQ(::write(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        ::close(file);
    }
    ~TextFile() { std::remove(m_path); }
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    std::string path() const { return m_path; }

private:
    char m_path[32] = "/tmp/qor-lines-XXXXXX";
};

/// The lines of a text; one that is too long ends in "...".
std::vector<std::string> linesOf(const std::string& text, std::size_t limit) {
    const TextFile file(text);
    LineReader sut(file.path(), limit);
    std::vector<std::string> lines;
    while (const auto line = sut.next()) {
        lines.push_back(line->text + (line->isTooLong ? "..." : ""));
    }
    return lines;
}

using Lines = std::vector<std::string>;

TEST(LineReader, OfNothingHasNoLines) {
    EXPECT_EQ(linesOf("", 10), Lines{});
}

TEST(LineReader, TakesLineEndsAway) {
    EXPECT_EQ(linesOf("a\nbc\r\n", 10), (Lines{"a", "bc"}));
}

TEST(LineReader, TakesALastLineWithoutAnEnd) {
    EXPECT_EQ(linesOf("a\nbc", 10), (Lines{"a", "bc"}));
}

TEST(LineReader, KeepsEmptyLines) {
    EXPECT_EQ(linesOf("\n\na\n\n", 10), (Lines{"", "", "a", ""}));
}

TEST(LineReader, CutsALineBehindTheLimitOnly) {
    EXPECT_EQ(linesOf("1234\n12345\n123456\n1\n", 5), (Lines{"1234", "12345", "12345...", "1"}));
}

TEST(LineReader, JoinsWhatABlockHasParted) {
    // A block holds 65536 bytes: lines that end in front of its end, at it and behind it.
    for (const std::size_t length : {65534U, 65535U, 65536U, 65537U, 200000U}) {
        const std::string longLine(length, 'x');

        EXPECT_EQ(linesOf(longLine + "\nshort\n", 300000), (Lines{longLine, "short"})) << length;
    }
}

TEST(LineReader, GoesOnBehindALineOfManyBlocks) {
    EXPECT_EQ(linesOf(std::string(1000000, 'x') + "\nshort", 3), (Lines{"xxx...", "sho..."}));
}

TEST(LineReader, KnowsWhetherItHasToWaitForALine) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const auto write = [&pipe](const std::string& text) {
        EXPECT_EQ(::write(pipe[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    };
    write("a\nb");
    LineReader sut("/dev/fd/" + std::to_string(pipe[0]), 10);

    EXPECT_TRUE(sut.isReady());
    EXPECT_EQ(sut.next()->text, "a");
    EXPECT_FALSE(sut.isReady());
    write("c\n");
    EXPECT_TRUE(sut.isReady());
    EXPECT_EQ(sut.next()->text, "bc");
    EXPECT_FALSE(sut.isReady());
    ::close(pipe[1]);
    EXPECT_TRUE(sut.isReady());
    EXPECT_FALSE(sut.next());
    ::close(pipe[0]);
}

TEST(LineReader, KnowsHowMuchOfAFileIsRead) {
    const TextFile file("a\nb\n");
    LineReader sut(file.path(), 10);

    EXPECT_EQ(sut.share(), 0.0);
    sut.next();
    EXPECT_EQ(sut.share(), 1.0);
}

TEST(LineReader, RefusesWhatIsNoUtf8) {
    for (const char* const mark : {"\xFF\xFE", "\xFE\xFF"}) {
        const TextFile file(mark + std::string("a\n"));
        LineReader sut(file.path(), 10);

        EXPECT_THROW(sut.next(), AnalysisError);
    }
}

TEST(LineReader, RefusesAPathThatCannotBeRead) {
    EXPECT_THROW(LineReader("/no/such/file", 10), AnalysisError);
}

} // namespace
