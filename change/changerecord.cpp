#include "change/changerecord.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace {

// Whether a later request about the service itself was taken, so that this refusal does not count.
bool madeUpFor(const SentRequest& refused, std::span<const SentRequest> later) {
    return refused.subject.empty() && std::ranges::any_of(later, [&](const SentRequest& request) {
               return request.service == refused.service && request.subject.empty() &&
                      request.answer == RequestResult::taken;
           });
}

}  // namespace

RequestResult driverAnswer(const ChangeRecord& record) {
    RequestResult worst = RequestResult::taken;
    for (std::size_t i = 0; i < record.requests.size(); ++i) {
        const SentRequest& request = record.requests[i];
        if (request.answer == RequestResult::unanswered || request.answer == RequestResult::notSent)
            return RequestResult::unanswered;
        if (request.answer == RequestResult::refused &&
            !madeUpFor(request, std::span(record.requests).subspan(i + 1)))
            worst = RequestResult::refused;
    }
    return worst;
}

const char* answerWord(RequestResult answer) {
    static constexpr std::array words{"taken", "refused", "unanswered", "not sent"};
    return words.at(static_cast<std::size_t>(answer));
}
