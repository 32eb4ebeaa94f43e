// confirm [N]: keeps the change that would be taken back.
#include "change/pending.h"
#include "ctl/command.h"
#include "ctl/past.h"

#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <memory>

namespace {

Output confirm(Session& session, const std::string& text) {
    requireRoot();
    const unsigned number = text.empty() ? 0 : readChangeNumber(text);
    session.configuration.passPending = true;
    session.lock();
    const auto pending = pendingChange();
    if (!pending || pending->left() <= 0)
        throw Failure(Status::notThere, pending ? "it is too late: the change is being taken back"
                                                : "no change waits for its confirmation");
    if (!text.empty() && pending->change != number)
        throw Failure(
            Status::notThere,
            fmt::format("change {} does not wait for its confirmation: {:04} does", text, pending->change));
    if (removePending() != 0) throw Failure(Status::notDone, std::strerror(errno));
    session.configuration.unlock();
    Output output;
    output.tree.put("change", {pending->change, {}});
    output.tree.put("result", {"confirmed", {fmt::format("change {:04} confirmed", pending->change)}});
    return output;
}

}  // namespace

Run addConfirm(CLI::App& command) {
    const auto number = std::make_shared<std::string>();
    command.add_option("N", *number, "The change; none: whichever waits");
    return [number](Session& session) { return confirm(session, *number); };
}
