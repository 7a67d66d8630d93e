#include "RadioCase.h"

#include "AnalysisError.h"

namespace {

/// Does something, and puts the file's name in front of what goes wrong.
template <class Work>
auto underName(const std::string& name, Work work) {
    try {
        return work();
    } catch (const AnalysisError& error) {
        throw AnalysisError(error.outcome(), (name.empty() ? "" : name + ": ") + error.what());
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
    return explained;
}
