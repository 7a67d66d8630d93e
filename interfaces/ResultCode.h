#pragma once

/// @file
/// The result codes that the service, the calculators and the neighbours return.
///
/// A result code is an unsigned 32-bit number: 0 is success and every value of 32768 or more is a
/// failure. Callers ask isFailure() and do not look for one particular code, except for
/// NotApplicable, which is no failure and means that there is no power for this modulation.
namespace ResultCode {

/// Done.
constexpr unsigned Success = 0;

/// The calculator does not apply to the modulation (above the selected maximum, or above what the
/// booster carries). Below 32768, therefore not a failure.
constexpr unsigned NotApplicable = 2;

/// Key of informational raw traces; never returned.
constexpr unsigned Information = 0x820;

/// General failure.
constexpr unsigned Failure = 0x8000;

/// A neighbour does not provide the operation.
constexpr unsigned NotProvided = 0x8001;

/// A radio-unit family has no table entry for what was asked.
constexpr unsigned NoRadioUnitEntry = 0x8002;

/// The power map could not be built from the modulation-and-code array.
constexpr unsigned MapFailure = 0x8003;

/// An outdoor family, or the Pmax table, has no entry for the modulation.
constexpr unsigned NoEntry = 0x8008;

/// No hardware-family calculator is available.
constexpr unsigned NoCalculator = 0x800A;

/// Whether a code is a failure: 32768 or more.
constexpr bool isFailure(unsigned code) {
    return code >= Failure;
}

/// Likewise of a code that travels as a signed number.
constexpr bool isFailure(int code) {
    return isFailure(static_cast<unsigned>(code));
}

} // namespace ResultCode
