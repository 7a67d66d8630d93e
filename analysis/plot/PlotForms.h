#pragma once

#include "PowerPlot.h"
#include "TextLook.h"

#include <cstddef>
#include <string>

/// A picture as an SVG document: the same bytes for the same powers. It brings its own light
/// ground, so that it reads on a dark page and in print alike.
std::string svgForm(const PowerPlot& plot);

/// A picture made of block characters, at most `look.width` columns wide where that leaves
/// room for bars.
std::string blockForm(const PowerPlot& plot, const TextLook& look);

/// The letter by which a picture's legend names a rule.
std::string letterOf(std::size_t index);
