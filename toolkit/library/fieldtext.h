// Texts of fields that the program writes. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>
#include <string_view>

// Whether a text field holds this text, of ASCII characters.
bool zFieldHolds(Widget field, std::string_view text);

// Puts a text, of ASCII characters, in the place of one that is as long, in a field that the user only reads.
// XmTextFieldSetString measures and draws the old text and the new one several times; this draws the new one
// once, with the same picture. What is marked stays marked. False, and nothing has happened, where the field
// is greyed, or shows a selection or another part of its text, or the text has another length.
bool zReplaceReadText(Widget field, std::string_view text);
