#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sweeply {

/// The folders that are never removed, whatever asks: the well-known ones themselves and everything they stand in.
/// Their contents are fair game.
///
/// A path is compared in two ways: as text, without regard to case (a Mac's volume usually has none), and by device and
/// inode, so that another way to the same folder is refused too.
class RemovalGuard final {
  public:
    using Identity = std::pair<std::uint64_t, std::uint64_t>; ///< device, inode

    /// Protects `path` (an absolute target path) and every folder above it.
    void protect(std::string_view path);
    /// Protects a folder, every folder above it, and everything in it; walks of the volume pass it over.
    void protectTree(std::string_view path);
    [[nodiscard]] const std::vector<std::string>& trees() const { return m_trees; }
    /// Says which folders the protected paths are on this volume now.
    void setIdentities(std::set<Identity> identities) { m_identities = std::move(identities); }

    /// Every protected path, as it was given or as a folder above one.
    [[nodiscard]] const std::vector<std::string>& paths() const { return m_paths; }

    /// Why `path` is refused, or an empty text. Relative paths and those with ".." are always refused.
    [[nodiscard]] std::string reasonAgainst(std::string_view path) const;
    [[nodiscard]] bool isProtected(Identity identity) const { return m_identities.contains(identity); }

  private:
    std::vector<std::string> m_paths;
    std::vector<std::string> m_trees;
    std::set<std::string, std::less<>> m_foldedPaths; ///< the same in lower case
    std::set<Identity> m_identities;
};

} // namespace sweeply
