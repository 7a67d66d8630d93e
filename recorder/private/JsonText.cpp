#include "JsonText.h"

#include <cstdio>
#include <cstring>

JsonText& JsonText::key(const char* name) {
    constexpr std::size_t member = 128;
    beforeValue();
    m_text += '"';
    m_text += name;
    m_text += "\": ";
    m_cost += member + std::strlen(name);
    m_needsComma = false;
    return *this;
}

void JsonText::number(std::int64_t value) {
    beforeValue();
    m_text += std::to_string(value);
    m_needsComma = true;
}

void JsonText::flag(bool value) {
    beforeValue();
    m_text += value ? "true" : "false";
    m_needsComma = true;
}

void JsonText::null() {
    beforeValue();
    m_text += "null";
    m_needsComma = true;
}

void JsonText::text(const char* bytes, std::size_t length) {
    beforeValue();
    m_cost += length;
    m_text += '"';
    for (std::size_t at = 0; at < length;) {
        const std::size_t size = characterAt(bytes + at, length - at);
        const auto byte = static_cast<unsigned char>(bytes[at]);
        if (size == 0) {
            m_text += "\\ufffd";
            ++at;
            continue;
        }
        if (byte == '"' || byte == '\\') {
            m_text += '\\';
            m_text += bytes[at];
        } else if (byte < 0x20 || byte == 0x7f) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(byte));
            m_text += escaped;
        } else {
            m_text.append(bytes + at, size);
        }
        at += size;
    }
    m_text += '"';
    m_needsComma = true;
}

std::size_t JsonText::characterAt(const char* bytes, std::size_t length) {
    const auto byteAt = [&](std::size_t index) -> unsigned {
        return index < length ? static_cast<unsigned char>(bytes[index]) : 0U;
    };
    const unsigned first = byteAt(0);
    if (first < 0x80) {
        return 1;
    }
    const std::size_t size = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || size > length) {
        return 0;
    }
    // The second byte rules out what has a shorter form, surrogates, and what lies behind the last
    // character.
    const unsigned second = byteAt(1);
    const unsigned least = first == 0xe0 ? 0xa0 : first == 0xf0 ? 0x90 : 0x80;
    const unsigned most = first == 0xed ? 0x9f : first == 0xf4 ? 0x8f : 0xbf;
    if (second < least || second > most) {
        return 0;
    }
    for (std::size_t index = 2; index < size; ++index) {
        if ((byteAt(index) & 0xc0) != 0x80) {
            return 0;
        }
    }
    return size;
}

bool JsonText::isUtf8(const char* bytes, std::size_t length) {
    for (std::size_t at = 0; at < length;) {
        const std::size_t size = characterAt(bytes + at, length - at);
        if (size == 0) {
            return false;
        }
        at += size;
    }
    return true;
}

void JsonText::clear() {
    m_text.clear();
    m_cost = 0;
    m_values = 0;
    m_needsComma = false;
}

void JsonText::open(char bracket) {
    beforeValue();
    m_text += bracket;
    m_needsComma = false;
}

void JsonText::close(char bracket) {
    m_text += bracket;
    m_needsComma = true;
}

void JsonText::beforeValue() {
    constexpr std::size_t element = 8;
    m_cost += element;
    ++m_values;
    if (m_needsComma) {
        m_text += ", ";
    }
}
