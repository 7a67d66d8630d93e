#pragma once

#include "Sides.h"

#include <functional>
#include <string>
#include <vector>

/// A public operation of the service as both sides do it: fills in the result and the outputs,
/// which hold something else before.
struct Operation {
    std::string name;
    std::function<void(LibrarySide&, Outcome&)> onLibrary;
    std::function<void(ReferenceSide&, Outcome&)> onReference;
};

/// Builds the service anew and starts it.
Operation startOperation();

/// What they are asked for is in every table.
std::vector<Operation> queries();

/// The power of every modulation-and-code of the frame format with this id, or of the configured
/// one where it is below 1.
Operation arrayOperation(const std::string& name, std::int32_t id,
                         std::int32_t minCode = reference::undefinedCode,
                         std::int32_t maxCode = reference::undefinedCode);

/// The frame format that the neighbours know by its id.
constexpr std::int32_t frameFormatId = 7;

/// The operations that ask nobody.
std::vector<Operation> inputs();
