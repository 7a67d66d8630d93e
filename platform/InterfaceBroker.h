#pragma once

#include "Export.h"
#include "IInterface.h"

#include <map>
#include <mutex>
#include <string>

/// The platform's process-wide registry in which services find each other by name.
///
/// It borrows the objects: whoever registers one keeps it alive until it is unregistered. On the
/// board the platform's own object code stands behind these operations.
class QOR_EXPORT InterfaceBroker {
public:
    /// The one broker of the process.
    static InterfaceBroker& getInstance();

    InterfaceBroker(const InterfaceBroker&) = delete;
    InterfaceBroker& operator=(const InterfaceBroker&) = delete;

    /// Publishes an object under a name. An object that already has the name is replaced.
    /// @return result code; the desk's broker always answers 0.
    unsigned registerInterface(const std::string& name, IInterface* object);

    /// Withdraws whatever has the name.
    /// @param[out] removed if not null, receives the object that was withdrawn, or null.
    /// @return result code; the desk's broker answers 32768 for a name that nothing has.
    unsigned unregisterInterface(const std::string& name, IInterface** removed);

    /// The object that has exactly this name, as a T.
    /// @return null if the name is unknown, was registered with a null pointer, or belongs to an
    ///         object that is no T.
    template <class T>
    T* getInterface(const std::string& name) const {
        return dynamic_cast<T*>(find(name));
    }

private:
    InterfaceBroker() = default;
    ~InterfaceBroker() = default;

    /// The object that has exactly this name, or null.
    IInterface* find(const std::string& name) const;

    /// Names in the order of their bytes.
    std::map<std::string, IInterface*> m_interfaces;
    mutable std::mutex m_mutex;
};
