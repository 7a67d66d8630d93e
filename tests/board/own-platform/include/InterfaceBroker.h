#pragma once

#include "IInterface.h"

#include <string>
#include <string_view>

/// A broker without a map, whose look-up has another name.
class InterfaceBroker {
public:
    static InterfaceBroker& getInstance();

    unsigned registerInterface(std::string_view name, IInterface* object);
    unsigned unregisterInterface(std::string_view name, IInterface** removed);

    template <class T>
    T* getInterface(const std::string& name) {
        return dynamic_cast<T*>(lookUp(name));
    }

private:
    struct Entry {
        std::string name;
        IInterface* object;
    };

    IInterface* lookUp(std::string_view name);
    Entry& entryOf(std::string_view name);

    Entry m_entries[16] = {};
};
