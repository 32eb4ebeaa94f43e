// completion bash: what a shell needs to complete words of tvctl.
#include "ctl/command.h"

#include <memory>

// resources/completion/tvctl.bash.
extern const char* const bashCompletion;

Run addCompletion(CLI::App& command) {
    const auto shell = std::make_shared<std::string>();
    command.add_option("SHELL", *shell, "bash")
        ->required()
        ->check(CLI::IsMember(std::vector<std::string>{"bash"}));
    return [shell](Session&) {
        Output output;
        output.tree.put("shell", {*shell, {}});
        const std::string_view script(bashCompletion);
        output.tree.put("script", {std::string(script), {std::string(script.substr(0, script.size() - 1))}});
        return output;
    };
}
