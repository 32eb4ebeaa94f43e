// The fonts that a user can choose from.
#pragma once

#include <string>
#include <vector>

// The height of a line of the dialogs' font as it ships, 12 points at 96 dots per inch, in pixels.
constexpr int zUsualTextHeight = 19;

// The names of all scalable font families, sorted, without duplicates.
std::vector<std::string> zFontFamilies();

// Whether Fontconfig knows any font. Without one Motif crashes when it creates a text field.
bool zAnyFont();

struct zFont {
    std::string family;
    double size = 0;  // points

    std::string pattern() const;  // for zTable::setFont
};
