#pragma once

#include "appcore/changes/KeptItem.h"
#include "platform/Error.h"
#include "platform/TargetRoot.h"

#include <string>
#include <vector>

namespace sweeply {

class FileManager;
class PrivilegedExecution;

/// Moves items to where they are kept and back: a rename, so that each is in the one place or the other, whole, with
/// all its attributes, whenever the power goes. The first part of an item decides where the item is; the others belong
/// to it and follow.
///
/// `folder` is always the target path of the item's own folder among what is kept.
class ItemKeeper final {
  public:
    /// Both outlive this.
    ItemKeeper(FileManager& files, PrivilegedExecution& privileged) : m_files(files), m_privileged(privileged) {}

    /// Makes the folder, and tells whether the parts can be moved there: Unavailable where they cannot, because they
    /// lie on another volume.
    Result<void> prepare(const std::vector<std::string>& parts, const std::string& folder);
    /// The folders above a path, with what is needed to make them again.
    [[nodiscard]] std::vector<ParentFolder> parentsOf(const std::string& path) const;
    Result<void> moveAway(const KeptItem& item, const std::string& folder);
    /// AlreadyExists where something stands in its place, which stays as it is; NotFound where the item is not kept any
    /// more. Missing folders above are made as they were.
    Result<void> moveBack(const KeptItem& item, const std::string& folder);
    /// Removes what is kept there for good.
    Result<void> purge(const std::string& folder);
    /// Is the item there?
    [[nodiscard]] bool isKept(const KeptItem& item, const std::string& folder) const;

  private:
    /// Without replacing anything; with administrator rights, when there are any, where the user may not.
    Result<void> move(const LocatedItem& from, const LocatedItem& to, const std::string& path);
    Result<void> makeParents(const KeptItem& item);
    /// Whatever is still in it stays.
    void removeEmpty(const std::string& folder);

    FileManager& m_files;
    PrivilegedExecution& m_privileged;
};

} // namespace sweeply
