// Pictures that restrict what can be typed into address fields, and the sample texts of their layouts.
//
// In a picture a bracket expression stands for one character from the listed ranges, a character in single
// quotes is a fixed character that the field supplies, and "(3)" repeats the element before it.
#pragma once

#define TV_HEX  "[0-9A-Fa-f]"
#define TV_PAIR TV_HEX TV_HEX

constexpr char networkPrefixMask[] =
    "[1-9A-Fa-f]" TV_HEX "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR
    "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR;
constexpr char macAddressMask[] =
    TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR;
constexpr char esiSelectorMask[] =
    TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "':'" TV_PAIR "'-'" TV_PAIR;
constexpr char ipAddressMask[] = "[0-9](3)'.'[0-9](3)'.'[0-9](3)'.'[0-9](3)";

// Characters that a text in the parameter file can have: from `!` to `z`, no comment sign, no brackets.
constexpr char elanNameMask[] = R"([!-"$-Z\\^-z](31))";

// Unsigned numbers of up to four digits.
constexpr char fourDigitsMask[] = "####";

#undef TV_PAIR
#undef TV_HEX
