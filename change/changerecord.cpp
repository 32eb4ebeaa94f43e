#include "change/changerecord.h"

#include <array>
#include <cstddef>

const char* answerWord(RequestResult answer) {
    static constexpr std::array words{"taken", "refused", "unanswered", "not sent"};
    return words.at(static_cast<std::size_t>(answer));
}
