#include "cli/Completion.h"

#include "app/ModuleCatalog.h"
#include "app/Preferences.h"
#include "appcore/CommandLineController.h"
#include "cli/CompletionTemplates.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>
#include <vector>

namespace sweeply {

namespace {

/// What stands before the command. The scripts know how to complete --root, --roots-from and --user.
struct GlobalOption {
    const char* name;
    bool takesValue;
    const char* values;
};
constexpr GlobalOption kGlobalOptions[]{
    {"--root", true, ""},          {"--roots-from", true, ""},      {"--jobs", true, "1 2 4"},
    {"--user", true, ""},          {"--all-users", false, ""},      {"--os", true, "10.4 10.5 10.6"},
    {"--arch", true, "intel ppc"}, {"--pace", true, "full gentle"}, {"--color", true, "auto always never"},
    {"--verbose", false, ""},      {"--version", false, ""},        {"--help", false, ""},
};

using Words = std::vector<std::string>;

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

/// A command's long options and its own commands.
Words wordsOf(const CLI::App& command) {
    Words words;
    for (const auto* option : command.get_options()) {
        for (const auto& name : option->get_lnames())
            words.push_back("--" + name);
    }
    for (const auto* inner : commandsOf(command)) {
        words.push_back(inner->get_name());
        for (auto& word : wordsOf(*inner)) {
            if (std::ranges::find(words, word) == words.end())
                words.push_back(std::move(word));
        }
    }
    if (command.get_name() == "scan" || command.get_name() == "clean" || command.get_name() == "schedule" ||
        command.get_name() == "modules") {
        for (const auto& row : scanModules()) {
            words.emplace_back(row.name);
            for (const auto& part : row.switches) {
                if (part.name != row.name)
                    words.emplace_back(part.name);
            }
        }
    }
    if (command.get_name() == "prefs") {
        for (const auto& key : documentedPreferences())
            words.emplace_back(key.name);
    }
    if (command.get_name() == "completion")
        words.insert(words.end(), {"bash", "zsh", "fish"});
    return words;
}

bool takesPaths(const CLI::App& command) {
    if (command.get_name() == "schedule")
        return false; // its modules stand for themselves
    const auto isPath = [](const CLI::Option* option) {
        const auto& name = option->get_name(true);
        return name.find("PATH") != std::string::npos || name.find("DIR") != std::string::npos ||
               name.find("FILE") != std::string::npos || name.find("MODULE") != std::string::npos;
    };
    return std::ranges::any_of(command.get_options(), isPath) ||
           std::ranges::any_of(commandsOf(command), [](const CLI::App* inner) { return takesPaths(*inner); });
}

std::string joined(const Words& words, const char* between) {
    std::string text;
    for (const auto& word : words)
        text += (text.empty() ? "" : between) + word;
    return text;
}

Words commandNames(const CLI::App& app) {
    Words names;
    for (const auto* command : commandsOf(app))
        names.push_back(command->get_name());
    return names;
}

/// Of bash and zsh, which tell the same by the same means but for the name of a variable and of a function.
std::string filled(std::string script, const CLI::App& app, const std::string& variable,
                   const std::pair<std::string, std::string>& addWords) {
    Words withValue{"-u"};
    Words global;
    std::string values;
    for (const auto& option : kGlobalOptions) {
        global.emplace_back(option.name);
        if (option.takesValue)
            withValue.emplace_back(option.name);
        if (*option.values != '\0')
            values += std::string("    ") + option.name + ") " + addWords.first + option.values + addWords.second +
                      "; return ;;\n";
    }
    for (const auto reference : CommandLineController::folderReferences())
        withValue.emplace_back(reference);
    std::string commands;
    for (const auto* command : commandsOf(app)) {
        commands += "    " + command->get_name() + ") " + variable + "=\"" + joined(wordsOf(*command), " ") + "\"" +
                    (takesPaths(*command) ? " paths=yes" : "") + " ;;\n";
        global.push_back(command->get_name());
    }
    const std::pair<std::string_view, std::string> parts[]{
        {"@OPTIONS_WITH_VALUE@", joined(withValue, " | ")},
        {"@COMMANDS@", joined(commandNames(app), " | ")},
        {"@OPTION_VALUES@", values},
        {"@COMMAND_WORDS@", commands},
        {"@GLOBAL_WORDS@", joined(global, " ")},
    };
    for (const auto& [name, text] : parts)
        script.replace(script.find(name), name.size(), text);
    return script;
}

/// In single quotes.
std::string quoted(std::string text) {
    std::erase(text, '\'');
    return "'" + text + "'";
}

std::string fishScript(const CLI::App& app) {
    const std::string line = "complete -c sweeply-cli -n ";
    // fish's own test for this takes the value of an option for a command.
    const std::string before = line + quoted("not __fish_seen_subcommand_from " + joined(commandNames(app), " "));
    std::string script = kFishTemplate;
    script += before + " -l root -r -a '(__fish_complete_directories)'\n";
    script += before + " -l roots-from -r -F\n";
    script += before + " -l user -s u -x -a '(__sweeply_cli_users)'\n";
    for (const auto& option : kGlobalOptions) {
        const std::string start = before + " -l " + std::string(option.name).substr(2);
        if (!option.takesValue)
            script += start + "\n";
        else if (*option.values != '\0')
            script += start + " -x -a " + quoted(option.values) + "\n";
    }
    for (const auto* command : commandsOf(app)) {
        const std::string seen = quoted("__fish_seen_subcommand_from " + command->get_name());
        script += before + " -f -a " + command->get_name() + " -d " + quoted(command->get_description()) + "\n";
        if (!takesPaths(*command))
            script += line + seen + " -f\n";
        for (const auto& word : wordsOf(*command))
            script += line + seen + (word.starts_with("--") ? " -l " + word.substr(2) : " -a " + word) + "\n";
    }
    return script;
}

} // namespace

std::string completionScript(const CLI::App& commands, std::string_view shell) {
    if (shell == "bash")
        return filled(kBashTemplate, commands, "words", {"_sweeply_cli_words \"", "\" \"$word\""});
    if (shell == "zsh")
        return filled(kZshTemplate, commands, "known", {"compadd -- ", ""});
    return shell == "fish" ? fishScript(commands) : std::string();
}

} // namespace sweeply
