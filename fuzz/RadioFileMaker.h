#pragma once

#include "FuzzInput.h"

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// Makes radio files out of a fuzzer's decisions. Every file is valid: each neighbour is there or
/// not, answers or leaves the operation out or returns a result code, with values that a radio has,
/// values of no enumerator and values at the limits; the requests are any run of calls, patches
/// included.
class RadioFileMaker {
public:
    explicit RadioFileMaker(FuzzInput& input)
        : m_input(input) {}

    nlohmann::json make();

private:
    using Json = nlohmann::json;
    using Section = Json (RadioFileMaker::*)();

    Json modulation();
    Json modulationNumber();
    Json code();
    Json rsec();
    Json market();
    Json spacing();
    Json dpdVersion();
    Json power();
    Json unsignedValue();
    Json profile();
    Json result();
    Json productNumber();

    Json pmaxTable();
    Json modulationByProfile();
    Json modulationByMarket();
    Json codes();
    Json profiles();
    Json calibration();

    Json board();
    Json capabilityHandler();
    Json acmHandler();
    Json frameFormat();
    Json systemPowerController();
    Json hardwareConfigurationHandler();
    Json variables();

    Json request();
    Json patch();

    /// The rest of an enumeration's values: those of no enumerator, then any number.
    Json oddValue(unsigned choice);

    /// An enumeration's value by text, number or neither.
    template <std::size_t count>
    Json enumeration(const std::array<const char*, count>& texts,
                     const std::array<std::int32_t, count>& values);

    template <class Make>
    Json list(std::size_t limit, Make makeElement);

    FuzzInput& m_input;
    Json m_file; ///< as the patches so far leave it
};
