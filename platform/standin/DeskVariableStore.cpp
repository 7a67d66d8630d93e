#include "DeskVariableStore.h"

#include "CStorageManager.h"
#include "ResultCode.h"

#include <utility>

DeskVariableStore& DeskVariableStore::getInstance() {
    static auto* const instance = new DeskVariableStore;
    return *instance;
}

void DeskVariableStore::set(const std::string& name, const Elements& elements) {
    Content content{elements, static_cast<std::uint32_t>(elements.size())};
    content.elements.push_back(0);

    const std::lock_guard<std::mutex> lock(m_mutex);
    m_contents.push_back(std::move(content));
    m_variables[name] = &m_contents.back();
}

void DeskVariableStore::remove(const std::string& name) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_variables.erase(name);
}

void DeskVariableStore::clear() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_variables.clear();
    m_contents.clear();
}

std::uint32_t DeskVariableStore::find(const std::string& name, const void** address,
                                      std::uint32_t* size) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_variables.find(name);
    if (found == m_variables.end()) {
        return ResultCode::Failure;
    }
    *address = found->second->elements.data();
    if (size != nullptr) {
        *size = found->second->size;
    }
    return ResultCode::Success;
}

std::uint32_t CStorageManager_GetVariableContentAddressByName(const char* name,
                                                              const void** address,
                                                              std::uint32_t* size) {
    return DeskVariableStore::getInstance().find(name, address, size);
}
