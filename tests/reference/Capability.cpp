#include "Capability.h"

#include <limits>
#include <string>

namespace reference {

namespace {

const std::string sourceFile = "Control/OutputPowerCalculator/private/TxRfMaxPowerCapability";

} // namespace

std::uint32_t powerInTable(const std::vector<std::int32_t>& integers, std::int32_t count,
                           std::int32_t modulation, std::int32_t& power, Trace& trace) {
    std::size_t index = 0;
    for (std::int32_t position = 0; position < count; position += 2) {
        if (integers.at(index) == modulation) {
            power = integers.at(index + 1);
            return 0;
        }
        index += 2;
    }
    trace.push_back(rawRecord(32776, sourceFile, "getPower",
                              "getPower, unknown modulation type: " + modulationText(modulation)));
    return 32776;
}

std::int32_t highestPowerInTable(const std::vector<std::int32_t>& integers, std::int32_t count) {
    std::int32_t highest = std::numeric_limits<std::int32_t>::min();
    std::size_t index = 1;
    for (std::int32_t position = 1; position < count; position += 2) {
        if (integers.at(index) > highest) {
            highest = integers.at(index);
        }
        index += 2;
    }
    return highest;
}

std::uint32_t Capability::initialize(const PmaxGetter* handler, Trace& trace) {
    const std::string function = "initialize";
    const std::string name = nameWithChannelUnlessZero("ICapabilityHandler", channel);
    if (handler == nullptr) {
        trace.push_back(
            rawRecord(32768, sourceFile, function, "Error getting interface to " + name));
        return 32768;
    }

    trace.push_back(rawRecord(2080, sourceFile, function,
                              "m_dpdVersion = " + std::to_string(dpdVersion) +
                                  ", m_market = " + std::to_string(market)));

    std::vector<std::int32_t> candidates;
    const bool etsiOrGlobal = market == marketEtsi || market == marketGlobal;
    if (dpdVersion == 2 && market == marketAnsi) {
        candidates = {pmaxTableDpd2Ansi, pmaxTableDpd1Ansi, pmaxTableDpd1Etsi};
    } else if (dpdVersion == 2 && etsiOrGlobal) {
        candidates = {pmaxTableDpd2Etsi, pmaxTableDpd1Etsi};
    } else if (dpdVersion == 1 && market == marketAnsi) {
        candidates = {pmaxTableDpd1Ansi, pmaxTableDpd1Etsi};
    } else if (dpdVersion == 1 && etsiOrGlobal) {
        candidates = {pmaxTableDpd1Etsi};
    } else {
        trace.push_back(rawRecord(32768, sourceFile, function,
                                  "Invalid combination of DPD version(" +
                                      std::to_string(dpdVersion) + ") and telecom market(" +
                                      std::to_string(market) + ")"));
        return 32768;
    }

    for (const std::int32_t candidate : candidates) {
        const PmaxAnswer answer = (*handler)(candidate);
        if (answer.written.has_value()) {
            table = *answer.written;
        }
        const std::string outcome = failed(answer.result) ? "failed" : "succeeded";
        trace.push_back(rawRecord(2080, sourceFile, function,
                                  "PmaxTable with value " + std::to_string(candidate) + " " +
                                      outcome + " for channel " + std::to_string(channel)));
        if (!failed(answer.result)) {
            return 0;
        }
    }

    trace.push_back(rawRecord(32768, sourceFile, function, "Failed to get TxRfMaxPowerCapability"));
    return 32768;
}

std::uint32_t Capability::getPower(std::int32_t modulation, std::int32_t& power,
                                   Trace& trace) const {
    if (table == nullptr) {
        return powerInTable({}, 0, modulation, power, trace);
    }
    return powerInTable(table->integers, table->count, modulation, power, trace);
}

std::int32_t Capability::getMaxPower() const {
    if (table == nullptr) {
        return highestPowerInTable({}, 0);
    }
    return highestPowerInTable(table->integers, table->count);
}

} // namespace reference
