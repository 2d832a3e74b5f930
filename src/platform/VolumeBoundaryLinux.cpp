#if defined(__linux__)

#include "platform/VolumeBoundary.h"

#include <cerrno>
#include <fcntl.h>
#include <linux/openat2.h>
#include <linux/stat.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

} // namespace

VolumeBoundary::VolumeBoundary(int folder) {
    struct stat status {};
    if (::fstat(folder, &status) == 0)
        m_device = status.st_dev;
}

UniqueFd VolumeBoundary::openFolder(int parent, const char* name) const {
    if (!m_kernelChecks.load(std::memory_order_relaxed))
        return openFolderByComparing(parent, name);
    open_how how{};
    how.flags = static_cast<std::uint64_t>(kFolderFlags);
    how.resolve = RESOLVE_NO_XDEV | RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
    const long fd = ::syscall(SYS_openat2, parent, name, &how, sizeof how);
    // EPERM is how the system call filters of older containers say ENOSYS; opening a folder has no EPERM of its own.
    if (fd >= 0 || (errno != ENOSYS && errno != EPERM))
        return UniqueFd(static_cast<int>(fd));
    m_kernelChecks.store(false, std::memory_order_relaxed);
    return openFolderByComparing(parent, name);
}

UniqueFd VolumeBoundary::openFolderByComparing(int parent, const char* name) const {
    UniqueFd fd(::openat(parent, name, kFolderFlags));
    if (!fd)
        return fd;
    // The device alone would miss a folder of the same volume that is mounted a second time.
    struct statx status {};
    if (::statx(fd.get(), "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC, STATX_TYPE, &status) != 0)
        return {};
    if (makedev(status.stx_dev_major, status.stx_dev_minor) != m_device ||
        (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0) {
        fd.reset();
        errno = EXDEV;
    }
    return fd;
}

} // namespace sweeply

#endif
