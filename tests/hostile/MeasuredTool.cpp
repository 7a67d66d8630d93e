#include "MeasuredTool.h"

#include "DrivenTool.h"
#include "ScratchFolder.h"

#include <filesystem>
#include <ostream>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

int opened(const std::string& path, int flags) {
    const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        failForTheSystem(path);
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
    const ScratchFolder own;
    const ScratchFolder folder;
    const std::filesystem::path outputPath = own.path() / "output";
    const std::filesystem::path errorsPath = own.path() / "errors";

    ChildProcess tool;
    tool.words = DrivenTool::commandLine(m_arguments);
    tool.folder = folder.path();
    for (const char* const name : {"HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"}) {
        tool.environment[name] = tool.folder;
    }
    tool.input = m_input.empty() ? -1 : opened(m_input, O_RDONLY);
    tool.errors = opened(errorsPath, O_WRONLY | O_CREAT);
    int reader = -1;
    if (m_hasReader) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) {
            failForTheSystem("pipe");
        }
        reader = ends[0];
        tool.output = ends[1];
    } else {
        tool.output =
            m_output.empty() ? opened(outputPath, O_WRONLY | O_CREAT) : opened(m_output, O_WRONLY);
    }
    if (reader >= 0 && m_readerBytes == 0) {
        ::close(reader);
        reader = -1;
    }

    tool.start();
    ::close(tool.input);
    ::close(tool.output);
    ::close(tool.errors);
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

    constexpr std::size_t block = std::size_t{64} << 10;
    ToolRun run{tool.wait()};
    if (std::filesystem::exists(outputPath)) {
        run.firstOutput = contentOf(outputPath, block);
        run.outputSize = std::filesystem::file_size(outputPath);
    }
    run.errors = contentOf(errorsPath, block);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        run.leftBehind.push_back(entry.path().string());
    }
    return run;
}
