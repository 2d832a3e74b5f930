#include "appcore/changes/FileChanges.h"

#include "appcore/PrivilegedExecution.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/Process.h"
#include "platform/TargetPath.h"
#include "platform/ToolTable.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace sweeply {

namespace {

/// The text as it must stand between double quotes for the shell to see exactly it. Without double quotes itself: those
/// are refused before.
std::string escapedForShell(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '$' || c == '`' || c == '\\')
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

/// A name that no tool takes for an option, seen from the item's own folder.
std::string seenFromItsFolder(const std::string& name) { return "./" + name; }

Failure breaksTheShellForm(const std::string& path) {
    return Failure(Error{ErrorKind::Other, path, "a name with a double quote breaks the shell form"});
}

} // namespace

Result<void> FileChanges::remove(const std::string& path) {
    auto removed = m_files.removeItemAtPath(path);
    if (removed || removed.error().kind == ErrorKind::NotFound || removed.error().kind == ErrorKind::Protected ||
        !m_privileged.isAuthorised())
        return removed;
    const auto item = m_files.removals().locateForRemoval(path);
    if (!item) // the item itself is gone where its companion is what stayed
        return item.error().kind == ErrorKind::NotFound ? removed : Failure(item.error());
    // From the item's own folder, held open: nobody can put another one in its place on the way to the tool.
    const auto remove = [&](const std::string& name) {
        return m_privileged.executeCommandWithPrivilidges("/bin/rm", {"-rf", seenFromItsFolder(name)},
                                                          item->parent.get());
    };
    if (!remove(item->name))
        return removed;
    // The tool has ended, but a person was promised that what is reported as removed is gone.
    if (m_files.attributesOfItemAtPath(path, Links::DontFollow))
        return Failure(Error{ErrorKind::Other, path, "still there after a removal with administrator rights"});
    return removeCompanion(path, *item, remove);
}

Result<void> FileChanges::removeCompanion(const std::string& path, const LocatedItem& item,
                                          const std::function<bool(const std::string& name)>& remove) const {
    const auto companion = m_files.removals().companionOf(item);
    if (!companion || (remove(*companion) && !m_files.removals().companionOf(item)))
        return {};
    return Failure(Error{ErrorKind::Other, joinedPath(pathWithoutLastComponent(path), *companion),
                         "still there after the item that it belongs to is gone"});
}

Result<void> FileChanges::overwrite(const std::string& path) {
    const auto item = m_files.removals().locateForRemoval(path);
    if (!item)
        return Failure(item.error());
    if (!m_privileged.isAuthorised() && item->name.find('"') != std::string::npos)
        return breaksTheShellForm(path);
    Error failure{ErrorKind::Other, path, "could not be removed with administrator rights"};
    const auto erase = [&](const std::string& name) {
        const std::string itself = seenFromItsFolder(name);
        if (m_privileged.isAuthorised())
            return m_privileged.executeCommandWithPrivilidges("/bin/rm", {"-rfP", itself}, item->parent.get());
        const auto rm = m_tools.programFor("/bin/rm");
        const auto erased =
            rm ? shell(formatText("\"%@\" -rfP \"%@\"", {escapedForShell(*rm), escapedForShell(itself)}),
                       item->parent.get(), {})
               : Failure(rm.error());
        if (!erased)
            failure =
                rm ? Error{ErrorKind::Other, path, "could not be overwritten and removed: " + erased.error().reason}
                   : rm.error();
        return erased.has_value();
    };
    if (!erase(item->name))
        return Failure(failure);
    if (m_files.attributesOfItemAtPath(path, Links::DontFollow))
        return Failure(Error{ErrorKind::Other, path, "still there after its removal"});
    return removeCompanion(path, *item, erase);
}

Result<void> FileChanges::empty(const std::string& path) {
    // The very file is held open, and the shell is told that descriptor: a path would be resolved again outside the
    // root's rules. A link is not followed: what it leads to is not what somebody chose to lose.
    const auto file = m_files.removals().openReferenceForRemoval(path);
    if (!file)
        return Failure(file.error());
    struct stat status {};
    if (::fstat(file->get(), &status) != 0)
        return Failure(systemError(errno, path));
    if (!S_ISREG(status.st_mode))
        return Failure(Error{ErrorKind::WrongType, path, "not a regular file, so it cannot be emptied"});
    const bool breaksShell = path.find('"') != std::string::npos;
    if (!breaksShell &&
        shell(formatText("echo > \"%@\"", {"/dev/fd/" + std::to_string(file->get())}), -1, {file->get()}))
        return {};
    if (!m_privileged.isAuthorised())
        return breaksShell ? breaksTheShellForm(path)
                           : Failure(Error{ErrorKind::PermissionDenied, path, "could not be emptied"});
    const std::string descriptor = "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(file->get());
    if (!m_privileged.executeCommandWithPrivilidges("/bin/sh", {"-c", "/bin/echo > \"" + descriptor + "\""}, -1))
        return Failure(Error{ErrorKind::Other, path, "could not be emptied with administrator rights"});
    return {};
}

bool FileChanges::isEmptied(const std::string& path) const {
    const auto attributes = m_files.attributesOfItemAtPath(path, Links::DontFollow);
    return attributes && attributes->type == FileType::Regular && attributes->size <= 1;
}

Result<void> FileChanges::shell(const std::string& command, int workingDirectory,
                                const std::vector<int>& inheritedDescriptors) const {
    ProcessOptions options;
    options.workingDirectory = workingDirectory;
    options.inheritedDescriptors = inheritedDescriptors;
    options.output = OutputTo::Discard;
    options.errors = OutputTo::Capture;
    const auto result = runProcess("/bin/sh", {"-c", command}, options);
    if (!result)
        return Failure(result.error());
    if (!result->succeeded())
        return Failure(Error{ErrorKind::Other, {}, result->errors.substr(0, result->errors.find('\n'))});
    return {};
}

} // namespace sweeply
