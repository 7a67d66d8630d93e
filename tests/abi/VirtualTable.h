#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

/// Reading virtual tables and member pointers as the C++ ABI of both targets lays them out.
namespace abi_layout {

/// What slotOf() answers for an operation that is not virtual.
constexpr std::size_t notVirtual = static_cast<std::size_t>(-1);

/// Slot of a virtual operation in its class's virtual table, counted from the address point; the
/// two destructors take a slot each.
///
/// A pointer to a virtual operation holds the slot's offset in bytes. What says that it is no
/// address is the lowest bit: of the offset on most machines, of the adjustment on ARM, where the
/// lowest bit of an address means something else.
template <class Class, class Operation>
std::size_t slotOf(Operation Class::*operation) {
    static_assert(std::is_member_function_pointer_v<Operation Class::*>);
    struct Representation {
        std::uintptr_t pointer;
        std::ptrdiff_t adjustment;
    };
    const auto representation = std::bit_cast<Representation>(operation);
#if defined(__arm__) || defined(__aarch64__)
    const bool isVirtual = (representation.adjustment & 1) != 0;
    const std::uintptr_t offset = representation.pointer;
#else
    const bool isVirtual = (representation.pointer & 1) != 0;
    const std::uintptr_t offset = representation.pointer - 1;
#endif
    return isVirtual ? offset / sizeof(void*) : notVirtual;
}

/// The virtual table to which an object's first word points. Slots count from 0; what lies before
/// it has negative indices.
template <class Class>
const std::intptr_t* virtualTableOf(const Class& object) {
    const std::intptr_t* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    return table;
}

/// Address of a function, as a virtual table holds it.
inline std::intptr_t addressOf(void (*function)()) {
    return std::bit_cast<std::intptr_t>(function);
}

/// Offset of a data member, which is all that a pointer to it holds.
template <class Class, class Value>
std::ptrdiff_t offsetOf(Value Class::*member) {
    static_assert(std::is_member_object_pointer_v<Value Class::*>);
    return std::bit_cast<std::ptrdiff_t>(member);
}

} // namespace abi_layout
