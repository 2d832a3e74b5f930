#pragma once

#include "platform/CompanionFiles.h"
#include "platform/Error.h"
#include "platform/RemovalGuard.h"
#include "platform/TargetRoot.h"
#include "platform/UniqueFd.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace sweeply {

/// Takes items off the target's disk, and finds the place of those that somebody with more rights takes off or that are
/// emptied. What is to be protected is refused here, for every caller.
///
/// The guard is filled before threads start and refreshed while no removal is under way; all else any number of threads
/// may call at once.
class Removals final {
  public:
    /// `root` must outlive this.
    explicit Removals(const TargetRoot& root) : m_root(root) {}

    /// Removes the item and all below it; a link goes as a link. Once it is gone, its companion ("._NAME") goes too;
    /// one that cannot is the error. Refuses what the guard protects, the root, mount points and everything beyond one.
    /// Nothing at the path is NotFound. What could be removed of a tree is gone even when the rest fails; the error is
    /// the first one met.
    Result<void> removeItemAtPath(std::string_view path);

    /// Finds the item for a removal by other means (a tool with more rights) after the same checks as removeItemAtPath.
    [[nodiscard]] Result<LocatedItem> locateForRemoval(std::string_view path) const;
    /// The same item without read or write access, a link as a link: for emptying it in place.
    [[nodiscard]] Result<UniqueFd> openReferenceForRemoval(std::string_view path) const;

    /// The name, in the same folder, of the companion that is to go with the item once it is gone.
    [[nodiscard]] std::optional<std::string> companionOf(const LocatedItem& item) const;

    /// What removals refuse.
    [[nodiscard]] RemovalGuard& guard() { return m_guard; }
    [[nodiscard]] const RemovalGuard& guard() const { return m_guard; }
    /// Looks again which folders the protected paths are: at the start of every run of removals.
    ///
    /// A protected path that leads through links ("/var", a caches folder moved to another volume) is known from then
    /// on. Any other link on the way to an item makes its removal fail: it was no link when the item was found.
    void refreshGuard();
    /// A run of removals is over: lets go of the folders that were held open for it.
    void forgetFoldersOfRemovals();

  private:
    struct OpenFolder {
        explicit OpenFolder(UniqueFd opened) : fd(std::move(opened)) {}

        const UniqueFd fd;
        CompanionFinder companions{fd.get()}; ///< guarded by m_lastFolderMutex
    };
    /// Where a removal takes place: the folder, held open, and the name in it.
    struct Place {
        std::shared_ptr<OpenFolder> folder;
        std::string name;

        [[nodiscard]] int parent() const { return folder->fd.get(); }
    };

    [[nodiscard]] Result<Place> placeFor(std::string_view path) const;
    [[nodiscard]] Result<void> removeAt(const Place& place, std::string_view path);
    [[nodiscard]] Result<void> removeCompanion(const Place& place, std::string_view path);
    [[nodiscard]] Result<void> refuseProtectedFolder(const Place& place, std::string_view path) const;
    /// The path with its longest known beginning replaced by where that leads.
    [[nodiscard]] std::string withoutKnownLinks(std::string_view path) const;

    const TargetRoot& m_root;
    RemovalGuard m_guard;
    std::map<std::string, std::string, std::less<>> m_knownLinks; ///< protected path -> where it leads

    /// The folder of the last removal. Items of one folder go one after another, and finding it anew for each would
    /// cost more than the removal; held open, it is also sure to be the same one.
    struct LastFolder {
        std::string path;  ///< as it was asked for
        std::string place; ///< without known links
        std::shared_ptr<OpenFolder> folder;
    };
    mutable std::mutex m_lastFolderMutex;
    mutable LastFolder m_lastFolder; ///< guarded by m_lastFolderMutex
};

} // namespace sweeply
