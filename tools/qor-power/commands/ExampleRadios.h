#pragma once

#include <string_view>
#include <vector>

/// A radio file that comes with the tool.
struct ExampleRadio {
    std::string_view name; ///< of the file
    std::string_view text;
};

/// Every example, in the order of the names. The build makes the list from examples/radios/.
const std::vector<ExampleRadio>& exampleRadios();
