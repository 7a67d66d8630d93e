#include "FileWriter.h"

#include "AnalysisError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// A limit on the size of files, which stands in for a disk that is full.
class FullDisk {
public:
    FullDisk() {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small{100, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

const std::string tooMuch(1000, 'x');

/// What a file cannot be written for; empty if it can.
template <class Write>
std::string errorOf(Write write) {
    try {
        write();
    } catch (const AnalysisError& error) {
        EXPECT_EQ(error.outcome(), Outcome::OtherTrouble);
        return error.what();
    }
    return "";
}

/// Does something while a descriptor is that of another file.
template <class Act>
void whileLedTo(int file, int descriptor, Act act) {
    const int kept = ::dup(descriptor);
    ::dup2(file, descriptor);
    act();
    ::dup2(kept, descriptor);
    ::close(kept);
}

/// What renames do besides: the linker leads them here.
std::function<int(unsigned flags)> s_atRename; ///< @return an error, or 0 to rename

/// A way of renaming, while it lives.
class RenameThat {
public:
    explicit RenameThat(std::function<int(unsigned)> act) { s_atRename = std::move(act); }
    ~RenameThat() { s_atRename = nullptr; }
    RenameThat(const RenameThat&) = delete;
    RenameThat& operator=(const RenameThat&) = delete;
};

/// A file system that cannot refuse to replace, as a network's often cannot.
int cannotRefuse(unsigned flags) {
    return flags == 0 ? 0 : EINVAL;
}

volatile std::sig_atomic_t s_interrupts = 0;

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
    const FullDisk disk;

    const std::string message = errorOf([this] { writeFile(path("old.svg"), tooMuch); });

    EXPECT_EQ(message, path("old.svg") + ": cannot be written: File too large");
    EXPECT_EQ(contentOf(path("old.svg")), "before");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileWriterTest, WritesAllFilesOrNone) {
    std::ofstream(path("old.svg")) << "before";
    const FullDisk disk;
    FileWriter writer(IfThere::Replace);
    writer.add(path("new.svg"), "picture");
    writer.add(path("old.svg"), "picture");
    writer.add(path("newer.svg"), tooMuch);

    EXPECT_EQ(errorOf([&writer] { writer.publish(); }),
              path("newer.svg") + ": cannot be written: File too large");

    EXPECT_EQ(contentOf(path("old.svg")), "before");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileWriterTest, TakesBackWhatIsNewWhenAPlaceIsTakenMeanwhile) {
    FileWriter writer(IfThere::Refuse);
    writer.add(path("a.svg"), "picture");
    writer.add(path("b.svg"), "picture");
    std::ofstream(path("b.svg")) << "another's";

    EXPECT_EQ(errorOf([&writer] { writer.publish(); }),
              path("b.svg") + ": cannot be written: File exists");

    EXPECT_EQ(contentOf(path("b.svg")), "another's");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileWriterTest, NeitherReplacesNorLeavesAnythingWhereRenamesCannotRefuse) {
    const RenameThat rename(cannotRefuse);
    FileWriter writer(IfThere::Refuse);
    writer.add(path("a.svg"), "picture");
    writer.add(path("b.svg"), "picture");
    writer.publish();
    FileWriter late(IfThere::Refuse);
    late.add(path("c.svg"), "picture");
    late.add(path("d.svg"), "picture");
    std::ofstream(path("d.svg")) << "another's";

    EXPECT_EQ(errorOf([&late] { late.publish(); }),
              path("d.svg") + ": cannot be written: File exists");

    EXPECT_EQ(contentOf(path("a.svg")), "picture");
    EXPECT_EQ(contentOf(path("b.svg")), "picture");
    EXPECT_EQ(contentOf(path("d.svg")), "another's");
    EXPECT_EQ(filesInFolder(), 3U);
}

TEST_F(FileWriterTest, IsInterruptedBeforeOrAfterItWritesButNotWithin) {
    const auto before = std::signal(SIGTERM, [](int) { s_interrupts = s_interrupts + 1; });
    int interruptsWithin = -1;
    s_interrupts = 0;
    {
        const RenameThat rename([&interruptsWithin](unsigned) {
            std::raise(SIGTERM);
            interruptsWithin = s_interrupts;
            return 0;
        });
        writeFile(path("new.svg"), "picture");
    }
    std::signal(SIGTERM, before);

    EXPECT_EQ(interruptsWithin, 0);
    EXPECT_EQ(s_interrupts, 1);
    EXPECT_EQ(contentOf(path("new.svg")), "picture");
}

TEST_F(FileWriterTest, LooksAtAllPlacesBeforeItWritesToOne) {
    std::ofstream(path("old.svg")) << "before";
    fs::create_symlink(path("nothing"), path("dangling.svg"));
    fs::create_symlink(path("old.svg"), path("link.svg"));
    FileWriter writer(IfThere::Replace);
    writer.add(path("old.svg"), "picture");
    const auto errorOfAdding = [&writer](const std::string& place) {
        return errorOf([&writer, &place] { writer.add(place, "picture"); });
    };

    EXPECT_THAT(errorOfAdding(path("old.svg")), testing::EndsWith(": it is named twice"));
    EXPECT_THAT(errorOfAdding(path("link.svg")), testing::EndsWith(": it is named twice"));
    EXPECT_THAT(errorOfAdding(path("dangling.svg")),
                testing::EndsWith(": it is a link that leads to nothing; remove it"));
    EXPECT_THAT(errorOfAdding(path(".")), testing::EndsWith(": Is a directory"));
    EXPECT_EQ(contentOf(path("old.svg")), "before");
}

TEST_F(FileWriterTest, WritesThroughAPipeThatHasAName) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    const int reader = ::open(path("pipe").c_str(), O_RDWR | O_NONBLOCK);

    writeFile(path("pipe"), "picture");

    std::array<char, 16> text{};
    EXPECT_EQ(::read(reader, text.data(), text.size()), 7);
    ::close(reader);
    EXPECT_TRUE(fs::is_fifo(path("pipe")));
}

TEST_F(FileWriterTest, NeverReplacesADevice) {
    if (::mknod(path("device").c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0) {
        GTEST_SKIP() << "only root makes devices";
    }

    writeFile(path("device"), "picture");

    EXPECT_TRUE(fs::is_character_file(path("device")));
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileWriterTest, WritesToAnOpenFileWhereItStands) {
    std::ofstream(path("log")) << "before ";
    const int log = ::open(path("log").c_str(), O_WRONLY | O_APPEND);

    writeFile("/proc/self/fd/" + std::to_string(log), "one ");
    writeFile("/dev/fd/" + std::to_string(log), "two ");
    whileLedTo(log, STDOUT_FILENO, [] { writeFile("/dev/stdout", "three "); });
    whileLedTo(log, STDERR_FILENO, [] { writeFile("/dev/stderr", "four"); });

    ::close(log);
    EXPECT_EQ(contentOf(path("log")), "before one two three four");
}

TEST_F(FileWriterTest, TakesTheLongestNameThatThereIs) {
    const std::string longest = path(std::string(255, 'n'));

    writeFile(longest, "picture");
    writeFile(longest, "another picture");

    EXPECT_EQ(contentOf(longest), "another picture");
}

// Nothing is closed to root: these write as somebody else.
class FileWriterOfAUser : public FileWriterTest {
protected:
    /// @return the error; empty without one.
    std::string write(std::string_view text, bool isFull = false) const {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            constexpr uid_t nobody = 65534;
            const bool isUser = ::geteuid() != 0 || ::setresuid(nobody, nobody, nobody) == 0;
            const std::unique_ptr<FullDisk> disk(isFull ? new FullDisk : nullptr);
            const std::string error =
                isUser ? errorOf([this, text] { writeFile(path("old.svg"), text); }) : "is root";
            ::_exit(::write(ends[1], error.data(), error.size()) < 0);
        }
        ::close(ends[1]);
        std::array<char, 1000> error{};
        const ssize_t size = ::read(ends[0], error.data(), error.size());
        ::close(ends[0]);
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        return {error.data(), static_cast<std::size_t>(size < 0 ? 0 : size)};
    }

    /// A file that anyone may write in a folder where nobody may make one.
    void closeFolder() const {
        std::ofstream(path("old.svg")) << "before";
        fs::permissions(path("old.svg"), fs::perms(0666));
        fs::permissions(path("."), fs::perms(0555));
    }
    ~FileWriterOfAUser() override { fs::permissions(path("."), fs::perms(0700)); }
};

TEST_F(FileWriterOfAUser, WritesAFileInAFolderThatTakesNoNewOne) {
    closeFolder();

    EXPECT_EQ(write("a"), "");
    EXPECT_EQ(contentOf(path("old.svg")), "a");
    EXPECT_EQ(write("longer than before"), "");
    EXPECT_EQ(contentOf(path("old.svg")), "longer than before");
}

TEST_F(FileWriterOfAUser, PutsBackWhatWasInAFileThatItCannotReplace) {
    closeFolder();

    EXPECT_THAT(write(tooMuch, true), testing::EndsWith("File too large"));
    EXPECT_EQ(contentOf(path("old.svg")), "before");
}

TEST_F(FileWriterOfAUser, LeavesAProtectedFileWhereItCouldBeReplaced) {
    std::ofstream(path("old.svg")) << "before";
    fs::permissions(path("old.svg"), fs::perms(0444));
    fs::permissions(path("."), fs::perms(0777));

    EXPECT_THAT(write("picture"), testing::EndsWith("Permission denied"));
    EXPECT_EQ(contentOf(path("old.svg")), "before");
}

TEST_F(FileWriterTest, RefusesAFolderAndAPathBelowNothing) {
    EXPECT_THROW(writeFile(path("."), "picture"), AnalysisError);
    EXPECT_THROW(writeFile(path("missing/new.svg"), "picture"), AnalysisError);
    EXPECT_EQ(filesInFolder(), 0U);
}

} // namespace

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
int __real_renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                     unsigned flags);

int __wrap_renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                     unsigned flags);

int __wrap_renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                     unsigned flags) {
    if (const int error = s_atRename ? s_atRename(flags) : 0; error != 0) {
        errno = error;
        return -1;
    }
    return __real_renameat2(fromFolder, from, toFolder, to, flags);
}
// NOLINTEND(bugprone-reserved-identifier)
}
