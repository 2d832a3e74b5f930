#include "platform/FileManager.h"

#include "platform/DirectoryEnumerator.h"
#include "platform/DirectoryReader.h"
#include "platform/FileStatus.h"
#include "platform/OpenInRoot.h"
#include "platform/TargetPath.h"
#include "platform/TreeRemover.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <random>
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

Result<std::unique_ptr<FileManager>> FileManager::open(const std::string& root) {
    UniqueFd fd(::open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!fd)
        return failed(root);
    auto canonical = pathOfDescriptor(fd.get(), root);
    if (!canonical)
        return Failure(canonical.error());
    return std::unique_ptr<FileManager>(new FileManager(std::move(fd), std::move(*canonical)));
}

FileManager::FileManager(UniqueFd root, std::string rootPath)
    : m_root(std::move(root)), m_rootPath(std::move(rootPath)) {}

Result<UniqueFd> FileManager::openInRoot(std::string_view path, int flags) const {
    if (!path.starts_with('/'))
        return Failure(Error{ErrorKind::Other, std::string(path), "not an absolute path"});
    if (path.find('\0') != std::string_view::npos)
        return Failure(Error{ErrorKind::Other, std::string(path), "the path holds a zero byte"});
    const std::string normalised = normalisedPath(path);
    UniqueFd fd(sweeply::openInRoot(m_root.get(), normalised == "/" ? "." : normalised.substr(1), flags));
    if (!fd)
        return failed(path);
    return fd;
}

bool FileManager::fileExistsAtPath(std::string_view path) const { return openInRoot(path, O_PATH).has_value(); }

bool FileManager::isMissingAtPath(std::string_view path) const {
    const auto found = openInRoot(path, O_PATH);
    return !found && (found.error().kind == ErrorKind::NotFound || found.error().kind == ErrorKind::WrongType);
}

bool FileManager::directoryExistsAtPath(std::string_view path) const {
    return openInRoot(path, O_PATH | O_DIRECTORY).has_value();
}

Result<FileAttributes> FileManager::attributesOfItemAtPath(std::string_view path, Links links) const {
    auto fd = openReference(path, links);
    if (!fd)
        return Failure(fd.error());
    struct stat status {};
    if (::fstat(fd->get(), &status) != 0)
        return failed(path);
    return attributesFrom(status);
}

Result<std::vector<DirectoryEntry>> FileManager::contentsOfDirectoryAtPath(std::string_view path) const {
    auto directory = openDirectory(path);
    if (!directory)
        return Failure(directory.error());
    std::vector<DirectoryEntry> entries;
    DirectoryReader reader(directory->get());
    while (const auto entry = reader.next())
        entries.push_back({std::string(entry->name), entry->type});
    if (reader.errorNumber() != 0)
        return Failure(systemError(reader.errorNumber(), path));
    return entries;
}

DirectoryEnumerator FileManager::enumeratorAtPath(std::string_view path) const {
    return DirectoryEnumerator(openDirectory(path));
}

Result<UniqueFd> FileManager::openForReading(std::string_view path) const {
    auto fd = openInRoot(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!fd)
        return fd;
    struct stat status {};
    if (::fstat(fd->get(), &status) != 0)
        return failed(path);
    if (!S_ISREG(status.st_mode))
        return Failure(Error{ErrorKind::WrongType, std::string(path), "not a regular file"});
    return fd;
}

Result<std::string> FileManager::beginningOfFileAtPath(std::string_view path, std::size_t size) const {
    const auto fd = openForReading(path);
    if (!fd)
        return Failure(fd.error());
    std::string bytes(size, '\0');
    const ssize_t length = ::pread(fd->get(), bytes.data(), size, 0);
    if (length < 0)
        return failed(path);
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

Result<std::string> FileManager::contentsAtPath(std::string_view path, std::size_t limit) const {
    const auto fd = openForReading(path);
    if (!fd)
        return Failure(fd.error());
    // The size is only a hint: the file may grow or shrink while it is read.
    std::string contents;
    for (;;) {
        constexpr std::size_t kChunk = 64 * 1024;
        const std::size_t before = contents.size();
        contents.resize(before + kChunk);
        const ssize_t length = ::read(fd->get(), contents.data() + before, kChunk);
        contents.resize(before + static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
        if (length < 0 && errno == EINTR)
            continue;
        if (length < 0)
            return failed(path);
        if (contents.size() > limit)
            return Failure(Error{ErrorKind::TooLarge, std::string(path), "larger than it may be"});
        if (length == 0)
            return contents;
    }
}

Result<std::string> FileManager::destinationOfSymbolicLinkAtPath(std::string_view path) const {
    auto fd = openReference(path, Links::DontFollow);
    if (!fd)
        return Failure(fd.error());
    std::array<char, PATH_MAX> buffer;
    const ssize_t length = ::readlinkat(fd->get(), "", buffer.data(), buffer.size());
    if (length < 0)
        return failed(path);
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

Result<UniqueFd> FileManager::openDirectory(std::string_view path) const {
    return openInRoot(path, O_RDONLY | O_DIRECTORY);
}

Result<UniqueFd> FileManager::openReference(std::string_view path, Links links) const {
    return openInRoot(path, links == Links::Follow ? O_PATH : O_PATH | O_NOFOLLOW);
}

Result<FileManager::Located> FileManager::locate(std::string_view path) const {
    const std::string normalised = normalisedPath(path);
    const auto name = lastPathComponent(normalised);
    if (name.empty() || name == "..")
        return Failure(Error{ErrorKind::Other, std::string(path), "names no item in a folder"});
    auto parent = openInRoot(normalised.starts_with('/') ? pathWithoutLastComponent(normalised) : normalised,
                             O_PATH | O_DIRECTORY);
    if (!parent)
        return Failure(Error{parent.error().kind, std::string(path), parent.error().reason});
    return Located{std::move(*parent), std::string(name)};
}

Result<std::string> FileManager::hostPath(std::string_view path) const {
    if (normalisedPath(path) == "/")
        return m_rootPath;
    auto located = locate(path);
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

Result<void> FileManager::createDirectoryAtPath(std::string_view path, mode_t mode) {
    if (directoryExistsAtPath(path))
        return {};
    auto located = locate(path);
    if (!located && located.error().kind == ErrorKind::NotFound) {
        const std::string normalised = normalisedPath(path);
        if (auto above = createDirectoryAtPath(pathWithoutLastComponent(normalised), mode); !above)
            return above;
        located = locate(path);
    }
    if (!located)
        return Failure(located.error());
    if (::mkdirat(located->parent.get(), located->name.c_str(), mode) != 0) {
        if (errno == EEXIST && directoryExistsAtPath(path))
            return {};
        return failed(path);
    }
    if (UniqueFd made(::openat(located->parent.get(), located->name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC)); made)
        giveToOwnerOf(located->parent.get(), made.get());
    return {};
}

Result<void> FileManager::createFileAtPath(std::string_view path, std::string_view contents, mode_t mode) {
    auto located = locate(path);
    if (!located)
        return Failure(located.error());
    UniqueFd fd(::openat(located->parent.get(), located->name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!fd)
        return failed(path);
    giveToOwnerOf(located->parent.get(), fd.get());
    return writeAll(fd.get(), contents, path);
}

Result<void> FileManager::writeAtomically(std::string_view path, std::string_view contents, mode_t mode) {
    auto located = locate(path);
    if (!located)
        return Failure(located.error());
    const int parent = located->parent.get();
    const std::string temporary = temporaryName(located->name);
    UniqueFd fd(::openat(parent, temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!fd)
        return failed(path);
    giveToOwnerOf(parent, fd.get());
    struct stat old {};
    if (::fstatat(parent, located->name.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(old.st_mode)) {
        (void)!::fchown(fd.get(), old.st_uid, old.st_gid); // only root can; else the new owner is who writes
        ::fchmod(fd.get(), old.st_mode & 07777);
    }
    auto written = writeAll(fd.get(), contents, path);
    if (written && ::fsync(fd.get()) != 0)
        written = failed(path);
    if (written && ::renameat(parent, temporary.c_str(), parent, located->name.c_str()) != 0)
        written = failed(path);
    if (!written) {
        ::unlinkat(parent, temporary.c_str(), 0);
        return written;
    }
    // The contents are safe; syncing the folder makes the new name survive a power cut too.
    if (UniqueFd folder(::openat(parent, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)); folder)
        ::fsync(folder.get());
    return {};
}

Result<void> FileManager::createSymbolicLinkAtPath(std::string_view path, const std::string& destination) {
    auto located = locate(path);
    if (!located)
        return Failure(located.error());
    if (::symlinkat(destination.c_str(), located->parent.get(), located->name.c_str()) != 0)
        return failed(path);
    return {};
}

Result<void> FileManager::moveItemAtPath(std::string_view from, std::string_view to) {
    if (const auto reason = m_guard.reasonAgainst(from); !reason.empty())
        return Failure(Error{ErrorKind::Protected, std::string(from), reason});
    auto source = locate(from);
    if (!source)
        return Failure(source.error());
    auto destination = locate(to);
    if (!destination)
        return Failure(destination.error());
    if (::renameat2(source->parent.get(), source->name.c_str(), destination->parent.get(), destination->name.c_str(),
                    RENAME_NOREPLACE) != 0)
        return failed(errno == EEXIST ? to : from);
    return {};
}

Result<void> FileManager::replaceFile(const Located& item, const std::string& replacement) {
    if (::renameat(item.parent.get(), replacement.c_str(), item.parent.get(), item.name.c_str()) != 0)
        return Failure(systemError(errno, item.name));
    const UniqueFd folder(::openat(item.parent.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder)
        ::fsync(folder.get()); // where a folder cannot be synced, the rename is still all or nothing
    return {};
}

std::string FileManager::withoutKnownLinks(std::string_view path) const {
    std::string known = normalisedPath(path);
    std::string rest;
    while (known.size() > 1) {
        if (const auto found = m_knownLinks.find(known); found != m_knownLinks.end())
            return rest.empty() ? found->second : joinedPath(found->second, rest);
        const std::string name(lastPathComponent(known));
        rest = rest.empty() ? name : joinedPath(name, rest);
        known = std::string(pathWithoutLastComponent(known));
    }
    return normalisedPath(path);
}

Result<FileManager::RemovalPlace> FileManager::placeForRemoval(std::string_view path) const {
    const auto refused = [&](std::string reason) {
        return Failure(Error{ErrorKind::Protected, std::string(path), std::move(reason)});
    };
    if (auto reason = m_guard.reasonAgainst(path); !reason.empty())
        return refused(std::move(reason));
    const std::string normalised = normalisedPath(path);
    const auto folder = pathWithoutLastComponent(normalised);
    std::string name(lastPathComponent(normalised));

    std::lock_guard lock(m_lastFolderMutex);
    if (!m_lastFolder.fd || m_lastFolder.path != folder) {
        std::string place = withoutKnownLinks(folder);
        UniqueFd fd(sweeply::openInRoot(m_root.get(), "." + place, O_PATH | O_DIRECTORY, MiddleLinks::Refuse));
        if (!fd)
            return errno == ELOOP || errno == ENOTDIR ? refused("a folder on the way is a link, or none any more")
                                                      : failed(path);
        m_lastFolder = {std::string(folder), std::move(place), std::make_shared<const UniqueFd>(std::move(fd))};
    }
    if (m_lastFolder.place != folder) {
        if (auto reason = m_guard.reasonAgainst(joinedPath(m_lastFolder.place, name)); !reason.empty())
            return refused(std::move(reason));
    }
    return RemovalPlace{m_lastFolder.fd, std::move(name)};
}

Result<void> FileManager::refuseProtectedFolder(const RemovalPlace& place, std::string_view path) const {
    struct stat status {};
    if (::fstatat(place.parent->get(), place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return failed(path);
    if (S_ISDIR(status.st_mode) && m_guard.isProtected({status.st_dev, status.st_ino}))
        return Failure(Error{ErrorKind::Protected, std::string(path), "a protected folder is never removed"});
    return {};
}

Result<FileManager::Located> FileManager::locateForRemoval(std::string_view path) const {
    auto place = placeForRemoval(path);
    if (!place)
        return Failure(place.error());
    if (auto allowed = refuseProtectedFolder(*place, path); !allowed)
        return Failure(allowed.error());
    UniqueFd parent(::fcntl(place->parent->get(), F_DUPFD_CLOEXEC, 0));
    if (!parent)
        return failed(path);
    return Located{std::move(parent), std::move(place->name)};
}

Result<UniqueFd> FileManager::openReferenceForRemoval(std::string_view path) const {
    auto located = locateForRemoval(path);
    if (!located)
        return Failure(located.error());
    UniqueFd fd(::openat(located->parent.get(), located->name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!fd)
        return failed(path);
    return fd;
}

Result<void> FileManager::removeItemAtPath(std::string_view path) {
    const auto place = placeForRemoval(path);
    if (!place)
        return Failure(place.error());
    // What is no folder goes here; only of folders can one be protected under another name.
    if (::unlinkat(place->parent->get(), place->name.c_str(), 0) == 0)
        return {};
    if (errno != EISDIR && errno != EPERM) // EPERM: a folder, in the words of some systems
        return failed(path);
    if (auto allowed = refuseProtectedFolder(*place, path); !allowed)
        return allowed;
    auto removed = removeTree(place->parent->get(), place->name);
    if (!removed) {
        Error error = removed.error();
        error.path = joinedPath(pathWithoutLastComponent(normalisedPath(path)), error.path);
        return Failure(std::move(error));
    }
    return {};
}

void FileManager::forgetFoldersOfRemovals() {
    std::lock_guard lock(m_lastFolderMutex);
    m_lastFolder = {};
}

void FileManager::refreshGuard() {
    std::set<RemovalGuard::Identity> identities;
    m_knownLinks.clear();
    forgetFoldersOfRemovals();
    const auto identify = [&](const std::string& path) {
        auto folder = openInRoot(path, O_PATH | O_DIRECTORY);
        struct stat status {};
        if (folder && ::fstat(folder->get(), &status) == 0)
            identities.emplace(status.st_dev, status.st_ino);
        return folder;
    };
    const auto look = [&](const std::string& path) {
        const auto folder = identify(path);
        if (!folder)
            return;
        auto place = pathOfDescriptor(folder->get(), path);
        if (!place)
            return;
        if (m_rootPath != "/")
            place->erase(0, m_rootPath.size());
        if (*place == path || !place->starts_with('/'))
            return;
        // The folders that it stands in would take it with them.
        for (auto above = pathWithoutLastComponent(*place); above.size() > 1; above = pathWithoutLastComponent(above))
            identify(std::string(above));
        m_knownLinks.emplace(path, std::move(*place));
    };
    look("/");
    for (const auto& path : m_guard.paths())
        look(path);
    m_guard.setIdentities(std::move(identities));
}

} // namespace sweeply
