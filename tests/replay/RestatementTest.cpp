#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"

#include "reference/Capability.h"
#include "reference/Types.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

namespace {

std::string libraryTextOf(EFrameFormatMarket market) {
    std::ostringstream stream;
    stream << market;
    return stream.str();
}

// What the view of a Pmax table answers to a handler whose tables, each with one power, 1000 plus
// its number, are handed out with these results.
struct CapabilityStart {
    CapabilityStart(std::int32_t dpdVersion, std::int32_t market,
                    std::map<std::int32_t, std::uint32_t> results)
        : sut{1, dpdVersion, market, nullptr} {
        const reference::PmaxGetter getter = [&results](std::int32_t table) {
            const std::uint32_t code = results.at(table);
            return reference::failed(code)
                       ? reference::PmaxAnswer{code, std::nullopt}
                       : reference::PmaxAnswer{code,
                                               std::make_shared<const reference::PmaxStorage>(
                                                   reference::PmaxStorage{{4, 1000 + table}, 2})};
        };
        result = sut.initialize(&getter, trace);
    }

    reference::Capability sut;
    reference::Trace trace;
    std::uint32_t result = 0;
};

} // namespace

// The service asks for no such table.
TEST(RestatementCapability, ofTheGlobalMarketTriesTheEtsiTables) {
    const CapabilityStart start(2, reference::marketGlobal, {{3, 32769}, {2, 0}});

    EXPECT_EQ(start.result, 0U);
    EXPECT_EQ(start.sut.getMaxPower(), 1002);
}

TEST(RestatementCapability, ofAnUnknownMarketOrVersionIsAnInvalidCombination) {
    for (const auto& [version, market] : std::map<std::int32_t, std::int32_t>{{1, 3}, {3, 7}}) {
        const CapabilityStart start(version, market, {});

        EXPECT_EQ(start.result, 32768U);
        EXPECT_EQ(start.trace.back().text, "Invalid combination of DPD version(" +
                                               std::to_string(version) + ") and telecom market(" +
                                               std::to_string(market) + ")      code: 0x8000\n");
    }
}

// The library's texts are tried against a table written by hand.
TEST(RestatementTexts, areThoseOfTheLibraryForEveryNumber) {
    for (std::int32_t value = -1000; value <= 101000; ++value) {
        const ModulationAndCoding code{value};
        ASSERT_EQ(reference::modulationText(value), convertAcmEnumToString(Modulation{value}));
        ASSERT_EQ(reference::codeText(value), convertCodeAndModulationEnumToString(code)) << value;
        ASSERT_EQ(reference::modulationOfCode(value),
                  static_cast<std::int32_t>(convertCodeToModulation(code)))
            << value;
        ASSERT_EQ(reference::rsecText(value), convertRsecEnumToString(EReferenceSEC{value}));
        ASSERT_EQ(reference::marketText(value), libraryTextOf(EFrameFormatMarket{value})) << value;
    }
}

TEST(RestatementTexts, leadBackToTheirValues) {
    for (const std::int32_t modulation : reference::listedModulations()) {
        EXPECT_EQ(reference::modulationOfText(reference::modulationText(modulation)), modulation);
    }
    for (const std::int32_t code : reference::listedCodes()) {
        EXPECT_EQ(reference::codeOfText(reference::codeText(code)), code);
    }
    for (const std::int32_t rsec : reference::listedRsecs()) {
        EXPECT_EQ(reference::rsecOfText(reference::rsecText(rsec)), rsec);
    }
    EXPECT_EQ(reference::listedModulations().size(), 15U);
    EXPECT_EQ(reference::listedCodes().size(), 53U);
    EXPECT_EQ(reference::listedRsecs().size(), 10U);
    EXPECT_EQ(reference::marketOfText("Unknown"), 3);
    EXPECT_EQ(reference::modulationOfText("UNDEFINED"), 100000);
    EXPECT_EQ(reference::codeOfText("UNDEFINED"), 163);
    EXPECT_EQ(reference::rsecOfText("UNDEFINED"), 1000);
    EXPECT_EQ(reference::modulationOfText("8QAM"), std::nullopt);
}
