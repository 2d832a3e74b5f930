#include "platform/Removals.h"

#include "platform/OpenInRoot.h"
#include "platform/SystemCalls.h"
#include "platform/TargetPath.h"
#include "platform/TreeRemover.h"

#include <cerrno>
#include <fcntl.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace sweeply {

namespace {

Failure failed(std::string_view path) { return Failure(systemError(errno, path)); }

} // namespace

std::string Removals::withoutKnownLinks(std::string_view path) const {
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

Result<Removals::Place> Removals::placeFor(std::string_view path) const {
    const auto refused = [&](std::string reason) {
        return Failure(Error{ErrorKind::Protected, std::string(path), std::move(reason)});
    };
    if (auto reason = m_guard.reasonAgainst(path); !reason.empty())
        return refused(std::move(reason));
    const std::string normalised = normalisedPath(path);
    const auto folder = pathWithoutLastComponent(normalised);
    std::string name(lastPathComponent(normalised));

    std::lock_guard lock(m_lastFolderMutex);
    if (!m_lastFolder.folder || m_lastFolder.path != folder) {
        std::string place = withoutKnownLinks(folder);
        UniqueFd fd(openInRoot(m_root.descriptor(), "." + place, O_PATH | O_DIRECTORY, MiddleLinks::Refuse));
        if (!fd)
            return errno == ELOOP || errno == ENOTDIR ? refused("a folder on the way is a link, or none any more")
                                                      : failed(path);
        m_lastFolder = {std::string(folder), std::move(place), std::make_shared<OpenFolder>(std::move(fd))};
    }
    if (m_lastFolder.place != folder) {
        if (auto reason = m_guard.reasonAgainst(joinedPath(m_lastFolder.place, name)); !reason.empty())
            return refused(std::move(reason));
    }
    return Place{m_lastFolder.folder, std::move(name)};
}

Result<void> Removals::refuseProtectedFolder(const Place& place, std::string_view path) const {
    struct stat status {};
    if (::fstatat(place.parent(), place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return failed(path);
    if (S_ISDIR(status.st_mode) && m_guard.isProtected({status.st_dev, status.st_ino}))
        return Failure(Error{ErrorKind::Protected, std::string(path), "a protected folder is never removed"});
    return {};
}

Result<LocatedItem> Removals::locateForRemoval(std::string_view path) const {
    auto place = placeFor(path);
    if (!place)
        return Failure(place.error());
    if (auto allowed = refuseProtectedFolder(*place, path); !allowed)
        return Failure(allowed.error());
    UniqueFd parent(::fcntl(place->parent(), F_DUPFD_CLOEXEC, 0));
    if (!parent)
        return failed(path);
    return LocatedItem{std::move(parent), std::move(place->name)};
}

Result<UniqueFd> Removals::openReferenceForRemoval(std::string_view path) const {
    auto located = locateForRemoval(path);
    if (!located)
        return Failure(located.error());
    UniqueFd fd(::openat(located->parent.get(), located->name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!fd)
        return failed(path);
    return fd;
}

std::optional<std::string> Removals::companionOf(const LocatedItem& item) const {
    return CompanionFinder(item.parent.get()).companionOf(item.name);
}

Result<void> Removals::removeItemAtPath(std::string_view path) {
    const auto place = placeFor(path);
    if (!place)
        return Failure(place.error());
    auto removed = removeAt(*place, path);
    return removed ? removeCompanion(*place, path) : removed;
}

Result<void> Removals::removeAt(const Place& place, std::string_view path) {
    // What is no folder goes here; only of folders can one be protected under another name.
    if (m_root.calls().unlinkat(place.parent(), place.name.c_str(), 0) == 0)
        return {};
    if (errno != EISDIR && errno != EPERM) // EPERM: a folder, in the words of some systems
        return failed(path);
    if (auto allowed = refuseProtectedFolder(place, path); !allowed)
        return allowed;
    auto removed = removeTree(place.parent(), place.name, m_root.calls());
    if (!removed) {
        Error error = removed.error();
        error.path = joinedPath(pathWithoutLastComponent(normalisedPath(path)), error.path);
        return Failure(std::move(error));
    }
    return {};
}

Result<void> Removals::removeCompanion(const Place& place, std::string_view path) {
    std::optional<std::string> companion;
    {
        const std::lock_guard lock(m_lastFolderMutex);
        companion = place.folder->companions.companionOf(place.name);
    }
    if (!companion || m_root.calls().unlinkat(place.parent(), companion->c_str(), 0) == 0 || errno == ENOENT)
        return {};
    return failed(joinedPath(pathWithoutLastComponent(normalisedPath(path)), *companion));
}

void Removals::forgetFoldersOfRemovals() {
    std::lock_guard lock(m_lastFolderMutex);
    m_lastFolder = {};
}

void Removals::refreshGuard() {
    std::set<RemovalGuard::Identity> identities;
    m_knownLinks.clear();
    forgetFoldersOfRemovals();
    const auto identify = [&](const std::string& path) {
        auto folder = m_root.openItem(path, O_PATH | O_DIRECTORY);
        struct stat status {};
        if (folder && ::fstat(folder->get(), &status) == 0)
            identities.emplace(status.st_dev, status.st_ino);
        return folder;
    };
    const auto look = [&](const std::string& path) {
        const auto folder = identify(path);
        if (!folder)
            return;
        auto place = m_root.placeOf(*folder, path);
        if (!place || *place == path || !place->starts_with('/'))
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
