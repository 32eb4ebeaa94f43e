// check [FILE]: what is wrong in the configuration, in the files or as a document would make it.
#include "config/filecheck.h"
#include "config/pdf_io.h"
#include "ctl/changing.h"
#include "ctl/document.h"
#include "ctl/listing.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>

namespace {

const char* word(Severity severity) {
    return severity == Severity::error ? "error" : "warning";
}

// "adapter1/lec2.l3Mtu"; of what belongs to no adapter the path of its section in the file.
std::string whereOf(const PlacedFinding& placed) {
    if (placed.adapter < 0) return placed.finding.path;
    const char* slash = placed.finding.path.empty() ? "" : "/";
    return adapterName(placed.adapter) + slash + placed.finding.path;
}

Tree findingTree(const PlacedFinding& placed) {
    const Finding& finding = placed.finding;
    const std::string where = whereOf(placed);
    Tree tree;
    tree.put("number", {finding.number,
                        {fmt::format("{}:{}: {} {}: {}: {}", placed.file, placed.line, word(finding.severity),
                                     finding.number, where, finding.message)}});
    tree.put("severity", {word(finding.severity), {}});
    tree.put("file", {placed.file, {}});
    tree.put("line", {placed.line, {}});
    tree.put("where", {where, {}});
    tree.put("message", {finding.message, {}});
    return tree;
}

// As the files become when the document is applied. What they have already keeps its place in them; anything
// else is the document's.
std::vector<PlacedFinding> checkDocument(Session& session, const std::string& file) {
    const Json document = readDocument(readDocumentFile(file));
    session.read();
    const AtmDevices before = session.devices;
    const std::vector<PlacedFinding> known = CheckFiles(session.files, before);
    applyDocument(document, session.devices);
    ConfigFiles files = filesAfter(session, before);
    std::vector<PlacedFinding> found = CheckFiles(files, session.devices);
    for (PlacedFinding& placed : found) {
        const auto same = [&](const PlacedFinding& other) {
            return other.adapter == placed.adapter && other.finding == placed.finding;
        };
        const auto old = std::ranges::find_if(known, same);
        placed.file = old == known.end() ? file : old->file;
        placed.line = old == known.end() ? 1 : old->line;
    }
    return found;
}

Output check(Session& session, const std::string& document) {
    engineOutput = [](const std::string&) {};  // the findings say it, with the place
    std::vector<PlacedFinding> found;
    if (document.empty()) {
        session.read();
        found = CheckFiles(session.files, session.devices);
    } else {
        found = checkDocument(session, document);
    }
    Output output;
    Tree findings = Tree::array();
    for (const PlacedFinding& placed : found) findings.add(findingTree(placed));
    output.tree.put("findings", std::move(findings));
    const auto isError = [](const PlacedFinding& placed) {
        return placed.finding.severity == Severity::error;
    };
    output.status = std::ranges::any_of(found, isError) ? Status::wrongValue
                    : found.empty()                     ? Status::good
                                                        : Status::different;
    return output;
}

}  // namespace

Run addCheck(CLI::App& command) {
    const auto document = std::make_shared<std::string>();
    command.add_option("FILE", *document,
                       "A document as show --json prints it: what would be wrong once it is applied; -: "
                       "standard input");
    return [document](Session& session) { return check(session, *document); };
}
