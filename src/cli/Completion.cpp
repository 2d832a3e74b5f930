#include "cli/Completion.h"

#include "app/ModuleCatalog.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

namespace sweeply {

namespace {

constexpr const char* kGlobalOptions = "--root --user --os --arch --pace --color --verbose --version --help";

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

/// A command's long options and its own commands.
std::vector<std::string> wordsOf(const CLI::App& command) {
    std::vector<std::string> words;
    for (const auto* option : command.get_options()) {
        for (const auto& name : option->get_lnames())
            words.push_back("--" + name);
    }
    for (const auto* inner : commandsOf(command))
        words.push_back(inner->get_name());
    if (command.get_name() == "scan" || command.get_name() == "clean") {
        for (const auto& row : scanModules())
            words.emplace_back(row.name);
    }
    return words;
}

std::string joined(const std::vector<std::string>& words, const char* between) {
    std::string text;
    for (const auto& word : words)
        text += (text.empty() ? "" : between) + word;
    return text;
}

std::string bashScript(const CLI::App& app) {
    std::vector<std::string> names;
    std::string cases;
    for (const auto* command : commandsOf(app)) {
        names.push_back(command->get_name());
        cases += "    " + command->get_name() + ") words=\"" + joined(wordsOf(*command), " ") + "\" ;;\n";
    }
    return "_sweeply_cli() {\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} command= words i\n"
           "    for ((i = 1; i < COMP_CWORD; ++i)); do\n"
           "        case ${COMP_WORDS[i]} in\n"
           "        " +
           joined(names, "|") +
           ") command=${COMP_WORDS[i]}; break ;;\n"
           "        esac\n"
           "    done\n"
           "    case $command in\n" +
           cases + "    *) words=\"" + kGlobalOptions + " " + joined(names, " ") +
           "\" ;;\n"
           "    esac\n"
           "    COMPREPLY=($(compgen -W \"$words\" -- \"$word\") $(compgen -f -- \"$word\"))\n"
           "}\n"
           "complete -o filenames -F _sweeply_cli sweeply-cli\n";
}

/// In single quotes.
std::string quoted(std::string text) {
    std::erase(text, '\'');
    return "'" + text + "'";
}

std::string fishScript(const CLI::App& app) {
    std::string script;
    for (const auto* command : commandsOf(app)) {
        const std::string seen = " -n '__fish_seen_subcommand_from " + command->get_name() + "'";
        script += "complete -c sweeply-cli -n __fish_use_subcommand -a " + command->get_name() + " -d " +
                  quoted(command->get_description()) + "\n";
        for (const auto& word : wordsOf(*command))
            script += "complete -c sweeply-cli" + seen +
                      (word.starts_with("--") ? " -l " + word.substr(2) : " -a " + word) + "\n";
    }
    return script;
}

} // namespace

std::string completionScript(const CLI::App& commands, std::string_view shell) {
    if (shell == "bash")
        return bashScript(commands);
    if (shell == "zsh")
        return "#compdef sweeply-cli\nautoload -U +X bashcompinit && bashcompinit\n" + bashScript(commands);
    return shell == "fish" ? fishScript(commands) : std::string();
}

} // namespace sweeply
