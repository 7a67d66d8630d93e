#include "ScratchFolder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

ScratchFolder::ScratchFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "qor-hostile-XXXXXX").string();
    if (::mkdtemp(path.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), path);
    }
    m_path = path;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}
