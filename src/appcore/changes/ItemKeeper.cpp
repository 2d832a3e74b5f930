#include "appcore/changes/ItemKeeper.h"

#include "appcore/PrivilegedExecution.h"
#include "platform/FileManager.h"
#include "platform/SystemCalls.h"
#include "platform/TargetPath.h"
#include "platform/TreeRemover.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace sweeply {

namespace {

constexpr mode_t kPrivate = 0700;

std::string keptPath(const std::string& part, const std::string& folder) {
    return joinedPath(folder, lastPathComponent(part));
}

bool isThere(const LocatedItem& item) {
    struct stat status {};
    return ::fstatat(item.parent.get(), item.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

Failure cannotBeKept(const std::string& path, const std::string& why) {
    return Failure(Error{ErrorKind::Unavailable, path, "cannot be kept: " + why});
}

} // namespace

Result<void> ItemKeeper::prepare(const std::vector<std::string>& parts, const std::string& folder) {
    for (const std::string& made : {std::string(pathWithoutLastComponent(pathWithoutLastComponent(folder))),
                                    std::string(pathWithoutLastComponent(folder)), folder}) {
        if (const auto done = m_files.createDirectoryAtPath(made, kPrivate); !done)
            return cannotBeKept(parts.empty() ? folder : parts.front(), done.error().reason);
    }
    const auto keeps = m_files.attributesOfItemAtPath(folder, Links::DontFollow);
    for (const auto& part : parts) {
        const auto item = m_files.removals().locateForRemoval(part);
        if (!item)
            return Failure(item.error());
        const auto attributes = m_files.attributesOfItemAtPath(part, Links::DontFollow);
        if (!attributes)
            return Failure(attributes.error());
        if (!keeps || keeps->type != FileType::Directory || keeps->device != attributes->device)
            return cannotBeKept(part, "it is not on the volume of the home folder");
    }
    return {};
}

std::vector<ParentFolder> ItemKeeper::parentsOf(const std::string& path) const {
    std::vector<ParentFolder> parents;
    for (auto above = pathWithoutLastComponent(path); above.size() > 1; above = pathWithoutLastComponent(above)) {
        if (const auto attributes = m_files.attributesOfItemAtPath(above, Links::Follow))
            parents.push_back({std::string(above), attributes->mode, attributes->owner, attributes->group});
    }
    std::ranges::reverse(parents);
    return parents;
}

Result<void> ItemKeeper::move(const LocatedItem& from, const LocatedItem& to, const std::string& path) {
    auto& calls = m_files.calls();
    if (calls.renameat2(from.parent.get(), from.name.c_str(), to.parent.get(), to.name.c_str()) == 0)
        return {};
    const auto error = systemError(errno, path);
    if (error.kind != ErrorKind::PermissionDenied || !m_privileged.isAuthorised())
        return Failure(error);
    // From the item's own folder, held open, into one that is held open too.
    const std::string place =
        "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(to.parent.get()) + "/" + to.name;
    (void)m_privileged.executeCommandWithPrivilidges("/bin/mv", {"-n", "./" + from.name, place}, from.parent.get());
    // Whatever the tool says.
    return isThere(to) && !isThere(from) ? Result<void>() : Failure(error);
}

Result<void> ItemKeeper::moveAway(const KeptItem& item, const std::string& folder) {
    for (const auto& part : item.parts) {
        const auto from = m_files.removals().locateForRemoval(part);
        if (!from)
            return Failure(from.error());
        const auto to = m_files.locate(keptPath(part, folder));
        if (!to)
            return Failure(to.error());
        if (const auto moved = move(*from, *to, part); !moved) {
            // Without the first part nothing has happened; what belongs to it may stay behind.
            if (&part == &item.parts.front()) {
                removeEmpty(folder);
                return moved;
            }
        }
    }
    return {};
}

Result<void> ItemKeeper::makeParents(const KeptItem& item) {
    auto& calls = m_files.calls();
    for (const auto& parent : item.parents) {
        if (m_files.directoryExistsAtPath(parent.path))
            continue;
        const auto place = m_files.locate(parent.path);
        if (!place)
            return Failure(place.error());
        if (calls.mkdirat(place->parent.get(), place->name.c_str(), kPrivate) != 0)
            return Failure(systemError(errno, parent.path));
        const UniqueFd made(
            ::openat(place->parent.get(), place->name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!made || (::geteuid() == 0 && calls.fchown(made.get(), parent.owner, parent.group) != 0) ||
            calls.fchmod(made.get(), parent.mode & 07777) != 0)
            return Failure(systemError(errno, parent.path));
    }
    return {};
}

Result<void> ItemKeeper::moveBack(const KeptItem& item, const std::string& folder) {
    if (!isKept(item, folder))
        return Failure(Error{ErrorKind::NotFound, item.path, "is not kept any more"});
    if (const auto made = makeParents(item); !made)
        return made;
    // The first part last: until it is back the item is kept.
    for (auto part = item.parts.rbegin(); part != item.parts.rend(); ++part) {
        const auto from = m_files.locate(keptPath(*part, folder));
        if (!from)
            return Failure(from.error());
        if (!isThere(*from))
            continue;
        const auto to = m_files.locate(*part);
        if (!to)
            return Failure(to.error());
        if (const auto moved = move(*from, *to, *part); !moved)
            return moved;
    }
    removeEmpty(folder);
    return {};
}

void ItemKeeper::removeEmpty(const std::string& folder) {
    if (const auto place = m_files.locate(folder))
        (void)m_files.calls().unlinkat(place->parent.get(), place->name.c_str(), AT_REMOVEDIR);
}

Result<void> ItemKeeper::purge(const std::string& folder) {
    const auto place = m_files.locate(folder);
    if (!place)
        return Failure(place.error());
    auto removed = removeTree(place->parent.get(), place->name, m_files.calls());
    if (!removed && removed.error().kind != ErrorKind::NotFound && m_privileged.isAuthorised()) {
        (void)m_privileged.executeCommandWithPrivilidges("/bin/rm", {"-rf", "./" + place->name}, place->parent.get());
        if (!isThere(*place))
            removed = {};
    }
    if (removed || removed.error().kind == ErrorKind::NotFound)
        return {};
    Error error = removed.error();
    error.path = joinedPath(pathWithoutLastComponent(folder), error.path);
    return Failure(std::move(error));
}

bool ItemKeeper::isKept(const KeptItem& item, const std::string& folder) const {
    return !item.parts.empty() &&
           m_files.attributesOfItemAtPath(keptPath(item.parts.front(), folder), Links::DontFollow).has_value();
}

} // namespace sweeply
