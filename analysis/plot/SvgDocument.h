#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

/// A length of a picture in tenths of a pixel. Integers alone, so that the same picture has the
/// same bytes everywhere.
using Tenths = std::int64_t;

constexpr Tenths pixels(std::int64_t count) {
    return count * 10;
}

/// A length as SVG writes it: "12", "12.5".
std::string svgNumber(Tenths length);

/// A text as it may stand in XML, between tags and in attributes.
std::string xmlText(std::string_view text);

/// An SVG document while it is written.
class SvgDocument {
public:
    using Attributes = std::initializer_list<std::pair<const char*, std::string>>;

    /// An element without content.
    void add(const char* name, Attributes attributes);

    /// An element that holds nothing but text.
    void addText(const char* name, Attributes attributes, std::string_view text);

    /// An element that holds what is added until close().
    void open(const char* name, Attributes attributes);
    void close(const char* name);

    const std::string& text() const { return m_text; }

private:
    void begin(const char* name, Attributes attributes);

    std::string m_text;
    std::size_t m_depth = 0;
};
