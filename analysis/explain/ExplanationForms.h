#pragma once

#include "Explanation.h"
#include "PowerTableForms.h"
#include "TextLook.h"

#include <string>
#include <vector>

/// One explanation for people: a title, the look-ups, the steps with the binding one marked, the
/// runner-up and the headroom.
/// @param title without line end.
std::string textForm(const std::string& title, const Explanation& explanation,
                     const TextLook& look);

/// What the marks behind the figures mean, for those that the explanations have; or empty.
std::string legendOf(const std::vector<Explanation>& explanations);

/// Every power of a table for people: its heading, then one explanation for each modulation.
std::string textForm(const ExplainedTable& explained, const TextLook& look);

/// For programs: the object of the table with the explanation in each of its rows.
std::string jsonForm(const ExplainedTable& explained);

Datum datumOf(const Explanation& explanation);

/// Stable text of a step's kind for programs, for example "bound".
const char* codeOf(Explanation::Step::Kind kind);

/// The code of a rule; nothing without one.
Datum datumOf(const std::optional<Rule>& rule);

/// The rows of a table, each with the rule that decides.
std::vector<PowerTableLine> linesOf(const RuledTable& ruled);
