#pragma once

#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace sweeply {

/// The lines that teach a shell ("bash", "zsh" or "fish") to complete our commands and options, made of the very tables
/// that read them. Empty for another shell.
[[nodiscard]] std::string completionScript(const CLI::App& commands, std::string_view shell);

} // namespace sweeply
