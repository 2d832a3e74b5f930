#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

/// The texts that people read, in their language. The English text is the key; what has no translation stays English.
///
/// Formats use the placeholders "%@" (text), "%i" (integer), "%f" with width and precision ("%0.2f"), and "%%". They
/// are checked: a placeholder without a fitting argument stays in the text as it is written.
///
/// All functions may be called from any thread.
namespace sweeply {

/// One argument of a format. Views its text: it lives no longer than the call that takes it.
class FormatArgument final {
  public:
    using Storage = std::variant<std::string_view, std::int64_t, std::uint64_t, double>;

    // Implicit: arguments are written down as they are. NOLINTBEGIN(google-explicit-constructor)
    FormatArgument(std::string_view text) : m_storage(text) {}
    FormatArgument(const std::string& text) : m_storage(std::string_view(text)) {}
    FormatArgument(const char* text) : m_storage(std::string_view(text)) {}
    FormatArgument(double number) : m_storage(number) {}
    template<std::integral T>
    FormatArgument(T number) {
        if constexpr (std::signed_integral<T>)
            m_storage = static_cast<std::int64_t>(number);
        else
            m_storage = static_cast<std::uint64_t>(number);
    }
    // NOLINTEND(google-explicit-constructor)

    [[nodiscard]] const Storage& storage() const { return m_storage; }

  private:
    Storage m_storage;
};

/// Takes the process's language from its environment and its translations from `directory`, which holds
/// "de/LC_MESSAGES/sweeply.mo" and the like. For the programs, once, before threads start.
void bindTextDomain(const std::string& directory);

[[nodiscard]] std::string localizedString(std::string_view key);
/// The same for the title of a button, which may need another word than the same text elsewhere.
[[nodiscard]] std::string localizedButton(std::string_view key);
/// Marks a key that goes to localizedString in a variable, so that script/update-po finds it where it is written.
constexpr const char* translatable(const char* key) { return key; }
/// The same for a key that goes to localizedButton.
constexpr const char* translatableButton(const char* key) { return key; }

/// Fills in the arguments, without regard to any language. Numbers look the same everywhere: sizes and versions are
/// read by programs too.
[[nodiscard]] std::string formatText(std::string_view format, std::initializer_list<FormatArgument> arguments);

/// Fills in the translation of `key`. A translation whose placeholders are not of the same kinds in the same order is
/// passed over for the key itself.
[[nodiscard]] std::string localizedFormat(std::string_view key, std::initializer_list<FormatArgument> arguments);

/// Do both formats take the same kinds of arguments in the same order?
[[nodiscard]] bool haveSamePlaceholders(std::string_view format, std::string_view other);

} // namespace sweeply
