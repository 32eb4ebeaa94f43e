// The fonts that a user can choose from.
#pragma once

#include <string>
#include <vector>

// The names of all scalable font families, sorted, without duplicates.
std::vector<std::string> zFontFamilies();

// Whether Fontconfig knows any font. Without one Motif crashes when it creates a text field.
bool zAnyFont();

struct zFont {
    std::string family;
    double size = 0;  // points

    std::string pattern() const;  // for zTable::setFont
};
