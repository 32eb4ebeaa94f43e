#include "ctl/complete.h"

#include "ctl/command.h"
#include "ctl/entries.h"
#include "ctl/listing.h"
#include "ctl/settings.h"
#include "metrics/metric.h"

#include <algorithm>
#include <string_view>

namespace {

using Words = std::vector<std::string>;

// ---- what arguments can be, by their name on the command line ----

// What is typed of a path leads one level further: "adapter1/", "adapter1/lec2", "adapter1/lec2.mtu".
std::size_t levelOf(std::string_view word) {
    return word.find('/') == word.npos ? 0 : word.find('.') == word.npos ? 1 : 2;
}

std::vector<ServiceId> allServices() {
    std::vector<ServiceId> all;
    for (int adapter = 0; adapter < adapterCount; ++adapter)
        for (const ServiceId& service : servicesOf(adapter)) all.push_back(service);
    return all;
}

Words servicePaths(std::string_view word, const char* behind) {
    Words paths;
    if (levelOf(word) == 0)
        for (int adapter = 0; adapter < adapterCount; ++adapter) paths.push_back(adapterName(adapter) + '/');
    else
        for (const ServiceId& service : allServices()) paths.push_back(service.name().path + behind);
    return paths;
}

Words paths(std::string_view word) {
    Words paths = servicePaths(word, "");
    if (std::ranges::count(paths, std::string(word) + '/')) paths.emplace_back(word);
    return paths;
}

// A path, or a value or table behind one, or a column behind the key of a row.
Words values(std::string_view word) {
    const std::size_t dot = word.find('.');
    Words all = paths(word);
    if (dot == word.npos) {
        if (std::ranges::count(all, word)) all.push_back(std::string(word) + '.');
        return all;
    }
    for (int adapter = 0; adapter < adapterCount; ++adapter)
        for (const metrics::Place& place : metrics::placesOf(adapter)) {
            if (metrics::pathOf(place) != word.substr(0, dot)) continue;
            for (const metrics::Group& group : metrics::groupsOf(place.service)) {
                const std::string table = metrics::pathOf(place) + '.' + group.table;
                const std::size_t key = table.size() + 1, end = word.find('.', std::min(key, word.size()));
                if (group.isTable() && word == table) all.push_back(table + '.');
                for (const metrics::Metric& metric : group.metrics)
                    if (!group.isTable())
                        all.push_back(table + metric.name);
                    else if (word.starts_with(table + '.') && end != word.npos)
                        all.push_back(std::string(word.substr(0, end + 1)) + metric.name);
                    else
                        all.push_back(table);
            }
        }
    const auto twice = std::unique(all.begin(), all.end());  // a table, once for each column
    all.erase(twice, all.end());
    return all;
}

Words settings(std::string_view word) {
    if (levelOf(word) < 2) return servicePaths(word, ".");
    Words all;
    for (const ServiceId& service : allServices()) {
        for (const Setting& setting : settingsOf(service, AtmDevices(), false))
            all.push_back(service.name().path + '.' + setting.key);
        if (const std::string list = listOfService(service); !list.empty())
            all.push_back(service.name().path + '.' + list);
    }
    return all;
}

Words assignments(std::string_view word) {
    if (levelOf(word) < 2) return servicePaths(word, ".");
    const bool values = word.find('=') != word.npos;
    Words all;
    for (const ServiceId& service : allServices())
        for (const Setting& setting : settingsOf(service, AtmDevices(), false)) {
            const std::string start = service.name().path + '.' + setting.key + '=';
            if (setting.readOnly) continue;
            if (!values) all.push_back(start);
            if (word.starts_with(start))
                for (const std::string& value : valueNames(service, setting.key))
                    all.push_back(start + value);
        }
    return all;
}

Words commandNames(std::string_view) {
    Words names;
    for (const Command& command : commands()) names.emplace_back(command.name);
    return names;
}

Words pvcWords(std::string_view) {
    Words words{"vci", "rate"};
    for (const PvcFlag& flag : {encapsulationFlag, broadcastFlag})
        words.insert(words.end(), flag.words.begin(), flag.words.end());
    return words;
}

Words sides(std::string_view) {
    return {"file", "driver", "sent"};
}

Words none(std::string_view) {
    return {};
}

constexpr struct {
    std::string_view name;
    Words (*words)(std::string_view typed);
    bool files;
} arguments[] = {
    {"PATH", paths, false},
    {"PATH.NAME", values, false},
    {"PATH.KEY", settings, false},
    {"PATH.KEY=VALUE", assignments, false},
    {"ADDRESS vci N", pvcWords, false},
    {"VCI WORD", pvcWords, false},
    {"COMMAND", commandNames, false},
    {"FROM", sides, true},
    {"TO", sides, true},
    {"FILE", none, true},
    {"--root", none, true},
    {"--output", none, true},
};

// ---- the command line ----

// The words that a check allows: those between the braces of "TEXT:{on,off}".
Words allowedWords(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const std::size_t open = type.find('{'), close = type.find('}');
    if (open == type.npos || close == type.npos) return {};
    return CLI::detail::split(type.substr(open + 1, close - open - 1), ',');
}

Candidates ofArgument(const CLI::Option& option, std::string_view typed) {
    const std::string name = option.get_name();
    const auto row = std::ranges::find_if(arguments, [&](const auto& each) { return each.name == name; });
    Candidates all{allowedWords(option), false};
    if (row == std::end(arguments)) return all;
    const Words words = row->words(typed);
    all.words.insert(all.words.end(), words.begin(), words.end());
    all.files = row->files;
    return all;
}

// The option that a word of the line names, of a command or of those around it. Null: none.
const CLI::Option* optionNamed(const CLI::App* app, const std::string& word) {
    for (; app; app = app->get_parent())
        if (const CLI::Option* option = app->get_option_no_throw(word)) return option;
    return nullptr;
}

const CLI::App* subcommandNamed(const CLI::App& app, const std::string& word) {
    const auto found = app.get_subcommands([&](const CLI::App* sub) { return sub->get_name() == word; });
    return found.empty() ? nullptr : found.front();
}

Words optionNames(const CLI::App* app) {
    Words names{"--help"};
    for (; app; app = app->get_parent())
        for (const CLI::Option* option : app->get_options())
            for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    return names;
}

// Of services, "pvc" and "client" take those that have such a list.
Candidates ofCommand(const CLI::App& app, Candidates all) {
    const std::string parent = app.get_parent() ? app.get_parent()->get_name() : "";
    if (parent != "pvc" && parent != "client") return all;
    const auto lacksList = [&](const std::string& word) {
        const auto services = allServices();
        const auto service =
            std::ranges::find(services, word, [](const ServiceId& s) { return s.name().path; });
        return service != services.end() && listOfService(*service) != parent + 's';
    };
    std::erase_if(all.words, lacksList);
    return all;
}

Candidates ofPlace(const CLI::App& app, std::size_t place, std::string_view typed) {
    const auto subcommands = app.get_subcommands([](const CLI::App*) { return true; });
    if (!subcommands.empty()) {
        Candidates all;
        if (place > 0) return all;
        for (const CLI::App* sub : subcommands) all.words.push_back(sub->get_name());
        return all;
    }
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_positional()) continue;
        const auto most = static_cast<std::size_t>(option->get_items_expected_max());
        if (place < most) return ofCommand(app, ofArgument(*option, typed));
        place -= most;
    }
    return {};
}

Candidates everything(const CLI::App& program, const Words& words) {
    const CLI::App* app = &program;
    const std::string typed = words.empty() ? "" : words.back();
    std::size_t place = 0;
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        const std::string& word = words[i];
        if (word.starts_with("--")) {
            const CLI::Option* option = optionNamed(app, word);
            if (!option || option->get_items_expected_max() == 0) continue;
            if (i + 2 == words.size()) return ofArgument(*option, typed);
            ++i;
        } else if (const CLI::App* sub = subcommandNamed(*app, word)) {
            app = sub;
        } else {
            ++place;
        }
    }
    if (typed.starts_with('-')) return {optionNames(app)};
    return ofPlace(*app, place, typed);
}

}  // namespace

Candidates candidates(const CLI::App& program, const Words& words) {
    Candidates all = everything(program, words);
    const std::string typed = words.empty() ? "" : words.back();
    std::erase_if(all.words, [&](const std::string& word) { return !word.starts_with(typed); });
    return all;
}
