// What a message line says of findings about a configuration.
#pragma once

#include "model/rules.h"
#include "toolkit/controls/messageline.h"

#include <span>
#include <string_view>
#include <vector>

// A field, and the last part of the path of the setting that it shows; in a dialog about an entry of a list,
// the part of the entry.
struct AdvisedField {
    int id;
    const char* key;
};

// About a page that shows `service`, with `field` having the focus, or none: of several findings the most
// serious one, and of those the first. Findings about other services are left out.
zMessageLine::Advice adviceOn(std::span<const Finding> findings, std::string_view service,
                              std::span<const AdvisedField> fields, const zEdit* field);

// The same in a dialog about an entry.
zMessageLine::Advice adviceOnEntry(std::span<const Finding> findings, std::span<const AdvisedField> fields,
                                   const zEdit* field);
