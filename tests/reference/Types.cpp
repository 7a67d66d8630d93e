#include "Types.h"

#include <cstdio>
#include <utility>

namespace reference {

namespace {

using TextTable = std::vector<std::pair<std::int32_t, std::string>>;

const TextTable& modulationTexts() {
    static const TextTable table = {
        {0, "CW"},         {2, "BPSK"},         {4, "4QAM"},         {16, "16QAM"},
        {32, "32QAM"},     {64, "64QAM"},       {128, "128QAM"},     {256, "256QAM"},
        {512, "512QAM"},   {1024, "1024QAM"},   {2048, "2048QAM"},   {4096, "4096QAM"},
        {8192, "8192QAM"}, {16384, "16384QAM"}, {65536, "65536QAM"}, {100000, "UNDEFINED"},
    };
    return table;
}

const TextTable& codeTexts() {
    static const TextTable table = {
        {10, "HALF_BPSK_STRONG"},
        {11, "HALF_BPSK"},
        {12, "HALF_BPSK_LIGHT"},
        {20, "BPSK_STRONG"},
        {21, "BPSK"},
        {22, "BPSK_LIGHT"},
        {23, "4QAM_ULTRA_STRONG"},
        {30, "4QAM_STRONG"},
        {31, "4QAM"},
        {32, "4QAM_LIGHT"},
        {33, "16QAM_ULTRA_STRONG"},
        {40, "16QAM_STRONG"},
        {41, "16QAM"},
        {42, "16QAM_LIGHT"},
        {50, "32QAM_STRONG"},
        {51, "32QAM"},
        {52, "32QAM_LIGHT"},
        {53, "64QAM_ULTRA_STRONG"},
        {60, "64QAM_STRONG"},
        {61, "64QAM"},
        {62, "64QAM_LIGHT"},
        {70, "128QAM_STRONG"},
        {71, "128QAM"},
        {72, "128QAM_LIGHT"},
        {73, "256QAM_ULTRA_STRONG"},
        {80, "256QAM_STRONG"},
        {81, "256QAM"},
        {82, "256QAM_LIGHT"},
        {90, "512QAM_STRONG"},
        {91, "512QAM"},
        {92, "512QAM_LIGHT"},
        {93, "1024QAM_ULTRA_STRONG"},
        {100, "1024QAM_STRONG"},
        {101, "1024QAM"},
        {102, "1024QAM_LIGHT"},
        {110, "2048QAM_STRONG"},
        {111, "2048QAM"},
        {112, "2048QAM_LIGHT"},
        {113, "4096QAM_ULTRA_STRONG"},
        {120, "4096QAM_STRONG"},
        {121, "4096QAM"},
        {122, "4096QAM_LIGHT"},
        {130, "8192QAM_STRONG"},
        {131, "8192QAM"},
        {132, "8192QAM_LIGHT"},
        {133, "16384QAM_ULTRA_STRONG"},
        {140, "16384QAM_STRONG"},
        {141, "16384QAM"},
        {142, "16384QAM_LIGHT"},
        {143, "65536QAM_ULTRA_STRONG"},
        {160, "65536QAM_STRONG"},
        {161, "65536QAM"},
        {162, "65536QAM_LIGHT"},
        {163, "UNDEFINED"},
    };
    return table;
}

const TextTable& rsecTexts() {
    static const TextTable table = {
        {0, "2"},   {1, "4L"},  {2, "4H"},  {3, "5B"}, {4, "6B"},           {5, "5LB"},
        {6, "5HB"}, {7, "6LB"}, {8, "6HB"}, {9, "7B"}, {1000, "UNDEFINED"},
    };
    return table;
}

const TextTable& marketTexts() {
    static const TextTable table = {{0, "Etsi"}, {1, "Ansi"}, {2, "Global"}, {3, "Unknown"}};
    return table;
}

std::string textOf(const TextTable& table, std::int32_t value, const std::string& otherwise) {
    for (const auto& [listed, text] : table) {
        if (listed == value) {
            return text;
        }
    }
    return otherwise;
}

std::optional<std::int32_t> valueOf(const TextTable& table, const std::string& wanted) {
    for (const auto& [listed, text] : table) {
        if (text == wanted) {
            return listed;
        }
    }
    return std::nullopt;
}

std::vector<std::int32_t> valuesOf(const TextTable& table) {
    std::vector<std::int32_t> values;
    for (const auto& [listed, text] : table) {
        if (text != "UNDEFINED") {
            values.push_back(listed);
        }
    }
    return values;
}

} // namespace

std::string modulationText(std::int32_t modulation) {
    return textOf(modulationTexts(), modulation, "UNDEFINED");
}

std::string codeText(std::int32_t code) {
    return textOf(codeTexts(), code, "UNDEFINED");
}

std::string rsecText(std::int32_t rsec) {
    return textOf(rsecTexts(), rsec, "UNDEFINED");
}

std::string marketText(std::int32_t market) {
    return textOf(marketTexts(), market, "");
}

std::optional<std::int32_t> modulationOfText(const std::string& text) {
    return valueOf(modulationTexts(), text);
}

std::optional<std::int32_t> codeOfText(const std::string& text) {
    return valueOf(codeTexts(), text);
}

std::optional<std::int32_t> rsecOfText(const std::string& text) {
    return valueOf(rsecTexts(), text);
}

std::optional<std::int32_t> marketOfText(const std::string& text) {
    return valueOf(marketTexts(), text);
}

std::int32_t modulationOfCode(std::int32_t code) {
    switch (code) {
    case 10:
    case 11:
    case 12:
    case 20:
    case 21:
    case 22:
        return 2;
    case 23:
    case 30:
    case 31:
    case 32:
        return 4;
    case 33:
    case 40:
    case 41:
    case 42:
        return 16;
    case 50:
    case 51:
    case 52:
        return 32;
    case 53:
    case 60:
    case 61:
    case 62:
        return 64;
    case 70:
    case 71:
    case 72:
        return 128;
    case 73:
    case 80:
    case 81:
    case 82:
        return 256;
    case 90:
    case 91:
    case 92:
        return 512;
    case 93:
    case 100:
    case 101:
    case 102:
        return 1024;
    case 110:
    case 111:
    case 112:
        return 2048;
    case 113:
    case 120:
    case 121:
    case 122:
        return 4096;
    case 130:
    case 131:
    case 132:
        return 8192;
    case 133:
    case 140:
    case 141:
    case 142:
        return 16384;
    case 143:
    case 160:
    case 161:
    case 162:
        return 65536;
    default:
        return undefinedModulation;
    }
}

std::vector<std::int32_t> listedModulations() {
    return valuesOf(modulationTexts());
}

std::vector<std::int32_t> listedCodes() {
    return valuesOf(codeTexts());
}

std::vector<std::int32_t> listedRsecs() {
    return valuesOf(rsecTexts());
}

std::int32_t wrapToSigned(std::uint32_t value) {
    return static_cast<std::int32_t>(value);
}

std::int32_t wrapAdd(std::int32_t left, std::int32_t right) {
    return wrapToSigned(static_cast<std::uint32_t>(left) + static_cast<std::uint32_t>(right));
}

std::int32_t wrapSubtract(std::int32_t left, std::int32_t right) {
    return wrapToSigned(static_cast<std::uint32_t>(left) - static_cast<std::uint32_t>(right));
}

std::int32_t wrapSubtract(std::int32_t left, std::uint32_t right) {
    return wrapToSigned(static_cast<std::uint32_t>(left) - right);
}

std::string nameWithChannel(const std::string& base, std::uint32_t channel) {
    return base + "_" + std::to_string(channel);
}

std::string nameWithChannelUnlessZero(const std::string& base, std::uint32_t channel) {
    if (channel == 0) {
        return base;
    }
    return base + "_" + std::to_string(channel);
}

TraceRecord enterRecord(const std::string& file, const std::string& function,
                        const std::string& text) {
    return TraceRecord{6, 0, TraceKind::enter, file, function, text};
}

std::string number(std::int32_t value) {
    return std::to_string(value);
}

TraceRecord messageRecord(int level, const std::string& file, const std::string& function,
                          const std::string& text) {
    return TraceRecord{level, 0, TraceKind::msg, file, function, text};
}

TraceRecord rawRecord(unsigned code, const std::string& file, const std::string& function,
                      const std::string& message) {
    // Codes of 32768 and more are errors, shown from level 1; all others from level 5.
    const int level = code >= 32768 ? 1 : 5;
    char codeLine[40] = {};
    std::snprintf(codeLine, sizeof codeLine, "      code: %#x\n", code);
    return TraceRecord{level, code, TraceKind::raw, file, function, message + codeLine};
}

} // namespace reference
