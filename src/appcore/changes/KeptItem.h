#pragma once

#include "appcore/changes/Change.h"

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace sweeply {

/// A folder that an item stood in, so that it can be made again when it is missing by then.
struct ParentFolder {
    std::string path;
    mode_t mode = 0;
    uid_t owner = 0;
    gid_t group = 0;
};

/// All that must be known to put an item back. Its parts lie side by side in a folder of the item's own, under their
/// names; an entry of a list has no part.
struct KeptItem {
    std::uint32_t number = 0; ///< its own in its run, from 1
    std::string path;
    std::string module;
    ChangedKind kind = ChangedKind::File;
    std::uint64_t size = 0;
    std::vector<std::string> parts = {};    ///< where each stood; all of one folder
    std::vector<ParentFolder> parents = {}; ///< of the parts, the uppermost first
    std::string list = {};                  ///< of a login item: the file that held the list, as it was
};

/// Writes down what a run does, before and after. The gate calls it on the thread that removes.
class ChangeJournal {
  public:
    virtual ~ChangeJournal() = default;

    /// The folder for what this run keeps, as a target path; it need not be there yet.
    [[nodiscard]] virtual std::string keptFolder() const = 0;
    /// A change comes: a failure says that its outcome could not be written down.
    virtual Result<void> willChange() = 0;
    /// An item is about to be kept. On the disk when it returns.
    virtual Result<void> willKeep(const KeptItem& item) = 0;
    virtual void changed(const ChangeReport& report) = 0;
};

} // namespace sweeply
