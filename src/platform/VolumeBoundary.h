#pragma once

#include "platform/UniqueFd.h"

#include <atomic>
#include <sys/types.h>

namespace sweeply {

/// Opens folders of one volume and of no other: nothing that is mounted in a tree is entered, and no link is followed.
/// Thread-safe.
class VolumeBoundary final {
  public:
    /// The volume that `folder` is on. The descriptor is not kept.
    explicit VolumeBoundary(int folder);

    /// Opens the folder `name` of the open folder `parent` for reading. Without success nothing is returned and errno
    /// says why: EXDEV for a mount point, ENOTDIR or ELOOP for anything that is no folder.
    [[nodiscard]] UniqueFd openFolder(int parent, const char* name) const;

  private:
    [[nodiscard]] UniqueFd openFolderByComparing(int parent, const char* name) const;

    dev_t m_device = 0;
    mutable std::atomic<bool> m_kernelChecks = true; ///< until it says that it cannot
};

} // namespace sweeply
