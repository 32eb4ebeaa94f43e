// diff [FROM [TO]]: what differs between the files, the driver, what was last sent, a past state, a document.
#include "change/takeback.h"
#include "ctl/command.h"
#include "ctl/comparison.h"
#include "ctl/document.h"
#include "ctl/past.h"
#include "platform/safetext.h"

#include <fmt/format.h>
#include <memory>

namespace {

// The records before a change.
AtmDevices devicesBefore(const std::string& number) {
    requireRoot();
    const std::vector<PastChange> changes = allChanges();
    AtmDevices devices;
    if (!recordsWith(filesBeforeChange(findChange(number, changes), changes), devices))
        throw Failure(Status::wrongValue, fmt::format("{} as it was cannot be read", PdfEdit::parameterFile));
    return devices;
}

Side readSide(const std::string& name, Session& session) {
    const std::vector<int> all{0, 1, 2, 3};
    if (name == "file") return sideOf(session.devices, session.adapters(), session);
    if (name == "driver") return driverSide(session, session.devices);
    if (name == "sent") return sentSide(session);
    if (name.starts_with('@')) return sideOf(devicesBefore(name.substr(1)), all, session);
    const Json document = readDocument(readDocumentFile(name));
    AtmDevices devices = session.devices;
    applyDocument(document, devices);
    return sideOf(document, devices);
}

Output diff(Session& session, const std::string& from, const std::string& to) {
    session.read();
    std::optional<Side> left, right;
    FirstFailure first;
    first.of([&] { left = readSide(from, session); });
    first.of([&] { right = readSide(to, session); });
    for (const auto* side : {&left, &right})
        if (*side && (*side)->complaint) first.of([&] { throw Failure(*(*side)->complaint); });
    if (!left || !right) first.raise();
    Output output;
    output.tree.put("from", {platform::escaped(from), {}});
    output.tree.put("to", {platform::escaped(to), {}});
    Compared compared = compare(*left, *right);
    output.tree.put("differences", std::move(compared.tree));
    if (compared.different()) output.status = Status::different;
    if (const auto& failure = first.failure()) {
        output.status = failure->status();
        output.message = failure->what();
        output.where = failure->where();
    }
    return output;
}

}  // namespace

Run addDiff(CLI::App& command) {
    struct Sides {
        std::string from = "file", to = "driver";
    };
    const auto sides = std::make_shared<Sides>();
    command.add_option("FROM", sides->from,
                       "file (usual), driver, sent, @N (before change N), or a document");
    command.add_option("TO", sides->to, "the same; usually driver");
    return [sides](Session& session) { return diff(session, sides->from, sides->to); };
}
