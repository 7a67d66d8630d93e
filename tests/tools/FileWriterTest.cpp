#include "FileWriter.h"

#include "AnalysisError.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

// A folder of its own for each test, with the umask that is usual.
class FileWriterTest : public testing::Test {
protected:
    FileWriterTest() {
        std::string name = (fs::temp_directory_path() / "qor-file-writer-XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
    }
    ~FileWriterTest() override { fs::remove_all(m_folder); }

    std::string path(const std::string& name) const { return (m_folder / name).string(); }

    static std::string contentOf(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_folder), fs::directory_iterator()));
    }

private:
    fs::path m_folder;
};

TEST_F(FileWriterTest, MakesANewFileThatOthersMayRead) {
    const mode_t before = ::umask(022);
    writeFile(path("new.svg"), "picture");
    ::umask(before);

    EXPECT_EQ(contentOf(path("new.svg")), "picture");
    EXPECT_EQ(fs::status(path("new.svg")).permissions(), fs::perms(0644));
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileWriterTest, ReplacesAFileAndKeepsItsPermissions) {
    std::ofstream(path("old.svg")) << "something longer than before";
    fs::permissions(path("old.svg"), fs::perms(0600));

    writeFile(path("old.svg"), "picture");

    EXPECT_EQ(contentOf(path("old.svg")), "picture");
    EXPECT_EQ(fs::status(path("old.svg")).permissions(), fs::perms(0600));
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileWriterTest, FollowsALink) {
    std::ofstream(path("target.svg")) << "before";
    fs::create_symlink(path("target.svg"), path("link.svg"));

    writeFile(path("link.svg"), "picture");

    EXPECT_TRUE(fs::is_symlink(path("link.svg")));
    EXPECT_EQ(contentOf(path("target.svg")), "picture");
}

TEST_F(FileWriterTest, LeavesTheFileAsItWasWhenTheDiskIsFull) {
    std::ofstream(path("old.svg")) << "before";
    // A limit on the size of files stands in for the disk.
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{100, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);

    std::string message;
    try {
        writeFile(path("old.svg"), std::string(1000, 'x'));
    } catch (const AnalysisError& error) {
        message = error.what();
        EXPECT_EQ(error.outcome(), Outcome::OtherTrouble);
    }

    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(message, path("old.svg") + ": cannot be written: File too large");
    EXPECT_EQ(contentOf(path("old.svg")), "before");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileWriterTest, RefusesAFolderAndAPathBelowNothing) {
    EXPECT_THROW(writeFile(path("."), "picture"), AnalysisError);
    EXPECT_THROW(writeFile(path("missing/new.svg"), "picture"), AnalysisError);
    EXPECT_EQ(filesInFolder(), 0U);
}

} // namespace
