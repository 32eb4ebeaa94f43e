// help [COMMAND]: what there is, and what a command takes.
#include "ctl/command.h"
#include "platform/safetext.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>
#include <sstream>

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    while (!lines.empty() && lines.back().empty()) lines.pop_back();
    return lines;
}

Output all() {
    Tree list = Tree::array();
    for (const Command& command : commands()) {
        Tree of;
        of.put("name", {command.name, {fmt::format("{:11}{}", command.name, command.summary)}});
        of.put("summary", {command.summary, {}});
        list.add(std::move(of));
    }
    Output output;
    output.tree.put("commands", std::move(list));
    return output;
}

Output one(const CLI::App& program, const std::string& name) {
    const auto found =
        program.get_subcommands([&](const CLI::App* command) { return command->get_name() == name; });
    if (found.empty())
        throw Failure(Status::usage, fmt::format("there is no command \"{}\"", platform::escaped(name)));
    const std::string text = found.front()->help("tvctl", CLI::AppFormatMode::All);
    Output output;
    output.tree.put("command", {name, {}});
    output.tree.put("help", {text, linesOf(text)});
    return output;
}

}  // namespace

Run addHelp(CLI::App& command) {
    const auto name = std::make_shared<std::string>();
    command.add_option("COMMAND", *name, "The command to tell of");
    return [name, program = command.get_parent()](Session&) {
        return name->empty() ? all() : one(*program, *name);
    };
}
