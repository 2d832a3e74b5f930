#include "platform/TreeRemover.h"

#include "platform/DirectoryReader.h"
#include "platform/UniqueFd.h"
#include "platform/VolumeBoundary.h"
#include "platform/WorkQueue.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace sweeply {

namespace {

/// Folders so near to the top stay open while anything of them is left, and only their contents are shared with the
/// helper. Below, one folder is open at a time and the one above is found again by "..".
constexpr unsigned kOpenDepth = 32;
/// A thread costs as much as some dozen removals; a tree with fewer entries than this is done sooner without.
constexpr unsigned kBigTree = 400;
constexpr unsigned kHelpers = 1;
constexpr std::size_t kFilesGiven = 256;
constexpr std::size_t kFoldersGiven = 16;
/// How often a folder is listed again when it turns out not to be empty: somebody still writes there, or the file
/// system skipped entries because others were removed while they were read.
constexpr int kListings = 16;

struct Folder {
    Folder* parent; ///< outlives this one; null for the folder that holds the item
    std::string name;
    UniqueFd fd; ///< closed from time to time below kOpenDepth
    unsigned depth;
    std::atomic<unsigned> users = 1;  ///< shares of its contents that are left, and subfolders under way
    std::atomic<bool> isKept = false; ///< something in it could not be removed
    int listings = 0;
    dev_t device = 0; ///< valid while closed
    ino_t inode = 0;

    Folder(Folder* above, std::string itsName, UniqueFd itsFd)
        : parent(above), name(std::move(itsName)), fd(std::move(itsFd)), depth(above ? above->depth + 1 : 0) {}

    [[nodiscard]] bool staysOpen() const { return depth <= kOpenDepth; }
};

/// A part of a folder's contents that one worker removes.
struct Share {
    Folder* folder;
    std::vector<std::string> files;
    std::vector<std::string> folders;
};

class Remover final {
  public:
    Remover(int parent, SystemCalls& calls)
        : m_calls(calls), m_volume(parent), m_base(nullptr, {}, UniqueFd(::dup(parent))) {}

    Result<void> remove(const std::string& name) {
        Worker worker{{}, kBigTree};
        worker.shares.push_back({&m_base, {}, {name}});
        removeShares(worker);
        work(worker);
        const std::lock_guard lock(m_errorMutex);
        if (m_error)
            return Failure(std::move(*m_error));
        return {};
    }

  private:
    struct Worker {
        std::vector<Share> shares;  ///< under way, the deepest last
        unsigned entriesBeforeHelp; ///< 0 where no help is to be called
    };

    void work(Worker& worker) {
        while (auto share = m_queue.take()) {
            worker.shares.push_back(std::move(*share));
            removeShares(worker);
        }
    }

    void removeShares(Worker& worker) {
        while (!worker.shares.empty()) {
            Share& share = worker.shares.back();
            for (const std::string& name : share.files)
                removeFile(*share.folder, name.c_str(), share.folders);
            share.files.clear();
            if (share.folders.empty()) {
                Folder* folder = share.folder;
                worker.shares.pop_back();
                release(folder, worker);
                continue;
            }
            if (share.folders.size() > 1 && share.folder->staysOpen() && m_queue.wantsWork())
                giveFolders(share);
            const std::string name = std::move(share.folders.back());
            share.folders.pop_back();
            enter(*share.folder, name, worker);
        }
    }

    void giveFolders(Share& share) {
        const std::size_t count = std::min(kFoldersGiven, share.folders.size() / 2);
        const auto first = share.folders.end() - static_cast<std::ptrdiff_t>(count);
        Share given{share.folder, {}, {std::make_move_iterator(first), std::make_move_iterator(share.folders.end())}};
        share.folders.erase(first, share.folders.end());
        give(std::move(given));
    }

    void give(Share share) {
        share.folder->users.fetch_add(1, std::memory_order_relaxed);
        m_queue.give(std::move(share));
    }

    void removeFile(Folder& folder, const char* name, std::vector<std::string>& folders) {
        if (m_calls.unlinkat(folder.fd.get(), name, 0) == 0 || errno == ENOENT)
            return;
        // A folder by now. Some systems say EPERM then; entering will tell.
        if (errno == EISDIR || errno == EPERM)
            folders.emplace_back(name);
        else
            fail(errno, folder, name);
    }

    void enter(Folder& parent, const std::string& name, Worker& worker) {
        UniqueFd fd = m_volume.openFolder(parent.fd.get(), name.c_str());
        if (!fd) {
            const int reason = errno;
            // A file or a link has its place now, or it cannot be read: an empty folder can be removed all the same.
            const int flags = reason == ENOTDIR || reason == ELOOP ? 0 : AT_REMOVEDIR;
            if (reason != ENOENT && (reason == EXDEV || m_calls.unlinkat(parent.fd.get(), name.c_str(), flags) != 0))
                fail(flags == 0 ? errno : reason, parent, name.c_str());
            return;
        }
        parent.users.fetch_add(1, std::memory_order_relaxed);
        auto folder = std::make_unique<Folder>(&parent, name, std::move(fd));
        if (!parent.staysOpen())
            close(parent);
        list(folder.release(), worker); // release() deletes it with its last user
    }

    /// Removes the files of a folder just opened and puts its subfolders on the worker's list.
    void list(Folder* folder, Worker& worker) {
        ++folder->listings;
        Share share{folder, {}, {}};
        std::vector<std::string> batch;
        DirectoryReader reader(folder->fd.get());
        while (const auto entry = reader.next()) {
            if (worker.entriesBeforeHelp > 0 && --worker.entriesBeforeHelp == 0)
                callHelp();
            if (entry->type == FileType::Directory)
                share.folders.emplace_back(entry->name);
            else if (batch.empty() && !(folder->staysOpen() && m_queue.wantsWork()))
                removeFile(*folder, entry->name, share.folders);
            else
                batch.emplace_back(entry->name);
            if (batch.size() == kFilesGiven)
                give({folder, std::exchange(batch, {}), {}});
        }
        if (reader.errorNumber() != 0)
            fail(reader.errorNumber(), *folder, nullptr);
        share.files = std::move(batch);
        worker.shares.push_back(std::move(share));
    }

    void callHelp() {
        m_queue.startHelpers(kHelpers, [this] {
            Worker helper{{}, 0};
            work(helper);
        });
    }

    /// Gives up one use of `folder`. The last user removes the folder itself and so gives up a use of the one above.
    void release(Folder* folder, Worker& worker) {
        while (folder->users.fetch_sub(1, std::memory_order_acq_rel) == 1 && folder->parent) {
            std::unique_ptr<Folder> owner(folder);
            if (!removeEmptied(*folder)) {
                folder->users = 1;
                list(owner.release(), worker);
                return;
            }
            folder = folder->parent;
        }
    }

    /// False if the folder must be listed again.
    bool removeEmptied(Folder& folder) {
        Folder& parent = *folder.parent;
        if (!parent.fd && !reopen(parent, folder))
            return true;
        if (folder.isKept) {
            parent.isKept = true;
            return true;
        }
        if (m_calls.unlinkat(parent.fd.get(), folder.name.c_str(), AT_REMOVEDIR) == 0 || errno == ENOENT)
            return true;
        if ((errno == ENOTEMPTY || errno == EEXIST) && folder.listings < kListings)
            return false;
        // Whatever took its place belongs to the tree as well.
        if (errno != ENOTDIR || (m_calls.unlinkat(parent.fd.get(), folder.name.c_str(), 0) != 0 && errno != ENOENT))
            fail(errno, parent, folder.name.c_str());
        return true;
    }

    static void close(Folder& folder) {
        struct stat status {};
        if (::fstat(folder.fd.get(), &status) != 0)
            return;
        folder.device = status.st_dev;
        folder.inode = status.st_ino;
        folder.fd.reset();
    }

    /// Opens `folder` again from one of its subfolders, unless that was moved elsewhere meanwhile.
    bool reopen(Folder& folder, const Folder& below) {
        UniqueFd fd(::openat(below.fd.get(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        struct stat status {};
        if (!fd || ::fstat(fd.get(), &status) != 0 || status.st_dev != folder.device || status.st_ino != folder.inode) {
            fail(fd ? ENOENT : errno, folder, nullptr);
            return false;
        }
        folder.fd = std::move(fd);
        return true;
    }

    /// Remembers the first failure and keeps `folder`. `name` is the entry of it that failed, or null for itself.
    void fail(int errorNumber, Folder& folder, const char* name) {
        folder.isKept = true;
        const std::lock_guard lock(m_errorMutex);
        if (m_error)
            return;
        std::string path = name ? name : "";
        for (const Folder* above = &folder; above->parent; above = above->parent)
            path.insert(0, path.empty() ? above->name : above->name + '/');
        m_error = systemError(errorNumber, path);
        if (errorNumber == EXDEV)
            m_error = Error{ErrorKind::Protected, m_error->path, "something is mounted there"};
    }

    SystemCalls& m_calls;
    const VolumeBoundary m_volume;
    std::mutex m_errorMutex;
    std::optional<Error> m_error; ///< guarded by m_errorMutex
    Folder m_base;
    WorkQueue<Share> m_queue; ///< last: its helpers use the rest
};

} // namespace

Result<void> removeTree(int parent, const std::string& name, SystemCalls& calls) {
    if (calls.unlinkat(parent, name.c_str(), 0) == 0)
        return {};
    if (errno != EISDIR && errno != EPERM) // EPERM: a folder, in the words of some systems
        return Failure(systemError(errno, name));
    return Remover(parent, calls).remove(name);
}

} // namespace sweeply
