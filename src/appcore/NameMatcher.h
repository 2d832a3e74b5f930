#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace re2 {
class RE2;
}

namespace sweeply {

/// Tells in one pass over a name whether any of many texts occurs in it, byte for byte. Immutable, thread-safe.
class NameMatcher final {
  public:
    /// Texts to find anywhere, and texts to find at the beginning only. Empty ones are found nowhere.
    explicit NameMatcher(const std::vector<std::string>& anywhere, const std::vector<std::string>& atBeginning = {});
    ~NameMatcher();

    [[nodiscard]] bool matches(std::string_view name) const;

  private:
    std::unique_ptr<const re2::RE2> m_expression; ///< none when there is nothing to find
};

} // namespace sweeply
