#pragma once

#include "AnalysisError.h"
#include "Terminal.h"

#include <cstdio>
#include <string_view>

/// Standard output cannot take more. There is no point in going on. Without words where the reader
/// has gone away.
class OutputError : public AnalysisError {
public:
    explicit OutputError(const std::string& line)
        : AnalysisError(Outcome::OtherTrouble, line) {}
};

/// Standard output. What cannot be written is an error of the tool, never lost silently.
class Output {
public:
    /// @param stream that leads there.
    explicit Output(std::FILE* stream)
        : m_stream(stream) {}

    void setColorChoice(ColorChoice choice) { m_colorChoice = choice; }

    /// How text on it may look. Only text for people is ever styled.
    Terminal terminal() const;

    /// @throw OutputError
    void write(std::string_view text);

    /// Hands on what was written. To be called before anything is said on standard error, so that
    /// the two stand in order on a terminal, and at the end.
    /// @throw OutputError
    void flush();

private:
    std::FILE* m_stream;
    ColorChoice m_colorChoice = ColorChoice::Auto;
};
