#pragma once

#include <cstddef>
#include <cstdint>

/// What every fuzzer defines, under the name by which libFuzzer calls it: tries one input. Returns
/// 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);
