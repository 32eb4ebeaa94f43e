#include "change/sentrequest.h"

#include "change/listmerge.h"
#include "change/services.h"

#include <algorithm>
#include <fmt/format.h>
#include <span>

namespace {

enum class Subject { service, bridgedPvc, routedPvc, client };

// Whom the requests of a primitive are for.
ServiceName serviceOf(const SentChange& change) {
    constexpr std::uint16_t lec = 17, les = 18, lecs = 19;
    const std::uint16_t prim = requestOf(change.id).prim;
    return prim == lec    ? lecName(change.link, change.unit)
           : prim == les  ? lesName(change.link, change.unit)
           : prim == lecs ? lecsName(change.link)
                          : ipName(change.link);
}

Subject subjectOf(RequestId id) {
    switch (id) {
    case RequestId::bridgedPvcAdd:
    case RequestId::bridgedPvcModify:
    case RequestId::bridgedPvcDelete:
        return Subject::bridgedPvc;
    case RequestId::routedPvcAdd:
    case RequestId::routedPvcModify:
    case RequestId::routedPvcDelete:
        return Subject::routedPvc;
    case RequestId::lecsAddClient:
    case RequestId::lecsDeleteClient:
        return Subject::client;
    default:
        return Subject::service;
    }
}

// A PVC's VCI stands behind its address.
std::string pvcName(std::span<const std::uint8_t> data, std::size_t vciAt) {
    AtmRoutedPvc pvc;
    if (data.size() >= vciAt + 2) pvc.vci = static_cast<std::uint16_t>(data[vciAt] | data[vciAt + 1] << 8);
    return entryName(pvc);
}

std::string clientName(std::span<const std::uint8_t> data) {
    constexpr std::size_t clientAt = 32, lesAt = 40;
    if (data.size() <= lesAt) return "Client";
    esiSelector::Bytes bytes;
    std::copy_n(data.begin() + clientAt, bytes.size(), bytes.begin());
    return fmt::format("{} of LES {}", entryName(esiSelector(bytes)), data[lesAt] + 1);
}

// Whether an entry of a list, as the record has it, is the one that a request was about.
bool isAbout(const std::string& subject, const std::string& entry) {
    constexpr std::string_view pvc = "PVC 0 / ";
    if (subject.starts_with(pvc))
        return (entry + ' ').find(fmt::format(" vci {} ", subject.substr(pvc.size()))) != entry.npos;
    return subject.find(entry) != subject.npos;
}

}  // namespace

SentRequest sentRequest(const SentChange& change) {
    SentRequest sent{
        serviceOf(change).path, requestOf(change.id).trace, {}, RequestResult::notSent, change.resp};
    switch (subjectOf(change.id)) {
    case Subject::bridgedPvc:
        sent.subject = pvcName(change.data, 6);
        break;
    case Subject::routedPvc:
        sent.subject = pvcName(change.data, 4);
        break;
    case Subject::client:
        sent.subject = clientName(change.data);
        break;
    case Subject::service:
        break;
    }
    sent.answer = change.outcome == Outcome::success    ? RequestResult::taken
                  : change.outcome == Outcome::refused  ? RequestResult::refused
                  : change.outcome == Outcome::withheld ? RequestResult::notSent
                                                        : RequestResult::unanswered;
    return sent;
}

bool isGivenUp(std::size_t place, const ChangeRecord& record) {
    const SentRequest& request = record.requests[place];
    if (request.answer != RequestResult::refused || request.subject.empty()) return false;
    const auto isStart = [&](const SentRequest& earlier) {
        return earlier.service == request.service && earlier.subject.empty();
    };
    if (std::ranges::any_of(std::span(record.requests).first(place), isStart)) return false;
    const auto isOfIt = [&](const std::string& entry) { return isAbout(request.subject, entry); };
    return std::ranges::none_of(record.lists, [&](const ListChange& list) {
        return std::ranges::any_of(list.added, isOfIt) || std::ranges::any_of(list.removed, isOfIt);
    });
}
