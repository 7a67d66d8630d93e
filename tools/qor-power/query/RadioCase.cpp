#include "RadioCase.h"

#include "Input.h"
#include "Messages.h"
#include "ToolError.h"

namespace {

/// Does something, and puts the file's name in front of what goes wrong.
template <class Work>
auto underName(const std::string& name, Work work) {
    try {
        return work();
    } catch (const ToolError& error) {
        throw ToolError(error.status(), (name.empty() ? "" : name + ": ") + error.what());
    }
}

} // namespace

PowerTable RadioCase::powers() const {
    PowerTable table = underName(name, [this] { return query.run(file); });
    table.radioFile = name;
    return table;
}

ExplainedTable RadioCase::explain() const {
    ExplainedTable explained = underName(name, [this] { return query.explain(file); });
    explained.table.radioFile = name;
    for (const std::string& line : mismatchesOf(explained.explanations)) {
        complain((name.empty() ? "" : name + ": ") + line);
    }
    return explained;
}

RadioCase loadRadioCase(const std::string& path, const PowerTableQuery& query) {
    return {loadRadioFile(path), query, inputName(path)};
}
