// Sizes and members of what crosses the library's border as plain memory: callers on the board were
// compiled with these offsets.

#include "CalculationData.h"
#include "IInterface.h"
#include "IOutputPowerCalculator.h"
#include "ModulationAndCoding.h"
#include "OutputPowerCalculator.h"
#include "TxRfMaxPowerCapability.h"
#include "VirtualTable.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

using abi_layout::offsetOf;

namespace {

/// Hands out a pointer to a private member: an explicit instantiation may name what it likes.
template <class Tag, auto member>
struct Revealed {
    friend typename Tag::Pointer reveal(Tag) { return member; }
};

/// `tag{}` gives reveal() the pointer to a private member, of exactly this type.
#define REVEAL(tag, class_, member, ...)                                                           \
    struct tag {                                                                                   \
        using Pointer = __VA_ARGS__ class_::*;                                                     \
        friend Pointer reveal(tag);                                                                \
    };                                                                                             \
    template struct Revealed<tag, &class_::member>

REVEAL(InterfaceName, IInterface, m_name, std::string);

REVEAL(CapabilityPmaxTable, TxRfMaxPowerCapability, m_pmaxTable, const int*);
REVEAL(CapabilityPmaxTableSize, TxRfMaxPowerCapability, m_pmaxTableSize, const int*);
REVEAL(CapabilityChannel, TxRfMaxPowerCapability, m_channel, unsigned long);
REVEAL(CapabilityDpdVersion, TxRfMaxPowerCapability, m_dpdVersion, EDpdVersion);
REVEAL(CapabilityMarket, TxRfMaxPowerCapability, m_market, EFrameFormatMarket);
REVEAL(CapabilityHandler, TxRfMaxPowerCapability, m_capabilityHandler, ICapabilityHandler*);

REVEAL(RadioChannelOf, OutputPowerCalculator, m_radioChannel, std::uint32_t);
REVEAL(MinOutputPower, OutputPowerCalculator, m_minOutputPower, const int*);
REVEAL(Temperature, OutputPowerCalculator, m_temperature, long);
REVEAL(UseTemporaryCutback, OutputPowerCalculator, m_useTemporaryPowerCutback, bool);
REVEAL(TemporaryCutback, OutputPowerCalculator, m_temporaryPowerCutback, unsigned long);
REVEAL(Cutback, OutputPowerCalculator, m_powerCutback, unsigned long);
REVEAL(Dpd1Etsi, OutputPowerCalculator, m_txRfMaxPowerCapabilityDpd1Etsi, TxRfMaxPowerCapability);
REVEAL(Dpd2Etsi, OutputPowerCalculator, m_txRfMaxPowerCapabilityDpd2Etsi, TxRfMaxPowerCapability);
REVEAL(Dpd1Ansi, OutputPowerCalculator, m_txRfMaxPowerCapabilityDpd1Ansi, TxRfMaxPowerCapability);
REVEAL(Dpd2Ansi, OutputPowerCalculator, m_txRfMaxPowerCapabilityDpd2Ansi, TxRfMaxPowerCapability);
REVEAL(HardwareConfiguration, OutputPowerCalculator, m_hardwareConfigurationHandler,
       IHardwareConfigurationHandler*);
REVEAL(AcmHandler, OutputPowerCalculator, m_acmHandler, IAcmHandler*);
REVEAL(SystemPower, OutputPowerCalculator, m_systemPowerController, ISystemPowerController*);
REVEAL(CapabilityHandlerOf, OutputPowerCalculator, m_capabilityHandler, ICapabilityHandler*);
REVEAL(FrameFormat, OutputPowerCalculator, m_frameFormat, IFrameFormat*);
REVEAL(BoosterPresence, OutputPowerCalculator, m_boosterPresence, int);
REVEAL(BoosterGain, OutputPowerCalculator, m_boosterGain, int);
REVEAL(BoosterMaxInput, OutputPowerCalculator, m_boosterMaxInputPower, int);
REVEAL(BoosterMaxModulation, OutputPowerCalculator, m_boosterMaxModulation, Modulation);

#undef REVEAL

/// A number of bytes on a 32-bit and on a 64-bit target.
struct Bytes {
    std::size_t on32;
    std::size_t on64;

    std::size_t here() const { return sizeof(void*) == 4 ? on32 : on64; }
};

struct Member {
    const char* name;
    std::ptrdiff_t offset;
    std::size_t size;
    Bytes expectedOffset;
    Bytes expectedSize;
};

/// `Row(name, pointer to member, offset on 32 and 64 bits, size on 32 and 64 bits)`
template <class Class, class Value>
Member row(const char* name, Value Class::*member, Bytes offset, Bytes size) {
    return {name, offsetOf(member), sizeof(Value), offset, size};
}

void expectMembers(const std::vector<Member>& members) {
    std::size_t end = 0;
    for (const Member& member : members) {
        SCOPED_TRACE(member.name);
        EXPECT_EQ(member.offset, static_cast<std::ptrdiff_t>(member.expectedOffset.here()));
        EXPECT_EQ(member.size, member.expectedSize.here());
        EXPECT_GE(member.expectedOffset.here(), end) << "the table is not in order";
        end = member.expectedOffset.here() + member.expectedSize.here();
    }
}

// clang-format off

TEST(Layout, OfARowOfTheCodeArrayIsItsCodeAlone) {
    const std::vector<Member> members = {
        //                                        offset 32  64   size 32  64
        row("code", &ModulationAndCoding::code,         { 0,   0},     { 4,  4}),
    };

    expectMembers(members);
    EXPECT_EQ(sizeof(ModulationAndCoding), 4U);
    EXPECT_EQ(alignof(ModulationAndCoding), 4U);
    EXPECT_TRUE(std::is_trivially_copyable_v<ModulationAndCoding>);
    EXPECT_TRUE(std::is_standard_layout_v<ModulationAndCoding>);
}

TEST(Layout, OfTheRootIsATableAndAText) {
    const std::vector<Member> members = {
        //                                        offset 32  64   size 32  64
        row("m_name", reveal(InterfaceName{}),          { 4,   8},     {24, 32}),
    };

    expectMembers(members);
    EXPECT_EQ(sizeof(IInterface), (Bytes{28, 40}.here()));
    EXPECT_EQ(sizeof(IOutputPowerCalculator), (Bytes{32, 48}.here())) << "a table and the root";
}

TEST(Layout, OfACapabilityTableFollowsItsOrder) {
    const std::vector<Member> members = {
        //                                                          offset 32  64   size 32  64
        row("m_pmaxTable",         reveal(CapabilityPmaxTable{}),         { 4,   8},     { 4,  8}),
        row("m_pmaxTableSize",     reveal(CapabilityPmaxTableSize{}),     { 8,  16},     { 4,  8}),
        row("m_channel",           reveal(CapabilityChannel{}),           {12,  24},     { 4,  8}),
        row("m_dpdVersion",        reveal(CapabilityDpdVersion{}),        {16,  32},     { 4,  4}),
        row("m_market",            reveal(CapabilityMarket{}),            {20,  36},     { 4,  4}),
        row("m_capabilityHandler", reveal(CapabilityHandler{}),           {24,  40},     { 4,  8}),
    };

    expectMembers(members);
    EXPECT_EQ(sizeof(TxRfMaxPowerCapability), (Bytes{28, 48}.here()));
}

TEST(Layout, OfTheCalculationDataFollowsItsOrder) {
    using Data = CalculationData;
    const std::vector<Member> members = {
        //                                                               offset 32  64   size 32  64
        row("rsec",                      &Data::rsec,                          { 0,   0},     { 4,  4}),
        row("selectedMinModulation",     &Data::selectedMinModulation,         { 4,   4},     { 4,  4}),
        row("selectedMaxModulation",     &Data::selectedMaxModulation,         { 8,   8},     { 4,  4}),
        row("actualModulation",          &Data::actualModulation,              {12,  12},     { 4,  4}),
        row("refMaxModulation",          &Data::refMaxModulation,              {16,  16},     { 4,  4}),
        row("pmaxSelectedMinModulation", &Data::pmaxSelectedMinModulation,     {20,  24},     { 4,  8}),
        row("pmaxSelectedMaxModulation", &Data::pmaxSelectedMaxModulation,     {24,  32},     { 4,  8}),
        row("pmaxActualModulation",      &Data::pmaxActualModulation,          {28,  40},     { 4,  8}),
        row("pmaxRefMaxModulation",      &Data::pmaxRefMaxModulation,          {32,  48},     { 4,  8}),
        row("csPowerCompensation",       &Data::csPowerCompensation,           {36,  56},     { 4,  8}),
        row("maxPowerCapability",        &Data::maxPowerCapability,            {40,  64},     {28, 48}),
    };

    expectMembers(members);
    EXPECT_EQ(sizeof(CalculationData), (Bytes{68, 112}.here()));
}

TEST(Layout, OfTheServiceFollowsItsOrderAndEndsWithTheRoot) {
    const std::vector<Member> members = {
        //                                                                   offset 32  64   size 32  64
        row("m_radioChannel",                   reveal(RadioChannelOf{}),         {  4,   8},     { 4,  4}),
        row("m_minOutputPower",                 reveal(MinOutputPower{}),         {  8,  16},     { 4,  8}),
        row("m_temperature",                    reveal(Temperature{}),            { 12,  24},     { 4,  8}),
        row("m_useTemporaryPowerCutback",       reveal(UseTemporaryCutback{}),    { 16,  32},     { 1,  1}),
        row("m_temporaryPowerCutback",          reveal(TemporaryCutback{}),       { 20,  40},     { 4,  8}),
        row("m_powerCutback",                   reveal(Cutback{}),                { 24,  48},     { 4,  8}),
        row("m_txRfMaxPowerCapabilityDpd1Etsi", reveal(Dpd1Etsi{}),               { 28,  56},     {28, 48}),
        row("m_txRfMaxPowerCapabilityDpd2Etsi", reveal(Dpd2Etsi{}),               { 56, 104},     {28, 48}),
        row("m_txRfMaxPowerCapabilityDpd1Ansi", reveal(Dpd1Ansi{}),               { 84, 152},     {28, 48}),
        row("m_txRfMaxPowerCapabilityDpd2Ansi", reveal(Dpd2Ansi{}),               {112, 200},     {28, 48}),
        row("m_hardwareConfigurationHandler",   reveal(HardwareConfiguration{}),  {140, 248},     { 4,  8}),
        row("m_acmHandler",                     reveal(AcmHandler{}),             {144, 256},     { 4,  8}),
        row("m_systemPowerController",          reveal(SystemPower{}),            {148, 264},     { 4,  8}),
        row("m_capabilityHandler",              reveal(CapabilityHandlerOf{}),    {152, 272},     { 4,  8}),
        row("m_frameFormat",                    reveal(FrameFormat{}),            {156, 280},     { 4,  8}),
        row("m_boosterPresence",                reveal(BoosterPresence{}),        {160, 288},     { 4,  4}),
        row("m_boosterGain",                    reveal(BoosterGain{}),            {164, 292},     { 4,  4}),
        row("m_boosterMaxInputPower",           reveal(BoosterMaxInput{}),        {168, 296},     { 4,  4}),
        row("m_boosterMaxModulation",           reveal(BoosterMaxModulation{}),   {172, 300},     { 4,  4}),
    };

    expectMembers(members);

    const OutputPowerCalculator sut(1);
    const IInterface& root = sut;
    EXPECT_EQ(reinterpret_cast<const std::byte*>(&root) - reinterpret_cast<const std::byte*>(&sut),
              static_cast<std::ptrdiff_t>(Bytes{176, 304}.here()));
    EXPECT_EQ(sizeof(OutputPowerCalculator), (Bytes{204, 344}.here()));
}

// clang-format on

TEST(Layout, OfEveryEnumerationIsThatOfASigned32BitNumber) {
    const std::array<std::size_t, 6> sizes = {sizeof(Modulation),          sizeof(EReferenceSEC),
                                              sizeof(EFrameFormatMarket),  sizeof(EDpdVersion),
                                              sizeof(EChannelSpacingType), sizeof(RadioChannel)};

    for (const std::size_t size : sizes) {
        EXPECT_EQ(size, 4U);
    }
    EXPECT_TRUE(std::is_signed_v<std::underlying_type_t<Modulation>>);
    EXPECT_TRUE(std::is_signed_v<std::underlying_type_t<EReferenceSEC>>);
    EXPECT_TRUE(std::is_signed_v<std::underlying_type_t<EFrameFormatMarket>>);
    EXPECT_TRUE(std::is_signed_v<std::underlying_type_t<EDpdVersion>>);
    EXPECT_TRUE(std::is_signed_v<std::underlying_type_t<EChannelSpacingType>>);
    EXPECT_TRUE(std::is_unsigned_v<RadioChannel>);
}

} // namespace
