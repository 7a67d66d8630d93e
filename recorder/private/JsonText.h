#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Builds JSON text on one line. Also counts the memory that a reader of radio files keeps of it.
class JsonText {
public:
    void openObject() { open('{'); }
    void openList() { open('['); }
    void closeObject() { close('}'); }
    void closeList() { close(']'); }

    /// @param name without anything that needs escaping.
    JsonText& key(const char* name);

    void number(std::int64_t value);
    void flag(bool value);
    void null();

    /// A text. Bytes that are no UTF-8 are written as U+FFFD.
    void text(const char* bytes, std::size_t length);
    void text(const std::string& value) { text(value.data(), value.size()); }

    /// How many bytes at a place are one character of UTF-8; 0 if they are none.
    static std::size_t characterAt(const char* bytes, std::size_t length);
    static bool isUtf8(const char* bytes, std::size_t length);

    const std::string& written() const { return m_text; }
    std::size_t cost() const { return m_cost; }
    std::size_t values() const { return m_values; }
    void clear();

private:
    void open(char bracket);
    void close(char bracket);
    void beforeValue();

    std::string m_text;
    std::size_t m_cost = 0;
    std::size_t m_values = 0; ///< objects and lists included
    bool m_needsComma = false;
};
