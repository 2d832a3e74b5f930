#include "tools/rm/Eraser.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace rm {

namespace {

using sweeply::UniqueFd;

/// One after the other, each on the disk before the next.
constexpr unsigned char kPasses[] = {0xff, 0x00, 0xff};

bool fill(int fd, std::uint64_t size, unsigned char byte) {
    const std::vector<unsigned char> block(std::size_t{1} << 18U, byte);
    for (std::uint64_t at = 0; at < size;) {
        const std::size_t length = static_cast<std::size_t>(std::min<std::uint64_t>(block.size(), size - at));
        const ssize_t count = ::pwrite(fd, block.data(), length, static_cast<off_t>(at));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        at += static_cast<std::uint64_t>(count);
    }
    return ::fsync(fd) == 0;
}

/// A file's owner may make it writable again; the permission would not outlive the file anyway.
UniqueFd openForWriting(int parent, const std::string& name) {
    constexpr int kFlags = O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    UniqueFd file(::openat(parent, name.c_str(), kFlags));
    if (file || errno != EACCES)
        return file;
    const UniqueFd reference(::openat(parent, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    const std::string itself = "/proc/self/fd/" + std::to_string(reference.get());
    if (!reference || ::chmod(itself.c_str(), S_IRUSR | S_IWUSR) != 0)
        return {};
    return UniqueFd(::openat(parent, name.c_str(), kFlags));
}

std::optional<std::vector<std::string>> namesIn(const UniqueFd& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::fdopendir(::dup(folder.get())), ::closedir);
    if (!entries)
        return std::nullopt;
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = ::readdir(entries.get())) {
        const std::string name(entry->d_name);
        if (name != "." && name != "..")
            names.push_back(name);
        errno = 0;
    }
    if (errno != 0)
        return std::nullopt;
    return names;
}

} // namespace

bool Eraser::failed(const std::string& path) {
    m_complain(path, std::strerror(errno));
    return false;
}

bool Eraser::erase(int parent, const std::string& name, const std::string& path) {
    struct stat status {};
    if (::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT || failed(path);
    if (S_ISDIR(status.st_mode))
        return eraseFolder(parent, name, path);
    if (S_ISREG(status.st_mode) && !overwrite(parent, name, path))
        return false;
    return ::unlinkat(parent, name.c_str(), 0) == 0 || errno == ENOENT || failed(path);
}

bool Eraser::eraseFolder(int parent, const std::string& name, const std::string& path) {
    {
        const UniqueFd folder = m_volume.openFolder(parent, name.c_str());
        if (!folder)
            return failed(path);
        const auto names = namesIn(folder);
        if (!names)
            return failed(path);
        bool isEmpty = true;
        for (const auto& entry : *names)
            isEmpty = erase(folder.get(), entry, path + "/" + entry) && isEmpty;
        if (!isEmpty)
            return false;
    }
    return ::unlinkat(parent, name.c_str(), AT_REMOVEDIR) == 0 || failed(path);
}

bool Eraser::overwrite(int parent, const std::string& name, const std::string& path) {
    const UniqueFd file = openForWriting(parent, name);
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0)
        return failed(path);
    if (!S_ISREG(status.st_mode)) {
        m_complain(path, "became something else meanwhile");
        return false;
    }
    if (status.st_nlink > 1) {
        m_complain(path, "has another name elsewhere (a hard link) whose contents would be overwritten as well");
        return false;
    }
    for (const unsigned char pass : kPasses) {
        if (!fill(file.get(), static_cast<std::uint64_t>(status.st_size), pass))
            return failed(path);
    }
    return true;
}

} // namespace rm
