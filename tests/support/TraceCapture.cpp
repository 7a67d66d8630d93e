#include "TraceCapture.h"

#include <algorithm>
#include <iterator>
#include <sstream>

std::vector<std::string> TraceCapture::lines() {
    const std::vector<TraceRecord> records = DeskTrace::getInstance().take();
    std::vector<std::string> lines;
    std::transform(records.begin(), records.end(), std::back_inserter(lines), describe);
    return lines;
}

std::string describe(const TraceRecord& record) {
    const std::string folder = "Control/OutputPowerCalculator/private/";
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
