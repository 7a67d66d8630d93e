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

/// The operations that ask nobody.
std::vector<Operation> inputs();
