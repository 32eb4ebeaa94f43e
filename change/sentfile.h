// The text of the file that keeps what was last sent.
#pragma once

#include "change/sent.h"

#include <string_view>

struct SentFile {
    static std::string text(const LastSent& sent);

    // False when the text is damaged or of another format; `sent` is as it was then.
    static bool read(std::string_view text, LastSent& sent);
};
