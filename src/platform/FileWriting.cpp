#include "platform/FileWriting.h"

#include "platform/SystemCalls.h"
#include "platform/TemporaryFiles.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace sweeply {

namespace {

Failure failed(std::string_view path) { return Failure(systemError(errno, path)); }

} // namespace

Result<void> makeFolder(SystemCalls& calls, const LocatedItem& item, mode_t mode, std::string_view path) {
    if (calls.mkdirat(item.parent.get(), item.name.c_str(), mode) != 0)
        return failed(path);
    if (UniqueFd made(::openat(item.parent.get(), item.name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC)); made)
        giveToOwnerOf(calls, item.parent.get(), made.get());
    return {};
}

Result<void> makeFile(SystemCalls& calls, const LocatedItem& item, std::string_view contents, mode_t mode,
                      std::string_view path) {
    UniqueFd fd(calls.create(item.parent.get(), item.name.c_str(), O_WRONLY, mode));
    if (!fd)
        return failed(path);
    giveToOwnerOf(calls, item.parent.get(), fd.get());
    return writeAll(calls, fd.get(), contents, path);
}

Result<void> replaceContents(SystemCalls& calls, LocatedItem item, std::string_view contents, mode_t mode,
                             std::string_view path) {
    auto fresh = TemporaryFile::make(calls, std::move(item), mode, path);
    if (!fresh)
        return Failure(fresh.error());
    struct stat old {};
    if (::fstatat(fresh->item().parent.get(), fresh->item().name.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISREG(old.st_mode)) {
        (void)!calls.fchown(fresh->descriptor(), old.st_uid,
                            old.st_gid); // only root can; else the new owner is who writes
        if (calls.fchmod(fresh->descriptor(), old.st_mode & 07777) != 0)
            return failed(path);
    }
    if (auto written = fresh->write(contents, path); !written)
        return written;
    return fresh->replaceItem(path);
}

Result<void> renameOver(SystemCalls& calls, const LocatedItem& item, const std::string& replacement,
                        std::string_view path) {
    if (calls.renameat(item.parent.get(), replacement.c_str(), item.parent.get(), item.name.c_str()) != 0) {
        auto failure = failed(path);
        calls.unlinkat(item.parent.get(), replacement.c_str(), 0);
        return failure;
    }
    // The contents are safe; syncing the folder makes the new name survive a power cut too. Where a folder cannot be
    // synced, the rename is still all or nothing.
    if (UniqueFd folder(::openat(item.parent.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)); folder)
        calls.fsync(folder.get());
    return {};
}

Result<void> writeAll(SystemCalls& calls, int fd, std::string_view contents, std::string_view path) {
    while (!contents.empty()) {
        const ssize_t written = calls.write(fd, contents.data(), contents.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return failed(path);
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

void giveToOwnerOf(SystemCalls& calls, int folder, int fd) {
    struct stat status {};
    if (::geteuid() == 0 && ::fstat(folder, &status) == 0)
        (void)!calls.fchown(fd, status.st_uid, status.st_gid);
}

} // namespace sweeply
