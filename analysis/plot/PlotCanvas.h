#pragma once

#include "Rule.h"
#include "SvgDocument.h"

#include <cstddef>
#include <string>
#include <vector>

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

/// Every rule as pictures show it, for faces that draw by themselves: a JSON object whose "rules"
/// hold the code, the words, the colour, and the pattern as the data of a path in a tile of 8 by 8
/// with its width. Rules that deny a power have neither colour nor pattern.
std::string ruleLegendJson();

/// The marks that pictures of powers are made of, on an SVG document.
class PlotCanvas {
public:
    static constexpr const char* ink = "#1a1a1a";
    static constexpr const char* quiet = "#5c5c5c";
    static constexpr const char* grid = "#d9d9d9";
    static constexpr const char* paper = "#ffffff";
    static constexpr const char* floor = "#e9e9e9";

    static constexpr const char* solid = "none"; ///< as dashes

    enum class Anchor {
        Start,
        Middle,
        End
    };

    struct Font {
        int size = 12;
        const char* color = ink;
        bool isBold = false;
    };

    struct Stroke {
        const char* color;
        const char* width; ///< in pixels
        const char* dashes = solid;
    };

    /// How lines of one picture are told apart.
    struct LineStyle {
        enum class Marker {
            Circle,
            Square,
            Triangle,
            Diamond
        };

        const char* dashes;
        Marker marker;
        bool isFilled;
    };

    struct Area {
        Tenths x;
        Tenths y;
        Tenths width;
        Tenths height;
    };

    explicit PlotCanvas(SvgDocument& svg)
        : m_svg(svg) {}

    /// The patterns of rules, to be defined before fillWith() uses them.
    void definePatterns(const std::vector<Rule>& rules);

    void write(Tenths x, Tenths y, Anchor anchor, const std::string& text, const Font& font);
    void writeUpwards(Tenths x, Tenths y, const std::string& text, const Font& font);
    void line(Tenths x1, Tenths y1, Tenths x2, Tenths y2, const Stroke& stroke);
    void path(const std::string& data, const Stroke& stroke);
    void fill(const Area& area, const char* color, const char* edge = solid);
    void fillWith(const Area& area, Rule rule);
    void marker(const LineStyle& style, Tenths x, Tenths y);

    /// A cross where there is no power.
    void cross(Tenths x, Tenths y);

    /// The letter of a rule on a small ground of paper.
    void letter(Tenths x, Tenths y, const std::string& letter);

private:
    SvgDocument& m_svg;
};

/// A text in lines of a width, counted in characters; words that are longer are broken.
std::vector<std::string> linesOf(const std::string& text, std::size_t width);
