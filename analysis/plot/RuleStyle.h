#pragma once

#include "Rule.h"

/// How pictures show a rule: by colour and, for print in black and white and for eyes that do not
/// tell the colours apart, by pattern.
struct RuleStyle {
    enum class Pattern {
        Plain,
        Rising,
        Falling,
        Crossed,
        Level,
        Upright,
        Dotted,
        Grid,
        Rings,
        Checked
    };

    const char* color; ///< "#rrggbb", dark enough for lines on white
    Pattern pattern;
};

/// The style of a rule that limits a power; it is the same in all pictures.
RuleStyle styleOf(Rule rule);
