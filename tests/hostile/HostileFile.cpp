#include "HostileFile.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

HostileFile& HostileFile::add(std::string_view text) {
    return add(1, text);
}

HostileFile& HostileFile::add(std::size_t times, std::string_view text) {
    constexpr std::size_t blockSize = std::size_t{64} << 10;
    const std::size_t perBlock = blockSize / std::clamp<std::size_t>(text.size(), 1, blockSize);
    std::string block;
    for (std::size_t count = 0; count < std::min(times, perBlock); ++count) {
        block += text;
    }

    std::ofstream stream(path(), std::ios::binary | std::ios::app);
    std::size_t left = times;
    for (; left >= perBlock; left -= perBlock) {
        stream << block;
    }
    for (; left > 0; --left) {
        stream << text;
    }
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + path());
    }
    m_size += times * text.size();
    return *this;
}

HostileFile& HostileFile::fillTo(std::size_t size, std::string_view text) {
    const std::size_t missing = size - std::min(size, m_size);
    return add((missing + text.size() - 1) / text.size(), text);
}

bool HostileFile::isUntouched() const {
    using Entries = std::filesystem::directory_iterator;
    return std::distance(Entries(m_folder.path()), Entries()) == 1 &&
           std::filesystem::file_size(path()) == m_size;
}

bool HostileFile::begins(const std::string& text) const {
    std::string start(text.size(), '\0');
    std::ifstream stream(path(), std::ios::binary);
    stream.read(start.data(), static_cast<std::streamsize>(start.size()));
    return stream.good() && start == text;
}
