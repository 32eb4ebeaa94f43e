// apply FILE: makes the configuration that of a document.
#include "ctl/changing.h"
#include "ctl/document.h"

#include <memory>

Run addApply(CLI::App& command) {
    const auto file = std::make_shared<std::string>();
    const auto options = std::make_shared<ChangeOptions>();
    command
        .add_option("FILE", *file, "A document as show --json prints it, or a part of one; -: standard input")
        ->required();
    options->add(command);
    return [file, options](Session& session) {
        if (!options->dryRun) requireRoot();
        const Json document = readDocument(readDocumentFile(*file));
        readFor(session, options->dryRun);
        const AtmDevices before = session.devices;
        applyDocument(document, session.devices);
        return carryOut(session, before, *options);
    };
}
