#pragma once

#include "engine/ADScanController.h"
#include "modules/ModuleServices.h"

#include <string>
#include <string_view>
#include <unordered_set>

namespace sweeply {

class IgnoreList;

/// Makes nodes of items whose check marks are remembered: unchecked where the person unchecked them before.
class RememberedNodes final {
  public:
    /// Reads the ignore list of that module key as it is now. All nodes are found by the same rule.
    RememberedNodes(const IgnoreList& ignoreList, std::string_view moduleKey, EvidenceRule rule);

    [[nodiscard]] Node::Pointer nodeFor(std::string_view name, std::string path, const MeasuredItem& item) const;

  private:
    std::unordered_set<std::string> m_ignored;
    const SharedEvidence m_evidence;
};

/// What of a folder's entries becomes an item.
struct EntryRules {
    std::string_view moduleKey; ///< under which unchecked items are remembered
    EvidenceRule rule;
    std::uint64_t smallestSize = 0; ///< charged bytes
    /// Does an item go whole? Then its companion ("._NAME") goes with it, is charged with it, and is no item itself.
    bool goesWhole = true;
};

/// Lists the direct entries of a folder, each one an item of `module`, however deep it goes. A folder that does not
/// exist is made. Runs on the module's scan thread.
void scanEntriesOfFolder(std::string_view folderPath, ADScanController& module, const ModuleServices& services,
                         const EntryRules& rules);

} // namespace sweeply
