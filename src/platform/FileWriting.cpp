#include "platform/FileWriting.h"

#include <cerrno>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace sweeply {

namespace {

Failure failed(std::string_view path) { return Failure(systemError(errno, path)); }

Result<void> writeAll(int fd, std::string_view contents, std::string_view path) {
    while (!contents.empty()) {
        const ssize_t written = ::write(fd, contents.data(), contents.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return failed(path);
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

/// What root makes in somebody's folder belongs to that somebody: a preferences file that its user cannot write again
/// would be lost to them.
void giveToOwnerOf(int parent, int fd) {
    struct stat status {};
    if (::geteuid() == 0 && ::fstat(parent, &status) == 0)
        (void)!::fchown(fd, status.st_uid, status.st_gid);
}

std::string temporaryName(const std::string& name) {
    static constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::string result = ".";
    result += name.substr(0, 200); // leaves room below the 255 bytes that a name may have
    result += ".sweeply-";
    for (int i = 0; i < 8; ++i)
        result += kLetters[random() % kLetters.size()];
    return result;
}

} // namespace

Result<void> makeFolder(const LocatedItem& item, mode_t mode, std::string_view path) {
    if (::mkdirat(item.parent.get(), item.name.c_str(), mode) != 0)
        return failed(path);
    if (UniqueFd made(::openat(item.parent.get(), item.name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC)); made)
        giveToOwnerOf(item.parent.get(), made.get());
    return {};
}

Result<void> makeFile(const LocatedItem& item, std::string_view contents, mode_t mode, std::string_view path) {
    UniqueFd fd(::openat(item.parent.get(), item.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!fd)
        return failed(path);
    giveToOwnerOf(item.parent.get(), fd.get());
    return writeAll(fd.get(), contents, path);
}

Result<void> replaceContents(const LocatedItem& item, std::string_view contents, mode_t mode, std::string_view path) {
    const int parent = item.parent.get();
    const std::string temporary = temporaryName(item.name);
    UniqueFd fd(::openat(parent, temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!fd)
        return failed(path);
    giveToOwnerOf(parent, fd.get());
    struct stat old {};
    if (::fstatat(parent, item.name.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(old.st_mode)) {
        (void)!::fchown(fd.get(), old.st_uid, old.st_gid); // only root can; else the new owner is who writes
        ::fchmod(fd.get(), old.st_mode & 07777);
    }
    auto written = writeAll(fd.get(), contents, path);
    if (written && ::fsync(fd.get()) != 0)
        written = failed(path);
    if (written)
        written = renameOver(item, temporary, path);
    if (!written)
        ::unlinkat(parent, temporary.c_str(), 0);
    return written;
}

Result<void> renameOver(const LocatedItem& item, const std::string& replacement, std::string_view path) {
    if (::renameat(item.parent.get(), replacement.c_str(), item.parent.get(), item.name.c_str()) != 0)
        return failed(path);
    // The contents are safe; syncing the folder makes the new name survive a power cut too. Where a folder cannot be
    // synced, the rename is still all or nothing.
    if (UniqueFd folder(::openat(item.parent.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)); folder)
        ::fsync(folder.get());
    return {};
}

} // namespace sweeply
