#include "platform/TreeSize.h"

#include "platform/BlocksRead.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/DirectoryReader.h"
#include "platform/TargetPath.h"
#include "platform/VolumeBoundary.h"
#include "platform/WorkQueue.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace sweeply {

namespace {

/// Starting a helper costs about as much as looking at some hundred files.
constexpr unsigned kBigTree = 500;
/// From memory, more threads than processors only get in each other's way.
constexpr unsigned kHelpersFromMemory = 1;
/// How often the first worker looks whether it reads from the disk: seldom enough to cost nothing.
constexpr unsigned kFilesBetweenLooks = 64;
/// Of names: some 200 files, long enough to be worth the hand-over.
constexpr std::size_t kBatchBytes = 4096;
/// Folders below are walked by one thread with few descriptors.
constexpr std::size_t kSharedLevels = 32;
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

struct OpenFolder {
    UniqueFd fd;
    std::string path; ///< below the folder measured; empty where nobody wants to know
};
using SharedFolder = std::shared_ptr<const OpenFolder>;

/// Something of an open folder that another worker looks at.
struct Task {
    SharedFolder folder;
    std::string names; ///< each ended by a zero byte
    bool isFolder;     ///< one subfolder to walk, or else files to add
};

std::string joinedRelative(const std::string& folder, std::string_view name) {
    return folder.empty() ? std::string(name) : joinedPath(folder, name);
}

class Sum final {
  public:
    Sum(std::uint64_t block, const FolderMet& met, const std::stop_token& stop)
        : m_block(block), m_met(met), m_stop(stop) {}

    /// Before the sum: what is on another volume than this folder counts nothing.
    void stayOnVolumeOf(int folder) { m_boundary.emplace(folder); }

    MeasuredItem of(UniqueFd folder) {
        Worker worker{{}, kBigTree, kFilesBetweenLooks, {}};
        push(worker, std::move(folder), {});
        walk(worker);
        work(worker);
        return m_total += worker.total; // nobody else works any more
    }

  private:
    struct Level {
        SharedFolder folder;
        DirectoryReader reader;
        std::string batch; ///< files for somebody else, as in a task
    };

    struct Worker {
        std::vector<Level> levels;  ///< the folders it is in
        unsigned entriesBeforeHelp; ///< 0 where no help is to be called
        unsigned filesBeforeLook;   ///< at the disk; 0 for who need not look
        MeasuredItem total;
    };

    /// Does what others give until all is done.
    void work(Worker& worker) {
        while (const auto task = m_queue.take()) {
            if (task->isFolder)
                enter(worker, *task->folder, task->names.c_str());
            else
                addFiles(worker, task->folder->fd.get(), task->names);
            walk(worker);
            // Before asking for more: the last worker to do so ends the whole sum.
            const std::lock_guard lock(m_totalMutex);
            m_total += std::exchange(worker.total, {});
        }
    }

    void walk(Worker& worker) {
        while (!worker.levels.empty()) {
            if (m_stop.stop_requested()) {
                worker.levels.clear();
                worker.total.isWhole = false;
                return;
            }
            Level& level = worker.levels.back();
            const auto entry = level.reader.next();
            if (!entry) {
                if (level.reader.errorNumber() != 0)
                    worker.total.isWhole = false;
                addFiles(worker, level.folder->fd.get(), level.batch);
                worker.levels.pop_back();
                continue;
            }
            if (worker.entriesBeforeHelp > 0 && --worker.entriesBeforeHelp == 0)
                callHelp(kHelpersFromMemory);
            if (entry->type != FileType::Directory) {
                addOrGive(worker, level, entry->name);
                continue;
            }
            worker.total.identity.addEntry(entry->name);
            if (m_queue.wantsWork())
                m_queue.give({level.folder, entry->name, true});
            else
                enter(worker, *level.folder, entry->name);
        }
    }

    void addOrGive(Worker& worker, Level& level, const char* name) {
        if (level.batch.empty() && !m_queue.wantsWork()) {
            addFile(worker, level.folder->fd.get(), name);
            return;
        }
        level.batch.append(name, std::strlen(name) + 1);
        if (level.batch.size() >= kBatchBytes)
            m_queue.give({level.folder, std::exchange(level.batch, {}), false});
    }

    void addFiles(Worker& worker, int folder, const std::string& names) {
        for (std::size_t at = 0; at < names.size(); at += std::strlen(names.c_str() + at) + 1)
            addFile(worker, folder, names.c_str() + at);
    }

    void addFile(Worker& worker, int folder, const char* name) {
        if (worker.filesBeforeLook > 0 && --worker.filesBeforeLook == 0) {
            if (blocksReadByThisThread() - m_blocksReadBefore < kFewBlocks)
                worker.filesBeforeLook = kFilesBetweenLooks;
            else
                callHelp(kHelpersFromDisk);
        }
        struct stat status {};
        if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            lose(worker, errno);
        else if (!S_ISDIR(status.st_mode))
            add(worker, name, static_cast<std::uint64_t>(status.st_size), status.st_mtim);
    }

    void add(Worker& worker, std::string_view name, std::uint64_t size, timespec modified) const {
        worker.total.size += roundedUp(size, m_block);
        worker.total.identity.addEntry(name, size, modified);
    }

    /// Something could not be looked at. It is no loss when it was removed or replaced since it was listed, or when it
    /// is another volume that is passed over.
    static void lose(Worker& worker, int errorNumber) {
        if (errorNumber != ENOENT && errorNumber != ENOTDIR && errorNumber != ELOOP && errorNumber != EXDEV)
            worker.total.isWhole = false;
    }

    void enter(Worker& worker, const OpenFolder& parent, const char* name) {
        std::string path;
        if (m_met)
            m_met(path = joinedRelative(parent.path, name));
        UniqueFd fd(m_boundary ? m_boundary->openFolder(parent.fd.get(), name)
                               : UniqueFd(::openat(parent.fd.get(), name, kFolderFlags)));
        if (!fd)
            return lose(worker, errno);
        if (worker.levels.size() < kSharedLevels)
            push(worker, std::move(fd), std::move(path));
        else
            walkAlone(worker, std::move(fd), path);
    }

    static void push(Worker& worker, UniqueFd fd, std::string path) {
        const int folder = fd.get();
        worker.levels.push_back({std::make_shared<const OpenFolder>(OpenFolder{std::move(fd), std::move(path)}),
                                 DirectoryReader(folder),
                                 {}});
    }

    void walkAlone(Worker& worker, UniqueFd fd, const std::string& path) const {
        DirectoryEnumerator enumerator(std::move(fd));
        while (const auto entry = enumerator.next()) {
            if (m_stop.stop_requested()) {
                worker.total.isWhole = false;
                return;
            }
            if (entry->type == FileType::Directory) {
                worker.total.identity.addEntry(lastPathComponent(entry->path));
                if (m_boundary && !m_boundary->openFolder(enumerator.folder(), enumerator.name().c_str()) &&
                    errno == EXDEV)
                    enumerator.skipDescendants();
                if (m_met)
                    m_met(joinedRelative(path, entry->path));
            } else if (const auto attributes = enumerator.attributes()) {
                add(worker, lastPathComponent(entry->path), attributes->size, attributes->modified);
            } else if (attributes.error().kind != ErrorKind::NotFound) {
                worker.total.isWhole = false;
            }
        }
        if (enumerator.failure())
            worker.total.isWhole = false;
    }

    void callHelp(unsigned helpers) {
        m_queue.startHelpers(helpers, [this] {
            Worker helper{{}, 0, 0, {}};
            work(helper);
        });
    }

    const std::uint64_t m_block;
    const FolderMet& m_met;
    const std::stop_token& m_stop;
    std::optional<VolumeBoundary> m_boundary; ///< none where mounts are entered
    const long m_blocksReadBefore = blocksReadByThisThread();
    std::mutex m_totalMutex;
    MeasuredItem m_total;    ///< guarded by m_totalMutex while helpers work
    WorkQueue<Task> m_queue; ///< last: its helpers use the rest
};

} // namespace

MeasuredItem measureTree(UniqueFd folder, std::uint64_t block, const FolderMet& met, const std::stop_token& stop,
                         Mounts mounts) {
    Sum sum(block, met, stop);
    if (mounts == Mounts::PassOver)
        sum.stayOnVolumeOf(folder.get());
    return sum.of(std::move(folder));
}

} // namespace sweeply
