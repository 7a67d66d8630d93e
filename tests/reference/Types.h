#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A plain second statement of the output power rules, kept apart from the library so that the two
// can be compared. It shares no header with the library and prefers the long way round: every
// step of every rule stands here as it reads, in order, without shortcuts.
namespace reference {

inline constexpr std::int32_t undefinedModulation = 100000;
inline constexpr std::int32_t undefinedCode = 163;
inline constexpr std::int32_t undefinedRsec = 1000;

inline constexpr std::int32_t marketEtsi = 0;
inline constexpr std::int32_t marketAnsi = 1;
inline constexpr std::int32_t marketGlobal = 2;
inline constexpr std::int32_t marketUnknown = 3;

inline constexpr std::uint32_t firstFailureCode = 0x8000;

inline bool failed(std::uint32_t code) {
    return code >= firstFailureCode;
}

// What a value prints as. An unlisted modulation, code or RSEC is "UNDEFINED"; an unlisted market
// is the empty string.
std::string modulationText(std::int32_t modulation);
std::string codeText(std::int32_t code);
std::string rsecText(std::int32_t rsec);
std::string marketText(std::int32_t market);

// The way back, for radio files. No value for a text that is in no table.
std::optional<std::int32_t> modulationOfText(const std::string& text);
std::optional<std::int32_t> codeOfText(const std::string& text);
std::optional<std::int32_t> rsecOfText(const std::string& text);
std::optional<std::int32_t> marketOfText(const std::string& text);

// The modulation of a modulation-and-code; undefinedModulation for a code that names none.
std::int32_t modulationOfCode(std::int32_t code);

// Every listed value in table order, the undefined one left out.
std::vector<std::int32_t> listedModulations();
std::vector<std::int32_t> listedCodes();
std::vector<std::int32_t> listedRsecs();

// Power arithmetic is that of the 32-bit target: two's complement, wrapping, on every host.
std::int32_t wrapAdd(std::int32_t left, std::int32_t right);
std::int32_t wrapSubtract(std::int32_t left, std::int32_t right);
std::int32_t wrapSubtract(std::int32_t left, std::uint32_t right);
std::int32_t wrapToSigned(std::uint32_t value);

// A name that always carries the channel, and one that leaves it out for 0.
std::string nameWithChannel(const std::string& base, std::uint32_t channel);
std::string nameWithChannelUnlessZero(const std::string& base, std::uint32_t channel);

enum class TraceKind {
    enter,
    msg,
    raw
};

struct TraceRecord {
    int level;     // for a raw record the level that the desk maps its code to
    unsigned code; // raw records only
    TraceKind kind;
    std::string file;
    std::string function;
    std::string text;
};

// Records of every level: whoever shows them picks the levels.
using Trace = std::vector<TraceRecord>;

// As traces write it.
std::string number(std::int32_t value);

TraceRecord enterRecord(const std::string& file, const std::string& function,
                        const std::string& text);
TraceRecord messageRecord(int level, const std::string& file, const std::string& function,
                          const std::string& text);
// The code line is added to the message here.
TraceRecord rawRecord(unsigned code, const std::string& file, const std::string& function,
                      const std::string& message);

} // namespace reference
