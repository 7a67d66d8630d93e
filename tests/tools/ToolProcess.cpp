#include "ToolProcess.h"

#include "ChildProcess.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace {

std::string contentOf(int descriptor) {
    std::string text;
    char block[4096];
    ssize_t count = 0;
    while ((count = ::read(descriptor, block, sizeof block)) > 0) {
        text.append(block, static_cast<std::size_t>(count));
    }
    return text;
}

/// A file without a name: the tool's streams end in files, so that neither side waits for the
/// other.
class TemporaryFile {
public:
    TemporaryFile()
        : m_file(std::tmpfile(), std::fclose) {
        if (m_file == nullptr) {
            failForTheSystem("tmpfile");
        }
    }

    int descriptor() const { return ::fileno(m_file.get()); }

    void fill(const std::string& text) {
        if (std::fwrite(text.data(), 1, text.size(), m_file.get()) != text.size() ||
            std::fflush(m_file.get()) != 0) {
            failForTheSystem("fwrite");
        }
        ::lseek(descriptor(), 0, SEEK_SET);
    }

    std::string content() const {
        ::lseek(descriptor(), 0, SEEK_SET);
        return contentOf(descriptor());
    }

private:
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> m_file;
};

/// A terminal: what is written to one end is read from the other.
class PseudoTerminal {
public:
    PseudoTerminal() {
        winsize size{};
        size.ws_col = 100;
        size.ws_row = 25;
        if (::openpty(&m_reader, &m_writer, nullptr, nullptr, &size) != 0) {
            failForTheSystem("openpty");
        }
        termios settings{};
        ::tcgetattr(m_writer, &settings);
        settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
        ::tcsetattr(m_writer, TCSANOW, &settings);
    }
    ~PseudoTerminal() {
        ::close(m_reader);
        ::close(m_writer);
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    int writer() const { return m_writer; }

    /// Reads until nobody but this process holds the terminal any more.
    std::string content() {
        ::close(m_writer);
        m_writer = -1;
        return contentOf(m_reader);
    }

private:
    int m_reader = -1;
    int m_writer = -1;
};

/// The write end of a pipe whose read end is closed.
int closedPipe() {
    int ends[2];
    if (::pipe(ends) != 0) {
        failForTheSystem("pipe");
    }
    ::close(ends[0]);
    return ends[1];
}

} // namespace

bool ToolResult::hasOneErrorLine() const {
    return errors.starts_with("qor-power: ") && errors.ends_with('\n') &&
           std::count(errors.begin(), errors.end(), '\n') == 1;
}

std::ostream& operator<<(std::ostream& stream, const ToolResult& result) {
    return stream << "status " << result.status << "\n--- output\n"
                  << result.output << "--- errors\n"
                  << result.errors;
}

ToolProcess& ToolProcess::withInput(std::string input) {
    m_input = std::move(input);
    return *this;
}

ToolProcess& ToolProcess::inFolder(std::string folder) {
    m_folder = std::move(folder);
    return *this;
}

ToolProcess& ToolProcess::withOutputTo(std::string path) {
    m_sink = Sink::Path;
    m_outputPath = std::move(path);
    return *this;
}

ToolProcess& ToolProcess::withClosedPipe() {
    m_sink = Sink::ClosedPipe;
    return *this;
}

ToolProcess& ToolProcess::withoutOutput() {
    m_sink = Sink::None;
    return *this;
}

ToolProcess& ToolProcess::withOutputOnTerminal() {
    m_sink = Sink::Terminal;
    return *this;
}

ToolProcess& ToolProcess::withErrorsOnTerminal() {
    m_hasErrorTerminal = true;
    return *this;
}

ToolProcess& ToolProcess::withEnvironment(const std::string& name, const std::string& value) {
    m_environment[name] = value;
    return *this;
}

ToolResult ToolProcess::run() const {
    ChildProcess tool;
    tool.words = DrivenTool::commandLine(m_arguments);
    tool.folder = m_folder.empty() ? QOR_TOOL_TESTS : m_folder;
    tool.environment = m_environment;
    TemporaryFile input;
    input.fill(m_input);
    const TemporaryFile output;
    const TemporaryFile errors;
    std::optional<PseudoTerminal> terminal;
    if (m_sink == Sink::Terminal || m_hasErrorTerminal) {
        terminal.emplace();
    }
    int other = -1;
    if (m_sink == Sink::Path) {
        other = ::open(m_outputPath.c_str(), O_WRONLY | O_CLOEXEC);
        if (other < 0) {
            failForTheSystem(m_outputPath);
        }
    } else if (m_sink == Sink::ClosedPipe) {
        other = closedPipe();
    } else if (m_sink == Sink::Terminal) {
        other = ::dup(terminal->writer());
    }

    tool.input = input.descriptor();
    if (m_sink != Sink::None) {
        tool.output = other >= 0 ? other : output.descriptor();
    }
    tool.errors = m_hasErrorTerminal ? terminal->writer() : errors.descriptor();
    tool.start();
    if (other >= 0) {
        ::close(other);
    }
    // A terminal holds little: it is read while the tool runs.
    const std::string shown = terminal ? terminal->content() : std::string();
    ToolResult result;
    result.status = tool.wait().status;
    result.output = m_sink == Sink::Terminal ? shown : output.content();
    result.errors = m_hasErrorTerminal ? shown : errors.content();
    return result;
}

ToolResult runTool(std::vector<std::string> arguments) {
    return ToolProcess(std::move(arguments)).run();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> exampleRadios() {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(QOR_EXAMPLE_RADIOS)) {
        if (entry.path().extension() == ".json") {
            paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string contentOf(const std::string& path) {
    std::ifstream file(std::string(QOR_TOOL_TESTS) + '/' + path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot open " + path);
    }
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}
