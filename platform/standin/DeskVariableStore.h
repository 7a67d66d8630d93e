#pragma once

#include "Export.h"

#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <vector>

/// The desk's store of named variables, behind CStorageManager_GetVariableContentAddressByName().
///
/// A variable is a row of 32-bit elements. May be used from several threads: content that has been
/// handed out stays where it is, unchanged, until clear(), also when the variable gets other
/// content or is removed.
class QOR_EXPORT DeskVariableStore {
public:
    /// Content of a variable.
    using Elements = std::vector<std::int32_t>;

    /// The one of the process.
    static DeskVariableStore& getInstance();

    DeskVariableStore(const DeskVariableStore&) = delete;
    DeskVariableStore& operator=(const DeskVariableStore&) = delete;

    /// Creates a variable or gives it new content.
    void set(const std::string& name, const Elements& elements);

    /// Removes a variable; it then cannot be read.
    void remove(const std::string& name);

    /// Removes every variable and frees the content that was handed out.
    void clear();

    /// Looks a variable up; see CStorageManager_GetVariableContentAddressByName().
    std::uint32_t find(const std::string& name, const void** address, std::uint32_t* size) const;

private:
    struct Content {
        Elements elements; ///< with one 0 behind the last, so that empty content has an address too
        std::uint32_t size;
    };

    DeskVariableStore() = default;
    ~DeskVariableStore() = default;

    mutable std::mutex m_mutex;
    std::list<Content> m_contents;
    std::map<std::string, const Content*> m_variables;
};
