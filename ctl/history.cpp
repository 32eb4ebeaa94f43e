// history [N]: the changes so far; revert N: undoes one of them and all later ones.
#include "change/pending.h"
#include "ctl/changing.h"
#include "ctl/past.h"
#include "ctl/settings.h"
#include "platform/safetext.h"
#include "platform/wallclock.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>

using platform::escaped;

namespace {

std::string userOf(const PastChange& change) {
    const platform::Account& user = change.read.manifest.invoker.user;
    return user.name.empty() ? std::to_string(user.id) : user.name;
}

// A field of the line: between double quotes if it has blanks, "-" if it is empty.
std::string field(const std::string& text) {
    return text.empty() ? "-" : platform::fieldValue(text);
}

Json jsonOrNull(const std::string& text) {
    return text.empty() ? Json() : Json(escaped(text));
}

Tree changeLine(const std::string& where, const char* side, char sign, const std::string& text) {
    Tree tree;
    tree.put("where", {where, {}});
    tree.put(side, {escaped(text), {fmt::format("{} {}", sign, settingLine(where, escaped(text)))}});
    return tree;
}

Tree changesOf(const ChangeRecord& record) {
    Tree changes = Tree::array();
    for (const KeyChange& key : record.keys) {
        Tree change = changeLine(key.key, "old", '-', key.before);
        change.put("new", {escaped(key.after), {"+ " + settingLine(key.key, escaped(key.after))}});
        changes.add(std::move(change));
    }
    for (const ListChange& list : record.lists) {
        for (const std::string& entry : list.removed) changes.add(changeLine(list.key, "old", '-', entry));
        for (const std::string& entry : list.added) changes.add(changeLine(list.key, "new", '+', entry));
    }
    return changes;
}

// For the JSON alone, unless the change is shown `whole`.
Tree withoutLines(const Tree& tree, bool whole) {
    return whole ? tree : Tree(tree.json(), {});
}

Tree changeTree(const PastChange& change, bool whole) {
    const ChangeRecord& record = change.read.record;
    const auto pending = pendingChange();
    const RequestResult driver = driverAnswer(record);
    const std::string result = pending && pending->change == change.number ? "unconfirmed"
                               : record.result != "ok"                     ? record.result
                               : driver == RequestResult::refused          ? "refused"
                               : driver == RequestResult::taken            ? "ok"
                                                                           : "silent";
    const std::string time = platform::inUtc(change.read.time), from = record.from;
    const Tree changes = changesOf(record);
    Tree requests = Tree::array();
    for (const SentRequest& request : record.requests) requests.add(requestTree(request));
    std::string line =
        fmt::format("{} {} {} {} {} {} {}", change.read.manifest.number, field(time), field(userOf(change)),
                    field(record.program), field(from), field(result), changes.json().size());
    if (!record.note.empty()) line += ' ' + escaped(record.note);
    Tree tree;
    tree.put("change", {change.number, {line}});
    tree.put("time", {time, {}});
    tree.put("user", {escaped(userOf(change)), {}});
    tree.put("program", {escaped(record.program), {}});
    tree.put("from", {jsonOrNull(from), {}});
    tree.put("result", {escaped(result), {}});
    tree.put("note", {jsonOrNull(record.note), {}});
    tree.put("changes", withoutLines(changes, whole));
    tree.put("requests", withoutLines(requests, whole));
    return tree;
}

Output history(const std::string& number) {
    requireRoot();
    std::vector<unsigned> damaged;
    const std::vector<PastChange> changes = allChanges(&damaged);
    Output output;
    Tree all = Tree::array();
    if (!number.empty()) {
        all.add(changeTree(findChange(number, changes), true));
    } else {
        for (const PastChange& change : changes) all.add(changeTree(change, false));
        for (const unsigned change : damaged)
            output.warnings.push_back(fmt::format("change {:04} of the history cannot be read", change));
        if (!damaged.empty()) {
            output.status = Status::wrongValue;
            output.message = output.warnings.front();
            output.warnings.erase(output.warnings.begin());
        }
    }
    output.tree.put("history", std::move(all));
    return output;
}

Output revert(Session& session, const std::string& number, const ChangeOptions& options) {
    requireRoot();
    readFor(session, options.dryRun);
    const std::vector<PastChange> changes = allChanges();
    const PastChange& change = findChange(number, changes);
    session.needLock();
    return putBack(session, filesBeforeChange(change, changes), options);
}

}  // namespace

Run addHistory(CLI::App& command) {
    const auto number = std::make_shared<std::string>();
    command.add_option("N", *number, "A change: also its differences and requests");
    return [number](Session&) { return history(*number); };
}

Run addRevert(CLI::App& command) {
    const auto number = std::make_shared<std::string>();
    const auto options = std::make_shared<ChangeOptions>();
    command.add_option("N", *number, "A change of the history")->required();
    options->add(command, false);
    return [number, options](Session& session) { return revert(session, *number, *options); };
}
