#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sweeply {

/// Which part of a target is looked at: what one user and the machine have, what lies in one user's home alone, or what
/// lies in nobody's home and so is everybody's.
class TargetPart final {
  public:
    /// All of it.
    TargetPart() = default;
    [[nodiscard]] static TargetPart ofUser(std::string home) { return {true, {std::move(home)}}; }
    /// `homes` are those of all users.
    [[nodiscard]] static TargetPart ofMachine(std::vector<std::string> homes) { return {false, std::move(homes)}; }

    /// Is what lies at this path looked at?
    [[nodiscard]] bool includes(std::string_view path) const;
    [[nodiscard]] bool isEverything() const { return m_isInside && m_homes.empty(); }
    /// Is what is a user's own looked at, wherever it says that something lies?
    [[nodiscard]] bool includesUsersOwn() const { return m_isInside; }
    [[nodiscard]] bool includesMachines() const { return !m_isInside || m_homes.empty(); }

  private:
    TargetPart(bool isInside, std::vector<std::string> homes) : m_isInside(isInside), m_homes(std::move(homes)) {}

    bool m_isInside = true; ///< what lies in these homes is looked at; else what does not
    std::vector<std::string> m_homes;
};

} // namespace sweeply
