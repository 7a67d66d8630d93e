#pragma once

#include "TextForms.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

/// What an answer says in one place, before any form is given to it: nothing, yes or no, a whole
/// number, a text, a list or an object with its keys in order.
class Datum {
public:
    using List = std::vector<Datum>;
    using Object = std::vector<std::pair<std::string, Datum>>;

    /// A long list, of which each element is made only when it is printed.
    struct Made {
        std::size_t count = 0;
        std::function<Datum(std::size_t index)> at;
    };

    using Held = std::variant<std::monostate, bool, std::int64_t, std::string, List, Object,
                              std::shared_ptr<const Made>>;

    Datum() = default;
    Datum(bool yes)
        : m_held(yes) {}
    Datum(const char* text)
        : m_held(std::string(text)) {}
    Datum(std::string text)
        : m_held(std::move(text)) {}
    Datum(List list)
        : m_held(std::move(list)) {}
    Datum(Object object)
        : m_held(std::move(object)) {}
    Datum(Made made)
        : m_held(std::make_shared<const Made>(std::move(made))) {}
    Datum(Modulation modulation)
        : m_held(convertAcmEnumToString(modulation)) {}
    Datum(const ModulationAndCoding& code)
        : m_held(convertCodeAndModulationEnumToString(code)) {}
    Datum(EReferenceSEC rsec)
        : m_held(convertRsecEnumToString(rsec)) {}
    Datum(EFrameFormatMarket market)
        : m_held(marketText(market)) {}

    /// A number, also of an enumeration whose values are numbers to people (28 MHz, DPD 2).
    template <class Number>
    requires std::integral<Number> || std::is_enum_v<Number> Datum(Number number)
        : m_held(static_cast<std::int64_t>(number)) {}

    template <class Type>
    Datum(const std::optional<Type>& value)
        : Datum(value ? Datum(*value) : Datum()) {}

    Datum(const std::vector<std::string>& texts)
        : m_held(List(texts.begin(), texts.end())) {}

    /// A text that says nothing if it is empty.
    static Datum orNothing(const std::string& text) { return text.empty() ? Datum() : Datum(text); }

    const Held& held() const { return m_held; }
    bool isNothing() const { return std::holds_alternative<std::monostate>(m_held); }
    bool isNumber() const { return std::holds_alternative<std::int64_t>(m_held); }

private:
    Held m_held;
};

/// The name of the JSON Schema that a command's answers keep: "qor-power/COMMAND/1".
std::string schemaOf(const std::string& command);

/// The members of a command's answer, behind the name of its JSON Schema.
Datum::Object answerOf(const std::string& command, Datum::Object members);

/// A value as a JSON document with a line end. Bytes that are no UTF-8, for example of a path on
/// the command line, are replaced.
std::string jsonDocument(const Datum& value);

/// Likewise, on one line.
std::string jsonLine(const Datum& value);
