#if !defined(__linux__)

#include "platform/VolumeBoundary.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace sweeply {

VolumeBoundary::VolumeBoundary(int folder) {
    struct stat status {};
    if (::fstat(folder, &status) == 0)
        m_device = status.st_dev;
}

UniqueFd VolumeBoundary::openFolder(int parent, const char* name) const { return openFolderByComparing(parent, name); }

UniqueFd VolumeBoundary::openFolderByComparing(int parent, const char* name) const {
    UniqueFd fd(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (fd && (::fstat(fd.get(), &status) != 0 || status.st_dev != m_device)) {
        fd.reset();
        errno = EXDEV;
    }
    return fd;
}

} // namespace sweeply

#endif
