#pragma once

#include "Export.h"

#include <cstdint>

extern "C" {

/// Looks up a variable in the platform's store of named variables.
///
/// @param name the variable's name, zero-terminated.
/// @param[out] address receives the address of the content, which stays the store's and is only
/// read.
/// @param[out] size if not null, receives the size of the content. Its unit is the platform's; the
///        desk's store counts 32-bit elements.
/// @return result code; 32768 and more: the variable cannot be read and nothing was written.
QOR_EXPORT std::uint32_t CStorageManager_GetVariableContentAddressByName(const char* name,
                                                                         const void** address,
                                                                         std::uint32_t* size);
}
