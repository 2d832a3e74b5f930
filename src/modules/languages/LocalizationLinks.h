#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace sweeply {

class FileManager;

/// The links of one application that lead to a neighbour among its localizations ("fr_CA.lproj" to "fr.lproj"), each
/// with the path of that neighbour.
class LocalizationLinks final {
  public:
    /// Takes in the link at `path` if it leads to a neighbour.
    void add(const FileManager& files, const std::string& path);
    [[nodiscard]] const std::unordered_map<std::string, std::string>& all() const { return m_neighbours; }
    /// Where the link at `path` leads in the end, over other links of these; the path itself if it is none of them.
    [[nodiscard]] const std::string& endOf(const std::string& path) const;

    /// The path of the neighbour that the link at `path` leads to now; empty if it leads elsewhere or is no link.
    [[nodiscard]] static std::string neighbourOf(const FileManager& files, std::string_view path);

  private:
    std::unordered_map<std::string, std::string> m_neighbours; ///< by the link's path
};

} // namespace sweeply
