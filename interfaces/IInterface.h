#pragma once

#include "Export.h"
#include "RadioChannel.h"

#include <string>

/// Root of every interface that is published in the interface broker.
///
/// The broker stores objects as IInterface and hands them out by a run-time type check, so a class
/// that is published under a name must derive from the interface of that name.
class QOR_EXPORT IInterface {
public:
    IInterface() = default;
    /// @param name of the interface; kept, and not used yet.
    explicit IInterface(std::string name);
    IInterface(const IInterface&) = delete;
    IInterface& operator=(const IInterface&) = delete;
    virtual ~IInterface();

    /// Name under which an interface of the class `base` is published for a channel: the base, "_"
    /// and the channel. The channel is always appended, also channel 0.
    static std::string interfaceName(const std::string& base, const RadioChannel& channel);

private:
    std::string m_name;
};
