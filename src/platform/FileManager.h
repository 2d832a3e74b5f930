#pragma once

#include "platform/Error.h"
#include "platform/FileAttributes.h"
#include "platform/RemovalGuard.h"
#include "platform/UniqueFd.h"

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace sweeply {

class DirectoryEnumerator;

/// Should a symbolic link in the last component of a path be followed? Links in the middle are, inside the root, except
/// on the way to a removal.
enum class Links { Follow, DontFollow };

/// The one door to the target's files. Every path it takes is a target path: absolute, starting at the target's root.
///
/// Resolution never leaves the root: an absolute link or one full of ".." ends inside the root, as it would on the
/// machine that the volume came from. Names are bytes; nothing is assumed of their encoding.
///
/// Thread-safe: any number of threads may call anything at once.
class FileManager final {
  public:
    /// Opens the folder `root` of the host as the target's root.
    static Result<std::unique_ptr<FileManager>> open(const std::string& root);

    FileManager(const FileManager&) = delete;
    FileManager& operator=(const FileManager&) = delete;

    // Asking

    [[nodiscard]] bool fileExistsAtPath(std::string_view path) const;
    /// Is there surely nothing, links followed? What may not be looked at is not gone.
    [[nodiscard]] bool isMissingAtPath(std::string_view path) const;
    [[nodiscard]] bool directoryExistsAtPath(std::string_view path) const;
    [[nodiscard]] Result<FileAttributes> attributesOfItemAtPath(std::string_view path, Links links) const;
    /// The entries of one folder in the file system's own order, without "." and "..".
    [[nodiscard]] Result<std::vector<DirectoryEntry>> contentsOfDirectoryAtPath(std::string_view path) const;
    /// Walks everything below the folder at `path`. A folder that cannot be opened enumerates as empty; ask
    /// DirectoryEnumerator::failure whether it was.
    [[nodiscard]] DirectoryEnumerator enumeratorAtPath(std::string_view path) const;
    /// The whole file; TooLarge beyond `limit` bytes, WrongType for anything but a regular file (a named pipe in a
    /// stranger's volume must not block us).
    [[nodiscard]] Result<std::string> contentsAtPath(std::string_view path, std::size_t limit) const;
    /// Its first bytes, `size` of them or all there are, under the same rules.
    [[nodiscard]] Result<std::string> beginningOfFileAtPath(std::string_view path, std::size_t size) const;
    [[nodiscard]] Result<std::string> destinationOfSymbolicLinkAtPath(std::string_view path) const;

    /// The regular file at `path`; anything else is WrongType and does not block.
    [[nodiscard]] Result<UniqueFd> openForReading(std::string_view path) const;
    /// The folder at `path`, opened for reading its entries.
    [[nodiscard]] Result<UniqueFd> openDirectory(std::string_view path) const;
    /// The item at `path`, without read or write access: for handing its identity to a tool.
    [[nodiscard]] Result<UniqueFd> openReference(std::string_view path, Links links) const;
    /// The folder that holds `path`, as openReference gives it, and the name in it.
    struct Located {
        UniqueFd parent;
        std::string name;
    };
    [[nodiscard]] Result<Located> locate(std::string_view path) const;

    /// The path of an existing item on the host, with every link on the way resolved. For showing and for tools that
    /// need a real path; the target may change behind it.
    [[nodiscard]] Result<std::string> hostPath(std::string_view path) const;
    /// The target's root on the host.
    [[nodiscard]] const std::string& rootPath() const { return m_rootPath; }
    /// Is the target the host itself?
    [[nodiscard]] bool isHostRoot() const { return m_rootPath == "/"; }

    // Changing

    /// Makes the folder and those above it that are missing. An existing folder is success.
    Result<void> createDirectoryAtPath(std::string_view path, mode_t mode = 0755);
    /// A new file, not synced: for contents that can be made again. An item already at `path` is AlreadyExists.
    Result<void> createFileAtPath(std::string_view path, std::string_view contents, mode_t mode = 0644);
    /// Replaces the file at `path` or leaves the old one whole: written beside it, synced, renamed over it. An existing
    /// file's mode and owner are kept; a link at `path` is replaced, not written through.
    Result<void> writeAtomically(std::string_view path, std::string_view contents, mode_t mode = 0644);
    /// Makes a link at `path` that says `destination`, unresolved.
    Result<void> createSymbolicLinkAtPath(std::string_view path, const std::string& destination);
    /// Renames within the target; an item at `to` is not replaced.
    Result<void> moveItemAtPath(std::string_view from, std::string_view to);
    /// Renames the file `replacement` of the located item's folder over the item, which must be no folder, and has that
    /// on the disk before it returns.
    Result<void> replaceFile(const Located& item, const std::string& replacement);
    /// Removes the item and all below it; a link goes as a link. Refuses what the guard protects, the root, mount
    /// points and everything beyond one. Nothing at the path is NotFound. What could be removed of a tree is gone even
    /// when the rest fails; the error is the first one met.
    Result<void> removeItemAtPath(std::string_view path);

    /// Finds the item for a removal by other means (a tool with more rights) after the same checks as removeItemAtPath.
    [[nodiscard]] Result<Located> locateForRemoval(std::string_view path) const;
    /// The same item as openReference gives it, a link as a link: for emptying it in place.
    [[nodiscard]] Result<UniqueFd> openReferenceForRemoval(std::string_view path) const;

    /// What removals refuse. Filled by whoever builds the program, before threads start.
    [[nodiscard]] RemovalGuard& guard() { return m_guard; }
    /// Looks again which folders the protected paths are: at the start of every run of removals, while none is under
    /// way.
    ///
    /// A protected path that leads through links ("/var", a caches folder moved to another volume) is known from then
    /// on. Any other link on the way to an item makes its removal fail: it was no link when the item was found.
    void refreshGuard();
    /// A run of removals is over: lets go of the folders that were held open for it.
    void forgetFoldersOfRemovals();

  private:
    /// Where a removal takes place: the folder, held open, and the name in it.
    struct RemovalPlace {
        std::shared_ptr<const UniqueFd> parent;
        std::string name;
    };

    FileManager(UniqueFd root, std::string rootPath);

    Result<UniqueFd> openInRoot(std::string_view path, int flags) const;
    [[nodiscard]] Result<RemovalPlace> placeForRemoval(std::string_view path) const;
    [[nodiscard]] Result<void> refuseProtectedFolder(const RemovalPlace& place, std::string_view path) const;
    /// The path with its longest known beginning replaced by where that leads.
    [[nodiscard]] std::string withoutKnownLinks(std::string_view path) const;

    UniqueFd m_root;
    std::string m_rootPath;
    RemovalGuard m_guard;
    std::map<std::string, std::string, std::less<>> m_knownLinks; ///< protected path -> where it leads

    /// The folder of the last removal. Items of one folder go one after another, and finding it anew for each would
    /// cost more than the removal; held open, it is also sure to be the same one.
    struct LastFolder {
        std::string path;  ///< as it was asked for
        std::string place; ///< without known links
        std::shared_ptr<const UniqueFd> fd;
    };
    mutable std::mutex m_lastFolderMutex;
    mutable LastFolder m_lastFolder; ///< guarded by m_lastFolderMutex
};

} // namespace sweeply
