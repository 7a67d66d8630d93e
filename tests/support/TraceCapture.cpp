#include "TraceCapture.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

namespace {

using Lines = std::vector<std::string>;

const std::string folder = "Control/OutputPowerCalculator/private/";

/// The lines of a source of the library; none if it cannot be read.
const Lines& sourceOf(const std::string& name) {
    static std::map<std::string, Lines> sources;
    const auto [place, isNew] = sources.try_emplace(name);
    std::ifstream stream(std::string(QOR_SOURCES) + '/' + folder + name + ".cpp");
    for (std::string line; isNew && std::getline(stream, line);) {
        place->second.push_back(line);
    }
    return place->second;
}

/// Whether a statement that traces stands at a line of a source. A compiler takes its first line or
/// its last.
bool tracesAt(const Lines& lines, int number) {
    if (number < 1 || static_cast<std::size_t>(number) > lines.size()) {
        return false;
    }
    for (auto place = static_cast<std::size_t>(number); place > 0; --place) {
        const std::string& line = lines[place - 1];
        if (line.find("TRACE") != std::string::npos || line.find("trace") != std::string::npos) {
            return true;
        }
        if (place > 1 && (lines[place - 2].ends_with(';') || lines[place - 2].ends_with('}'))) {
            return false;
        }
    }
    return false;
}

/// What is wrong with the line of a record of the library: it is one that traces, in its source or
/// in one that several families share.
std::string remarkOnLine(const TraceRecord& record) {
    if (!record.file.starts_with(folder)) {
        return "";
    }
    const Lines names = {record.file.substr(folder.size()), "BoosterSteps",
                         "ChannelSpacingCompensation", "OffsetMaxPower"};
    const bool isAtTrace = std::ranges::any_of(names, [&record](const std::string& name) {
        return tracesAt(sourceOf(name), record.line);
    });
    return isAtTrace ? "" : " (line " + std::to_string(record.line) + ": no trace)";
}

} // namespace

std::vector<std::string> TraceCapture::lines() {
    const std::vector<TraceRecord> records = DeskTrace::getInstance().take();
    std::vector<std::string> lines;
    std::transform(
        records.begin(), records.end(), std::back_inserter(lines),
        [](const TraceRecord& record) { return describe(record) + remarkOnLine(record); });
    return lines;
}

std::string describe(const TraceRecord& record) {
    const std::string source =
        record.file.starts_with(folder) ? record.file.substr(folder.size()) : record.file;

    std::ostringstream line;
    line << record.level;
    std::string text = record.text;
    std::string remark;
    switch (record.kind) {
    case TraceRecord::Kind::Enter:
        line << " enter ";
        break;
    case TraceRecord::Kind::Message:
        line << " msg ";
        break;
    case TraceRecord::Kind::Raw: {
        line << " raw 0x" << std::hex << record.code << std::dec << ' ';
        std::ostringstream codeLine;
        codeLine << "      code: 0x" << std::hex << record.code << '\n';
        if (text.ends_with(codeLine.str())) {
            text.resize(text.size() - codeLine.str().size());
        } else {
            remark = " (code line: missing)";
        }
        break;
    }
    }
    line << source << '.' << record.function << ": " << text << remark;
    return line.str();
}
