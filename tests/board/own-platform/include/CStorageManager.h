#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

uint32_t CStorageManager_GetVariableContentAddressByName(const char* name, const void** address,
                                                         uint32_t* size);

#ifdef __cplusplus
}
#endif
