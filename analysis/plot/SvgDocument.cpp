#include "SvgDocument.h"

#include "OneLine.h"

#include <cstddef>
#include <map>

namespace {

constexpr std::size_t indentation = 2;

/// Two characters that UTF-8 can say and XML may not hold.
void replaceForbidden(std::string& text) {
    for (const char* const forbidden : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
        for (std::size_t place = text.find(forbidden); place != std::string::npos;
             place = text.find(forbidden)) {
            text.replace(place, 3, "\xEF\xBF\xBD");
        }
    }
}

} // namespace

std::string svgNumber(Tenths length) {
    const Tenths rest = length % 10;
    const std::string sign = length < 0 && length > -10 ? "-" : "";
    const std::string whole = sign + std::to_string(length / 10);
    return rest == 0 ? whole : whole + '.' + std::to_string(rest < 0 ? -rest : rest);
}

std::string xmlText(std::string_view text) {
    static const std::map<char, std::string> entities{
        {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}};
    std::string escaped;
    for (const char letter : oneLine(text)) {
        const auto entity = entities.find(letter);
        escaped += entity == entities.end() ? std::string(1, letter) : entity->second;
    }
    replaceForbidden(escaped);
    return escaped;
}

void SvgDocument::begin(const char* name, Attributes attributes) {
    m_text.append(m_depth * indentation, ' ');
    m_text += '<';
    m_text += name;
    for (const auto& [attribute, value] : attributes) {
        m_text += std::string(" ") + attribute + "=\"" + xmlText(value) + '"';
    }
}

void SvgDocument::add(const char* name, Attributes attributes) {
    begin(name, attributes);
    m_text += "/>\n";
}

void SvgDocument::addText(const char* name, Attributes attributes, std::string_view text) {
    begin(name, attributes);
    m_text += '>' + xmlText(text) + "</" + name + ">\n";
}

void SvgDocument::open(const char* name, Attributes attributes) {
    begin(name, attributes);
    m_text += ">\n";
    ++m_depth;
}

void SvgDocument::close(const char* name) {
    --m_depth;
    m_text.append(m_depth * indentation, ' ');
    m_text += std::string("</") + name + ">\n";
}
