#pragma once

#include "formats/Utf8.h"

#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class Node;

/// How an item's path stands in the ignore list: as it is, but with U+FFFD for what is not UTF-8, which no property
/// list can hold. Two such paths may meet in one key; then both stay unchecked, which is the safe side.
[[nodiscard]] inline std::string ignoreKeyForPath(std::string_view path) { return validUtf8(path); }

/// What the user does not want touched: unchecked items, remembered by module so that the next scan lists them
/// unchecked again, and applications to be left alone. The module key is the module's defaultsName. Thread-safe; nodes
/// are read under the tree lock by the caller.
class IgnoreList {
  public:
    virtual ~IgnoreList() = default;

    /// The keys remembered for a module: mostly paths, compared exactly.
    [[nodiscard]] virtual std::vector<std::string> ignoreListForController(std::string_view moduleKey) const = 0;
    virtual void addToIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view moduleKey) = 0;
    virtual void removeFromIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view moduleKey) = 0;
    void addToIgnoreListPath(const Node& node, std::string_view moduleKey) { addToIgnoreListNodes({&node}, moduleKey); }
    void removeFromIgnoreListPath(const Node& node, std::string_view moduleKey) {
        removeFromIgnoreListNodes({&node}, moduleKey);
    }

    /// Is the application at `path` to be left alone?
    [[nodiscard]] virtual bool applicationInList(std::string_view path) const = 0;
    /// The same for one that the user named himself: asks whether to go on all the same, and is false then. Waits for
    /// the main thread.
    [[nodiscard]] virtual bool applicationInListWithUserNotification(std::string_view path) = 0;
};

} // namespace sweeply
