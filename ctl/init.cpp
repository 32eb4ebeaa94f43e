// init: the parameter file of a first start.
#include "change/firstfile.h"
#include "ctl/command.h"

#include <fmt/format.h>
#include <sys/stat.h>

namespace {

constexpr const char* file = PdfEdit::parameterFile;
constexpr int all[] = {0, 1, 2, 3};

Output init(Session& session) {
    requireRoot();
    const auto needsNone = [] {
        if (!parameterFileIsMissing())
            throw Failure(Status::wrongValue, fmt::format("there is {} already", file), file);
    };
    needsNone();
    session.lock();
    needsNone();
    const NewFile wanted{.uniRevision = uni31, .mustBeNew = true};
    // Every user may read it, whatever root's shell has set.
    const mode_t mask = ::umask(022);
    const auto failure = writeFirstFile(session.configuration, all, wanted);
    ::umask(mask);
    if (failure)
        throw Failure(Status::notDone, fmt::format("{}: {}", failure->file, failure->reason), failure->file);
    Output output;
    output.tree.put("file", {file, {file}});
    return output;
}

}  // namespace

Run addInit(CLI::App&) {
    return init;
}
