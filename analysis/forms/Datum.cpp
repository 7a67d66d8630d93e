#include "Datum.h"

#include "Printable.h"
#include "Utf8.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <utility>

namespace {

/// Writes a value straight into the text: a document of nlohmann's beside it would double what the
/// longest answers hold. Only texts that hold more than plain characters go through that package,
/// which knows how to escape them.
class JsonWriter {
public:
    /// @param indentation blanks of a level; negative: everything on one line.
    explicit JsonWriter(int indentation)
        : m_indentation(indentation) {}

    std::string written(const Datum& value) {
        constexpr std::size_t mostAnswers = 4096;
        m_text.reserve(mostAnswers);
        std::visit(*this, value.held());
        return std::move(m_text);
    }

    void operator()(std::monostate) { m_text += "null"; }
    void operator()(bool yes) { m_text += yes ? "true" : "false"; }
    void operator()(std::int64_t number) { m_text += std::to_string(number); }
    void operator()(const std::string& text) {
        if (Utf8::isPlainInJson(text)) {
            m_text += '"';
            m_text += text;
            m_text += '"';
            return;
        }
        m_text += printableJson(
            nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
    }
    void operator()(const Datum::List& list) {
        writeAll('[', ']', list.size(),
                 [this, &list](std::size_t index) { std::visit(*this, list[index].held()); });
    }
    void operator()(const std::shared_ptr<const Datum::Made>& made) {
        writeAll('[', ']', made->count,
                 [this, &made](std::size_t index) { std::visit(*this, made->at(index).held()); });
    }
    void operator()(const Datum::Object& members) {
        writeAll('{', '}', members.size(), [this, &members](std::size_t index) {
            (*this)(members[index].first);
            m_text += m_indentation < 0 ? ":" : ": ";
            std::visit(*this, members[index].second.held());
        });
    }

private:
    template <class Write>
    void writeAll(char begin, char end, std::size_t count, Write write) {
        m_text += begin;
        ++m_level;
        for (std::size_t index = 0; index < count; ++index) {
            m_text += index == 0 ? "" : ",";
            beginLine();
            write(index);
        }
        --m_level;
        if (count > 0) {
            beginLine();
        }
        m_text += end;
    }

    void beginLine() {
        if (m_indentation >= 0) {
            m_text += '\n';
            m_text.append(m_level * static_cast<std::size_t>(m_indentation), ' ');
        }
    }

    int m_indentation;
    std::size_t m_level = 0;
    std::string m_text;
};

} // namespace

std::string schemaOf(const std::string& command) {
    return "qor-power/" + command + "/1";
}

Datum::Object answerOf(const std::string& command, Datum::Object members) {
    members.emplace(members.begin(), "schema", schemaOf(command));
    return members;
}

std::string jsonDocument(const Datum& value) {
    return JsonWriter(2).written(value) + '\n';
}

std::string jsonLine(const Datum& value) {
    return JsonWriter(-1).written(value) + '\n';
}
