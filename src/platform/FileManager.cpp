#include "platform/FileManager.h"

#include "platform/DirectoryEnumerator.h"
#include "platform/DirectoryReader.h"
#include "platform/FileStatus.h"
#include "platform/FileWriting.h"
#include "platform/TargetPath.h"
#include "platform/TemporaryFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace sweeply {

namespace {

Failure failed(std::string_view path) { return Failure(systemError(errno, path)); }

} // namespace

Result<std::unique_ptr<FileManager>> FileManager::open(const std::string& root, SystemCalls& calls) {
    auto opened = TargetRoot::open(root, calls);
    if (!opened)
        return Failure(opened.error());
    return std::unique_ptr<FileManager>(new FileManager(std::move(*opened)));
}

Failure FileManager::unreadable(int errorNumber, std::string_view path) const {
    Failure failure(systemError(errorNumber, path));
    addUnreadable(failure.value());
    return failure;
}

Error FileManager::causeOf(Error error) const {
    while (error.kind == ErrorKind::PermissionDenied) {
        const auto item = m_root.openItem(error.path, O_PATH);
        if (item || item.error().kind != ErrorKind::PermissionDenied)
            break;
        error.path = pathWithoutLastComponent(error.path);
    }
    return error;
}

Result<UniqueFd> FileManager::openItem(std::string_view path, int flags) const {
    auto item = m_root.openItem(path, flags);
    if (!item)
        addUnreadable(item.error());
    return item;
}

bool FileManager::fileExistsAtPath(std::string_view path) const { return openItem(path, O_PATH).has_value(); }

bool FileManager::isMissingAtPath(std::string_view path) const {
    const auto found = openItem(path, O_PATH);
    return !found && (found.error().kind == ErrorKind::NotFound || found.error().kind == ErrorKind::WrongType);
}

bool FileManager::directoryExistsAtPath(std::string_view path) const {
    return openItem(path, O_PATH | O_DIRECTORY).has_value();
}

Result<FileAttributes> FileManager::attributesOfItemAtPath(std::string_view path, Links links) const {
    auto fd = openReference(path, links);
    if (!fd)
        return Failure(fd.error());
    struct stat status {};
    if (::fstat(fd->get(), &status) != 0)
        return unreadable(errno, path);
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
        return unreadable(reader.errorNumber(), path);
    return entries;
}

DirectoryEnumerator FileManager::enumeratorAtPath(std::string_view path) const {
    return enumeratorAtPath(path, m_problems);
}

DirectoryEnumerator FileManager::enumeratorAtPath(std::string_view path, ReadProblems& problems) const {
    auto opened = m_root.openItem(path, O_RDONLY | O_DIRECTORY);
    if (!opened)
        problems.addFailure(causeOf(opened.error()));
    DirectoryEnumerator walk(std::move(opened), &problems, std::string(path));
    const std::string folder = joinedPath(normalisedPath(path), {});
    for (const auto& tree : m_removals.guard().trees()) {
        if (tree.starts_with(folder))
            walk.leaveOut(tree.substr(folder.size()));
    }
    return walk;
}

Result<UniqueFd> FileManager::openForReading(std::string_view path, Links links) const {
    auto fd = openItem(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | (links == Links::Follow ? 0 : O_NOFOLLOW));
    if (!fd)
        return fd;
    struct stat status {};
    if (::fstat(fd->get(), &status) != 0)
        return unreadable(errno, path);
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
        return unreadable(errno, path);
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

Result<std::string> FileManager::contentsAtPath(std::string_view path, std::size_t limit) const {
    const auto fd = openForReading(path);
    if (!fd)
        return Failure(fd.error());
    // The size would only be a hint: the file may grow or shrink while it is read. Most are property lists that leave
    // room in the first chunk, so that the read which finds the end needs no other.
    constexpr std::size_t kFirstChunk = 4 * 1024;
    constexpr std::size_t kChunk = 64 * 1024;
    std::string contents(kFirstChunk, '\0');
    std::size_t length = 0;
    for (;;) {
        if (length == contents.size())
            contents.resize(length + kChunk);
        const ssize_t more = ::read(fd->get(), contents.data() + length, contents.size() - length);
        if (more < 0 && errno == EINTR)
            continue;
        if (more < 0)
            return unreadable(errno, path);
        length += static_cast<std::size_t>(more);
        if (length > limit)
            return Failure(Error{ErrorKind::TooLarge, std::string(path), "larger than it may be"});
        if (more == 0)
            break;
    }
    contents.resize(length);
    return contents;
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
    return openItem(path, O_RDONLY | O_DIRECTORY);
}

Result<UniqueFd> FileManager::openReference(std::string_view path, Links links) const {
    return openItem(path, links == Links::Follow ? O_PATH : O_PATH | O_NOFOLLOW);
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
    auto made = makeFolder(calls(), *located, mode, path);
    if (!made && made.error().kind == ErrorKind::AlreadyExists && directoryExistsAtPath(path))
        return {};
    return made;
}

Result<void> FileManager::createFileAtPath(std::string_view path, std::string_view contents, mode_t mode) {
    const auto located = locate(path);
    return located ? makeFile(calls(), *located, contents, mode, path) : Failure(located.error());
}

Result<void> FileManager::writeAtomically(std::string_view path, std::string_view contents, mode_t mode) {
    auto located = locate(path);
    return located ? replaceContents(calls(), std::move(*located), contents, mode, path) : Failure(located.error());
}

void FileManager::sweepTemporaryFilesAtPath(std::string_view path,
                                            const std::function<bool(const std::string&)>& mayGo) {
    if (const auto folder = openDirectory(path))
        sweepTemporaryFiles(folder->get(), mayGo);
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
    if (const auto reason = m_removals.guard().reasonAgainst(from); !reason.empty())
        return Failure(Error{ErrorKind::Protected, std::string(from), reason});
    auto source = locate(from);
    if (!source)
        return Failure(source.error());
    auto destination = locate(to);
    if (!destination)
        return Failure(destination.error());
    if (calls().renameat2(source->parent.get(), source->name.c_str(), destination->parent.get(),
                          destination->name.c_str()) != 0)
        return failed(errno == EEXIST ? to : from);
    return {};
}

Result<void> FileManager::replaceFile(const Located& item, const std::string& replacement) {
    return renameOver(calls(), item, replacement, item.name);
}

} // namespace sweeply
