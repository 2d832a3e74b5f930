#pragma once

#include "platform/Error.h"
#include "platform/FileAttributes.h"
#include "platform/ReadProblems.h"
#include "platform/Removals.h"
#include "platform/SystemCalls.h"
#include "platform/TargetRoot.h"
#include "platform/UniqueFd.h"

#include <cstddef>
#include <functional>
#include <memory>
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
/// What it cannot answer because something cannot be read is among its ReadProblems, too.
///
/// Thread-safe: any number of threads may call anything at once.
class FileManager final {
  public:
    /// Opens the folder `root` of the host as the target's root. The calls outlive this.
    static Result<std::unique_ptr<FileManager>> open(const std::string& root,
                                                     SystemCalls& calls = SystemCalls::plain());

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
    /// The same, with what the walk cannot read among these problems in place of our own; they outlive the walk.
    [[nodiscard]] DirectoryEnumerator enumeratorAtPath(std::string_view path, ReadProblems& problems) const;
    /// The whole file; TooLarge beyond `limit` bytes, WrongType for anything but a regular file (a named pipe in a
    /// stranger's volume must not block us).
    [[nodiscard]] Result<std::string> contentsAtPath(std::string_view path, std::size_t limit) const;
    /// Its first bytes, `size` of them or all there are, under the same rules.
    [[nodiscard]] Result<std::string> beginningOfFileAtPath(std::string_view path, std::size_t size) const;
    [[nodiscard]] Result<std::string> destinationOfSymbolicLinkAtPath(std::string_view path) const;

    /// The regular file at `path`; anything else is WrongType and does not block.
    [[nodiscard]] Result<UniqueFd> openForReading(std::string_view path, Links links = Links::Follow) const;
    /// The folder at `path`, opened for reading its entries.
    [[nodiscard]] Result<UniqueFd> openDirectory(std::string_view path) const;
    /// The item at `path`, without read or write access: for handing its identity to a tool.
    [[nodiscard]] Result<UniqueFd> openReference(std::string_view path, Links links) const;
    /// The folder that holds `path`, as openReference gives it, and the name in it.
    using Located = LocatedItem;
    [[nodiscard]] Result<Located> locate(std::string_view path) const { return m_root.locate(path); }

    /// What could not be read.
    [[nodiscard]] ReadProblems& problems() const { return m_problems; }
    /// Adds what keeps the item at the error's path from being read: itself, or the folder above it that lets nobody
    /// in.
    void addUnreadable(const Error& error) const { m_problems.addFailure(causeOf(error)); }

    /// The path of an existing item on the host, with every link on the way resolved. For showing and for tools that
    /// need a real path; the target may change behind it.
    [[nodiscard]] Result<std::string> hostPath(std::string_view path) const { return m_root.hostPath(path); }
    /// The target's root on the host.
    [[nodiscard]] const std::string& rootPath() const { return m_root.path(); }
    [[nodiscard]] const TargetRoot& root() const { return m_root; }
    /// Is the target the host itself?
    [[nodiscard]] bool isHostRoot() const { return rootPath() == "/"; }

    // Changing

    /// Makes the folder and those above it that are missing. An existing folder is success.
    Result<void> createDirectoryAtPath(std::string_view path, mode_t mode = 0755);
    /// A new file, not synced: for contents that can be made again. An item already at `path` is AlreadyExists.
    Result<void> createFileAtPath(std::string_view path, std::string_view contents, mode_t mode = 0644);
    /// Replaces the file at `path` or leaves the old one whole: written beside it, synced, renamed over it. An existing
    /// file's mode and owner are kept; a link at `path` is replaced, not written through.
    Result<void> writeAtomically(std::string_view path, std::string_view contents, mode_t mode = 0644);
    /// Removes from the folder at `path` what killed processes of ours left; sweepTemporaryFiles says what that is.
    void sweepTemporaryFilesAtPath(std::string_view path, const std::function<bool(const std::string&)>& mayGo = {});
    /// Makes a link at `path` that says `destination`, unresolved.
    Result<void> createSymbolicLinkAtPath(std::string_view path, const std::string& destination);
    /// Renames within the target; an item at `to` is not replaced.
    Result<void> moveItemAtPath(std::string_view from, std::string_view to);
    /// Renames the file `replacement` of the located item's folder over the item, which must be no folder, and has that
    /// on the disk before it returns. A replacement that cannot take the item's place is removed.
    Result<void> replaceFile(const Located& item, const std::string& replacement);
    /// Removals::removeItemAtPath.
    Result<void> removeItemAtPath(std::string_view path) { return m_removals.removeItemAtPath(path); }
    /// By which calls the target is changed, for those who do so by descriptors.
    [[nodiscard]] SystemCalls& calls() const { return m_root.calls(); }
    /// All else that has to do with taking items away.
    [[nodiscard]] Removals& removals() { return m_removals; }
    [[nodiscard]] const Removals& removals() const { return m_removals; }

  private:
    explicit FileManager(TargetRoot root) : m_root(std::move(root)), m_removals(m_root) {}

    [[nodiscard]] Result<UniqueFd> openItem(std::string_view path, int flags) const;
    [[nodiscard]] Failure unreadable(int errorNumber, std::string_view path) const;
    [[nodiscard]] Error causeOf(Error error) const;

    mutable ReadProblems m_problems; ///< locks for itself
    TargetRoot m_root;
    Removals m_removals; ///< uses m_root
};

} // namespace sweeply
