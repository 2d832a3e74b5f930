#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Codes and names of languages. All functions may be called from any thread.
namespace sweeply {

/// The canonical code of a language, whatever way it is named: "pt-BR" for "pt_BR" and "Brazilian Portuguese",
/// "zh-Hant" for "zh_TW". What is no name of a language comes back in the same form; nothing for what is not ASCII.
[[nodiscard]] std::optional<std::string> canonicalLanguageIdentifier(std::string_view name);

/// What people call the language with this canonical code, in the process's own language. Nothing for an unknown one.
[[nodiscard]] std::optional<std::string> displayNameOfLanguage(const std::string& code);

} // namespace sweeply
