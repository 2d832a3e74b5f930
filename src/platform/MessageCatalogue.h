#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace sweeply {

/// The translations of one language, as msgfmt compiles them.
///
/// We look them up ourselves: gettext translates nothing unless the system has generated the locale of the language,
/// and few that work on another one's machine have. Immutable, so usable from any thread.
class MessageCatalogue final {
  public:
    /// `bytes` are those of the file. Nothing when they are no catalogue, or a damaged one.
    [[nodiscard]] static std::optional<MessageCatalogue> parse(std::string_view bytes);

    /// Nothing where there is no translation. The text lives as long as this.
    [[nodiscard]] std::optional<std::string_view> find(std::string_view key) const;

  private:
    MessageCatalogue() = default;

    std::unordered_map<std::string, std::string> m_texts;
};

} // namespace sweeply
