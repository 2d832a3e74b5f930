#include "tools/ditto/Copy.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace ditto {

Failure Failure::ofSystem(const std::string& path) { return Failure(path + ": " + std::strerror(errno)); }

NewFile::NewFile(std::string path) : m_path(std::move(path)) {
    constexpr mode_t kOwnerOnly = 0600;
    if (::unlink(m_path.c_str()) != 0 && errno != ENOENT)
        throw Failure::ofSystem(m_path);
    m_fd = ::open(m_path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly);
    if (m_fd < 0)
        throw Failure::ofSystem(m_path);
}

NewFile::~NewFile() {
    ::close(m_fd);
    if (!m_isKept)
        ::unlink(m_path.c_str());
}

void NewFile::write(const std::string& bytes, std::uint64_t offset) const {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count =
            ::pwrite(m_fd, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            throw Failure::ofSystem(m_path);
        done += static_cast<std::size_t>(count);
    }
}

void NewFile::copyFrom(int source, std::uint64_t from, std::uint64_t size, std::uint64_t to) const {
    constexpr std::uint64_t kAtOnce = std::uint64_t{1} << 20U;
    std::string buffer;
    while (size > 0) {
#if defined(__linux__)
        if (buffer.empty()) {
            auto in = static_cast<off64_t>(from);
            auto out = static_cast<off64_t>(to);
            const ssize_t count = ::copy_file_range(source, &in, m_fd, &out, size, 0);
            if (count > 0) {
                const auto copied = static_cast<std::uint64_t>(count);
                from += copied;
                to += copied;
                size -= copied;
                continue;
            }
            if (count < 0 && (errno == ENOSPC || errno == EIO || errno == EDQUOT))
                throw Failure::ofSystem(m_path);
        }
#endif
        buffer.resize(static_cast<std::size_t>(std::min(size, kAtOnce)));
        const ssize_t count = ::pread(source, buffer.data(), buffer.size(), static_cast<off_t>(from));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw Failure::ofSystem(m_path);
        if (count == 0)
            throw Failure("the file became shorter while it was copied");
        buffer.resize(static_cast<std::size_t>(count));
        write(buffer, to);
        from += buffer.size();
        to += buffer.size();
        size -= buffer.size();
    }
}

void NewFile::takeAttributesFrom(int source) const {
    struct stat wanted {};
    struct stat given {};
    if (::fstat(source, &wanted) != 0 || ::fstat(m_fd, &given) != 0)
        throw Failure::ofSystem(m_path);
    if ((given.st_uid != wanted.st_uid || given.st_gid != wanted.st_gid) &&
        ::fchown(m_fd, wanted.st_uid, wanted.st_gid) != 0)
        throw Failure::ofSystem(m_path);
    const ssize_t length = ::flistxattr(source, nullptr, 0);
    std::string names(static_cast<std::size_t>(std::max<ssize_t>(length, 0)), '\0');
    if (length > 0 && ::flistxattr(source, names.data(), names.size()) != length)
        throw Failure::ofSystem(m_path);
    for (std::size_t at = 0; at < names.size(); at += std::strlen(names.c_str() + at) + 1) {
        const char* name = names.c_str() + at;
        const ssize_t size = ::fgetxattr(source, name, nullptr, 0);
        std::vector<char> value(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        if (size < 0 || ::fgetxattr(source, name, value.data(), value.size()) != size ||
            ::fsetxattr(m_fd, name, value.data(), value.size(), 0) != 0)
            throw Failure::ofSystem(m_path + " (attribute " + name + ")");
    }
    // After the owner, whose change takes such bits away.
    if (::fchmod(m_fd, wanted.st_mode & 07777U) != 0)
        throw Failure::ofSystem(m_path);
    const timespec times[] = {wanted.st_atim, wanted.st_mtim};
    if (::futimens(m_fd, times) != 0)
        throw Failure::ofSystem(m_path);
}

void NewFile::keep() {
    if (::fsync(m_fd) != 0)
        throw Failure::ofSystem(m_path);
    m_isKept = true;
}

} // namespace ditto
