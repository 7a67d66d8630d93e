#include "InputFile.h"

#include "AnalysisError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class InputFileTest : public testing::Test {
protected:
    InputFileTest() {
        std::string name = (fs::temp_directory_path() / "qor-input-file-XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
        std::ofstream(path()) << "before";
    }
    ~InputFileTest() override { fs::remove_all(m_folder); }

    std::string path(const std::string& name = "file") const { return (m_folder / name).string(); }

    /// What is read to the end, or the error.
    static std::string restOf(InputFile& file) {
        std::string text;
        std::array<char, 4> block{};
        try {
            while (const std::size_t count = file.read(block.data(), block.size())) {
                text.append(block.data(), count);
            }
        } catch (const AnalysisError& error) {
            return error.what();
        }
        return text;
    }

private:
    fs::path m_folder;
};

TEST_F(InputFileTest, IsReadToItsEnd) {
    InputFile sut(path());

    EXPECT_EQ(restOf(sut), "before");
}

TEST_F(InputFileTest, ThatChangesMeanwhileIsAnError) {
    const std::string expected = path() + ": cannot be read: it was changed meanwhile; try again";
    for (const std::string after : {"be", "before and more", "BEFORE"}) {
        std::ofstream(path()) << "before";
        fs::last_write_time(path(), fs::file_time_type::clock::now() - 1h);
        InputFile sut(path());

        std::ofstream(path()) << after;

        EXPECT_EQ(restOf(sut), expected) << after;
    }
}

TEST_F(InputFileTest, ThatMayGrowIsReadToWhereItEnded) {
    InputFile sut(path(), InputFile::Growth::IsLeftOut);

    std::ofstream(path(), std::ios::app) << " and more";

    EXPECT_EQ(restOf(sut), "before");
}

TEST_F(InputFileTest, ThatMayGrowAndBecomesShorterIsAnError) {
    InputFile sut(path(), InputFile::Growth::IsLeftOut);

    std::ofstream(path()) << "be";

    EXPECT_THAT(restOf(sut), testing::EndsWith("it was changed meanwhile; try again"));
}

TEST_F(InputFileTest, OfTheSystemThatHasNoSizeIsReadToItsEnd) {
    InputFile sut("/proc/self/status");

    EXPECT_THAT(restOf(sut), testing::StartsWith("Name:"));
}

TEST_F(InputFileTest, ThatIsAPipeWithoutAWriterIsNotWaitedForEndlessly) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);

    try {
        const InputFile sut(path("pipe"), InputFile::Growth::IsChange, 1s);
        FAIL();
    } catch (const AnalysisError& error) {
        EXPECT_EQ(error.what(),
                  path("pipe") + ": cannot be read: nothing came through the pipe within 1 second");
    }
}

TEST_F(InputFileTest, ThatIsAPipeBelowDevIsWaitedForLikeAnyOther) {
    const std::string pipe = "/dev/shm/qor-power-pipe-" + std::to_string(::getpid());
    if (::mkfifo(pipe.c_str(), 0600) != 0) {
        GTEST_SKIP() << "no pipe can be made in /dev/shm";
    }

    EXPECT_THROW(InputFile(pipe, InputFile::Growth::IsChange, 1s), AnalysisError);

    ::unlink(pipe.c_str());
}

TEST_F(InputFileTest, ThatIsAPipeIsReadUntilItsWriterCloses) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    const pid_t writer = ::fork();
    if (writer == 0) {
        const int pipe = ::open(path("pipe").c_str(), O_WRONLY);
        const bool isWritten = ::write(pipe, "through ", 8) == 8 && ::usleep(50000) == 0 &&
                               ::write(pipe, "a pipe", 6) == 6;
        ::_exit(isWritten ? 0 : 1);
    }

    InputFile sut(path("pipe"));

    EXPECT_EQ(restOf(sut), "through a pipe");
    int status = 0;
    ::waitpid(writer, &status, 0);
    EXPECT_EQ(status, 0);
}

} // namespace
