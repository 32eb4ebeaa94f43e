#include "change/audit.h"

#include "platform/safetext.h"
#include "platform/user.h"

#include <fmt/format.h>

using platform::fieldValue;
using platform::LogLevel;

namespace {

// What the key of a setting or of a list belongs to: "adapter1/lec2" of "adapter1/lec2.mtu".
std::string_view serviceOf(std::string_view key) {
    const std::size_t slash = key.rfind('/');
    return key.substr(0, key.find('.', slash == std::string_view::npos ? 0 : slash));
}

std::string respOf(const SentRequest& request) {
    switch (request.answer) {
    case RequestResult::taken:
    case RequestResult::refused:
        return std::to_string(request.resp);
    case RequestResult::unanswered:
        return "unanswered";
    case RequestResult::notSent:
        break;
    }
    return "unsent";
}

// How the service's requests went, those about its list entries or the others: the first that was not taken
// tells, else the last.
std::string respOf(const ChangeRecord& record, std::string_view key, bool ofList) {
    std::string resp = record.result == completedLater ? "unknown" : "none";
    for (const SentRequest& request : record.requests) {
        if (request.service != serviceOf(key) || request.subject.empty() == ofList) continue;
        resp = respOf(request);
        if (request.answer != RequestResult::taken) break;
    }
    return resp;
}

}  // namespace

std::vector<AuditLine> auditLines(const ChangeRecord& record, std::string_view change,
                                  std::string_view user) {
    std::vector<AuditLine> lines;
    const auto add = [&](LogLevel level, const std::string& middle, std::string_view result) {
        lines.push_back({level, fmt::format("change={} {} user={} result={}", fieldValue(change), middle,
                                            fieldValue(user), fieldValue(result))});
    };
    const bool good = record.result == "ok" || record.result == completedLater;
    const LogLevel level = good ? LogLevel::notice : LogLevel::warning;
    for (const KeyChange& key : record.keys)
        add(level,
            fmt::format("key={} old={} new={} resp={}", fieldValue(key.key), fieldValue(key.before),
                        fieldValue(key.after), respOf(record, key.key, false)),
            record.result);
    for (const ListChange& list : record.lists)
        add(level,
            fmt::format("key={} added={} removed={} resp={}", fieldValue(list.key), list.added.size(),
                        list.removed.size(), respOf(record, list.key, true)),
            record.result);
    for (const SentRequest& request : record.requests) {
        if (request.answer != RequestResult::refused && request.answer != RequestResult::unanswered) continue;
        const std::string subject = request.subject.empty() ? "" : " subject=" + fieldValue(request.subject);
        add(LogLevel::warning,
            fmt::format("request={} service={}{} resp={}", fieldValue(request.request),
                        fieldValue(request.service), subject, respOf(request)),
            answerWord(request.answer));
    }
    return lines;
}

void audit(const ChangeRecord& record, std::string_view change) {
    if (record.keys.empty() && record.lists.empty() && record.requests.empty()) return;
    for (const AuditLine& line : auditLines(record, change, platform::userName()))
        platform::sendSyslog(line.level, line.text);
}

void auditTrouble(std::string_view change, std::string_view what, std::string_view reason) {
    platform::sendSyslog(LogLevel::warning,
                         fmt::format("change={} {}={} user={} result=failed", fieldValue(change), what,
                                     fieldValue(reason), fieldValue(platform::userName())));
}

void auditFirstFile(std::string_view file) {
    platform::sendSyslog(LogLevel::notice, fmt::format("change=none created={} user={} result=ok",
                                                       fieldValue(file), fieldValue(platform::userName())));
}

void auditRecovery(std::string_view note) {
    platform::sendSyslog(LogLevel::notice, fmt::format("change=none recovery={} user={}", fieldValue(note),
                                                       fieldValue(platform::userName())));
}
