// The store of named variables: here, the calibration of one radio. A board reads its own.
//
// - The library reads two variables of each channel N and writes none:
//   "channel.N.tx.rf.pmax.cs.comp.v2.array", pairs of a channel spacing in MHz and a compensation
//   in hundredths of a dB, and "….arraysize", how many elements of it are calibrated.
// - Elements have 32 bits. The size is that of the whole content, in elements.
// - The address stays valid, and what is there unchanged, until the calculator's operation ends: it
//   is read without a lock.
// - A code of 32768 or more says that there is no such variable, and writes nothing.

#include "CStorageManager.h"

#include "ResultCode.h"

#include <cstring>

namespace {

// At 28 MHz this radio delivers half a decibel less.
const std::int32_t compensations[] = {28, -50};
const std::int32_t calibrated[] = {2};

struct Variable {
    const char* name;
    const std::int32_t* elements;
    std::uint32_t size;
};

const Variable variables[] = {
    {"channel.1.tx.rf.pmax.cs.comp.v2.array", compensations, 2},
    {"channel.1.tx.rf.pmax.cs.comp.v2.arraysize", calibrated, 1},
};

} // namespace

std::uint32_t CStorageManager_GetVariableContentAddressByName(const char* name,
                                                              const void** address,
                                                              std::uint32_t* size) {
    for (const Variable& variable : variables) {
        if (std::strcmp(variable.name, name) == 0) {
            *address = variable.elements;
            if (size != nullptr) {
                *size = variable.size;
            }
            return ResultCode::Success;
        }
    }
    return ResultCode::Failure;
}
