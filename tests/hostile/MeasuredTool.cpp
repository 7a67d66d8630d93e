#include "MeasuredTool.h"

#include "DrivenTool.h"
#include "ScratchFolder.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <ostream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Nothing here may take so long; a tool that hangs must not hang the tests.
constexpr unsigned secondsBeforeKill = 120;

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

int opened(const std::string& path, int flags) {
    const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        fail(path);
    }
    return descriptor;
}

std::string contentOf(const std::filesystem::path& path, std::size_t atMost) {
    std::string text(atMost, '\0');
    const int file = opened(path, O_RDONLY);
    std::size_t size = 0;
    ssize_t count = 0;
    while (size < atMost && (count = ::read(file, &text[size], atMost - size)) > 0) {
        size += static_cast<std::size_t>(count);
    }
    ::close(file);
    text.resize(size);
    return text;
}

double secondsOf(const timeval& time) {
    constexpr double microsecond = 1e-6;
    return static_cast<double>(time.tv_sec) + microsecond * static_cast<double>(time.tv_usec);
}

/// Where the tool's streams lead.
struct Streams {
    int input;
    int output;
    int errors;
};

[[noreturn]] void becomeTool(const std::vector<std::string>& words, const std::string& folder,
                             const Streams& streams) {
    std::vector<std::string> storage = words;
    std::vector<char*> pointers;
    for (std::string& word : storage) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);

    std::signal(SIGPIPE, SIG_DFL);
    ::alarm(secondsBeforeKill);
    for (const char* const name : {"HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"}) {
        ::setenv(name, folder.c_str(), 1);
    }
    if (streams.input >= 0) {
        ::dup2(streams.input, STDIN_FILENO);
    } else {
        ::close(STDIN_FILENO);
    }
    ::dup2(streams.output, STDOUT_FILENO);
    ::dup2(streams.errors, STDERR_FILENO);
    if (::chdir(folder.c_str()) == 0) {
        ::execvp(pointers.front(), pointers.data());
    }
    ::_exit(127);
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const ToolRun& run) {
    constexpr std::size_t shown = 2000;
    stream << "status " << run.status << ", " << run.peakMiB << " MiB, " << run.processorSeconds
           << " s of processor time, " << run.seconds << " s\n--- output, " << run.outputSize
           << " bytes\n"
           << run.firstOutput.substr(0, shown) << "\n--- errors, " << run.errors.size()
           << " bytes\n"
           << run.errors.substr(0, shown);
    for (const std::string& path : run.leftBehind) {
        stream << "--- left behind: " << path << '\n';
    }
    return stream;
}

MeasuredTool& MeasuredTool::withInputFrom(std::string path) {
    m_input = std::move(path);
    return *this;
}

MeasuredTool& MeasuredTool::withoutInput() {
    m_input.clear();
    return *this;
}

MeasuredTool& MeasuredTool::withOutputTo(std::string path) {
    m_output = std::move(path);
    return *this;
}

MeasuredTool& MeasuredTool::withReaderOf(std::size_t bytes) {
    m_hasReader = true;
    m_readerBytes = bytes;
    return *this;
}

ToolRun MeasuredTool::run() const {
    const std::vector<std::string> words = DrivenTool::commandLine(m_arguments);
    const ScratchFolder own;
    const ScratchFolder folder;
    const std::filesystem::path outputPath = own.path() / "output";
    const std::filesystem::path errorsPath = own.path() / "errors";

    Streams streams{};
    streams.input = m_input.empty() ? -1 : opened(m_input, O_RDONLY);
    streams.errors = opened(errorsPath, O_WRONLY | O_CREAT);
    int reader = -1;
    if (m_hasReader) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) {
            fail("pipe");
        }
        reader = ends[0];
        streams.output = ends[1];
    } else {
        streams.output =
            m_output.empty() ? opened(outputPath, O_WRONLY | O_CREAT) : opened(m_output, O_WRONLY);
    }
    if (reader >= 0 && m_readerBytes == 0) {
        ::close(reader);
        reader = -1;
    }

    const auto start = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child < 0) {
        fail("fork");
    }
    if (child == 0) {
        becomeTool(words, folder.path(), streams);
    }
    ::close(streams.input);
    ::close(streams.output);
    ::close(streams.errors);
    if (reader >= 0) {
        std::string taken(m_readerBytes, '\0');
        for (std::size_t size = 0; size < taken.size();) {
            const ssize_t count = ::read(reader, &taken[size], taken.size() - size);
            if (count <= 0) {
                break;
            }
            size += static_cast<std::size_t>(count);
        }
        ::close(reader);
    }

    int status = 0;
    rusage usage{};
    while (::wait4(child, &status, 0, &usage) < 0) {
        if (errno != EINTR) {
            fail("wait4");
        }
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;

    constexpr int signalled = 1000;
    constexpr std::size_t block = std::size_t{64} << 10;
    constexpr double kibPerMib = 1024;
    ToolRun run;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status);
    if (std::filesystem::exists(outputPath)) {
        run.firstOutput = contentOf(outputPath, block);
        run.outputSize = std::filesystem::file_size(outputPath);
    }
    run.errors = contentOf(errorsPath, block);
    run.processorSeconds = secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
    run.seconds = took.count();
    run.peakMiB = static_cast<double>(usage.ru_maxrss) / kibPerMib;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        run.leftBehind.push_back(entry.path().string());
    }
    return run;
}
