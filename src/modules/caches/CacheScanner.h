#pragma once

#include "engine/ADScanController.h"
#include "modules/caches/CacheServices.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

namespace sweeply {

/// The switch-independent key under which all cache modules keep their unchecked items.
inline constexpr const char* kCachesModuleKey = "Caches";

/// Makes the cache modules' nodes: unchecked where the person unchecked them before.
class CacheNodeMaker final {
  public:
    /// Reads the ignore list as it is now.
    explicit CacheNodeMaker(const CacheServices& services);

    /// `size` in bytes, as DiskSizes charges it.
    [[nodiscard]] Node::Pointer nodeFor(std::string_view name, std::string path, std::uint64_t size) const;

  private:
    std::unordered_set<std::string> m_ignored;
};

/// Lists the direct entries of the caches folder `folderPath`, each one an item of `module`, however deep it goes. A
/// folder that does not exist is made. Runs on the module's scan thread.
void scanCachesInPath(std::string_view folderPath, ADScanController& module, const CacheServices& services);

} // namespace sweeply
