#pragma once

#include <cstdint>

enum class EFrameFormatMarket : std::int32_t;
enum class EReferenceSEC : std::int32_t;
enum class Modulation : std::int32_t;
struct ModulationAndCoding;

/// @file
/// The texts of the public text forms as literals, for traces, which put many of them together.

/// The text of convertAcmEnumToString().
const char* literalOf(Modulation modulation);

/// The text of convertRsecEnumToString().
const char* literalOf(EReferenceSEC rsec);

/// The text of convertCodeAndModulationEnumToString().
const char* literalOf(const ModulationAndCoding& modulationAndCoding);

/// What the market's operator<< writes, nothing for a value that no enumerator has.
const char* literalOf(EFrameFormatMarket market);
