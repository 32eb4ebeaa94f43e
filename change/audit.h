// The lines that a save leaves in syslog (doc/history.md).
#pragma once

#include "change/changerecord.h"
#include "platform/syslog.h"

#include <string>
#include <string_view>
#include <vector>

struct AuditLine {
    platform::LogLevel level = platform::LogLevel::notice;
    std::string text;
};

// One line for each changed key and list, and for each request that was refused or got no answer. `change` is
// the number of the history's entry, "none" without one.
std::vector<AuditLine> auditLines(const ChangeRecord& record, std::string_view change, std::string_view user);

// Sends them, as those of the real user.
void audit(const ChangeRecord& record, std::string_view change);

// Sends a line about something that did not work beside a save: `what` names the field with the reason.
void auditTrouble(std::string_view change, std::string_view what, std::string_view reason);

// Sends that a file is there now where none was.
void auditFirstFile(std::string_view file);

// Sends what became of a save that was interrupted.
void auditRecovery(std::string_view note);
