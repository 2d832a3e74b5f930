#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

// Where a volume cannot hold what a Mac keeps beside a file's contents, it stands in a second file, "._NAME" for the
// item NAME of the same folder, in the AppleDouble format. It is of no use without the item.

namespace sweeply {

[[nodiscard]] std::string companionName(std::string_view name);

/// Is the entry of the open folder a companion: a regular file with such a name and, as far as it may be read, of that
/// format?
[[nodiscard]] bool isCompanionFile(int folder, const std::string& name);

/// Finds the companions of many items of one folder without asking the system about each: after the first few it lists
/// the folder, once. What appears after that is not found. One thread at a time.
class CompanionFinder final {
  public:
    /// The descriptor is borrowed; an O_PATH one will do.
    explicit CompanionFinder(int folder) : m_folder(folder) {}

    /// The name of the item's companion, if there is one now.
    [[nodiscard]] std::optional<std::string> companionOf(std::string_view name);

  private:
    void list();

    int m_folder;
    unsigned m_asked = 0;
    std::optional<std::unordered_set<std::string>> m_listed; ///< names that look like companions'
};

} // namespace sweeply
