#pragma once

#include "formats/PropertyList.h"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class Node;
class SWApplicationCore;
class SystemLog;
class UserDefaults;

/// The items that the user unchecked in each module's results, kept in the preferences.
///
/// Entries are never pruned: an item that is away for a while, on a disk that is not there now, is still unchecked when
/// it comes back. Thread-safe.
class UncheckedItems final {
  public:
    /// All outlive this.
    UncheckedItems(UserDefaults& defaults, const SWApplicationCore& applications, SystemLog& log);

    /// As the property list holds them: compare with ignoreKeyForPath.
    [[nodiscard]] std::vector<std::string> ignoreListForController(std::string_view moduleKey) const;
    /// Adds the nodes' keys at the end, also those that are there already, and writes the preferences.
    void addToIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view moduleKey);
    /// Removes every occurrence of the nodes' keys and writes the preferences.
    void removeFromIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view moduleKey);

    /// The same for items without a node. Return how many entries were added or removed.
    std::size_t addKeys(const std::vector<std::string>& keys, std::string_view moduleKey);
    std::size_t removeKeys(const std::vector<std::string>& keys, std::string_view moduleKey);
    /// Every module that has entries, in the order of the file.
    [[nodiscard]] std::vector<std::string> moduleKeys() const;

  private:
    [[nodiscard]] std::vector<std::string> keysOf(const std::vector<const Node*>& nodes,
                                                  std::string_view moduleKey) const;
    void fetchOthersChanges();
    [[nodiscard]] plist::Dictionary storedLists() const;
    void store(plist::Dictionary lists, std::string_view moduleKey, const std::vector<std::string>& keys);

    UserDefaults& m_defaults;
    const SWApplicationCore& m_applications;
    SystemLog& m_log;
    std::mutex m_mutex; ///< held from reading the stored lists to writing them
};

} // namespace sweeply
