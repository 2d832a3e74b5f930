#include "platform/TargetRoot.h"

#include "platform/OpenInRoot.h"
#include "platform/TargetPath.h"

#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sweeply {

namespace {

Failure failed(std::string_view path) { return Failure(systemError(errno, path)); }

Result<std::string> pathOfDescriptor(int fd, std::string_view path) {
    std::array<char, PATH_MAX> buffer;
    const ssize_t length = ::readlink(("/proc/self/fd/" + std::to_string(fd)).c_str(), buffer.data(), buffer.size());
    if (length < 0)
        return failed(path);
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

} // namespace

Result<TargetRoot> TargetRoot::open(const std::string& root, SystemCalls& calls) {
    UniqueFd fd(::open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!fd)
        return failed(root);
    auto canonical = pathOfDescriptor(fd.get(), root);
    if (!canonical)
        return Failure(canonical.error());
    return TargetRoot(std::move(fd), std::move(*canonical), calls);
}

Result<UniqueFd> TargetRoot::openItem(std::string_view path, int flags) const {
    if (!path.starts_with('/'))
        return Failure(Error{ErrorKind::Other, std::string(path), "not an absolute path"});
    if (path.find('\0') != std::string_view::npos)
        return Failure(Error{ErrorKind::Other, std::string(path), "the path holds a zero byte"});
    const std::string normalised = normalisedPath(path);
    UniqueFd fd(openInRoot(m_fd.get(), normalised == "/" ? "." : normalised.substr(1), flags));
    if (!fd)
        return failed(path);
    return fd;
}

Result<LocatedItem> TargetRoot::locate(std::string_view path) const {
    const std::string normalised = normalisedPath(path);
    const auto name = lastPathComponent(normalised);
    if (name.empty() || name == "..")
        return Failure(Error{ErrorKind::Other, std::string(path), "names no item in a folder"});
    auto parent =
        openItem(normalised.starts_with('/') ? pathWithoutLastComponent(normalised) : normalised, O_PATH | O_DIRECTORY);
    if (!parent)
        return Failure(Error{parent.error().kind, std::string(path), parent.error().reason});
    return LocatedItem{std::move(*parent), std::string(name)};
}

Result<std::string> TargetRoot::hostPath(std::string_view path) const {
    if (normalisedPath(path) == "/")
        return m_path;
    const auto located = locate(path);
    if (!located)
        return Failure(located.error());
    struct stat status {};
    if (::fstatat(located->parent.get(), located->name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return failed(path);
    auto parent = pathOfDescriptor(located->parent.get(), path);
    if (!parent)
        return parent;
    return joinedPath(*parent, located->name);
}

Result<std::string> TargetRoot::placeOf(const UniqueFd& item, std::string_view path) const {
    auto place = pathOfDescriptor(item.get(), path);
    if (place && m_path != "/")
        place->erase(0, m_path.size());
    return place;
}

} // namespace sweeply
