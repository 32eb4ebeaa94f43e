// The fonts that a user can choose from.
#pragma once

#include <string>
#include <vector>

// The families that can be scaled, sorted, each once.
std::vector<std::string> zFontFamilies();

struct zFont {
    std::string family;
    double size = 0;  // points

    std::string pattern() const;  // as zTable::setFont takes it
};
