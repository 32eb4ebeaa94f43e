// What an editable field takes, by keys and by pasting, and what it says when it refuses.
#pragma once

#include <string>
#include <string_view>

// What a pasted text becomes.
struct zPasted {
    std::string text = {};     // as the field shows it, in place of everything that it shows
    std::string partner = {};  // for the field that holds the other half of the address; empty: nothing
    std::string refusal = {};  // why the text is not taken; empty: it is
};

// A row of a table that outlives the windows.
struct zFieldMask {
    const char* picture;  // in the notation of mask.h

    // Sentences for the user. `takes` goes on after the character that was refused: "\"g\" cannot stand here:
    // ".
    const char* takes;
    const char* full;

    zPasted (*paste)(std::string_view text) = nullptr;  // null: as if it were typed
};
