#include "appcore/changes/OwnRights.h"

#include "appcore/changes/Change.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sweeply {

namespace {

OwnRights::Verdict verdictOfCall(int status) {
    if (status == 0 || (errno != EACCES && errno != EPERM && errno != EROFS))
        return OwnRights::Verdict::Suffice;
    return errno == EROFS ? OwnRights::Verdict::ReadOnlyVolume : OwnRights::Verdict::NeedAdministrator;
}

OwnRights::Verdict mayWrite(int folder, const char* name, int how) {
    return verdictOfCall(::faccessat(folder, name, how, AT_EACCESS | AT_SYMLINK_NOFOLLOW));
}

/// In a folder like "/tmp" only the owner takes an item away, or the folder's.
bool isOthersInStickyFolder(const struct stat& item, int folder) {
    struct stat around {};
    return ::fstat(folder, &around) == 0 && (around.st_mode & S_ISVTX) != 0 && !OwnRights::areAdministrators() &&
           item.st_uid != ::geteuid() && around.st_uid != ::geteuid();
}

} // namespace

bool OwnRights::areAdministrators() { return ::geteuid() == 0; }

OwnRights::Verdict OwnRights::forChange(const ChangeRequest& request) {
    if (request.kind == ChangedKind::Receipt) // the database belongs to the machine
        return areAdministrators() ? Verdict::Suffice : Verdict::NeedAdministrator;
    if (request.kind == ChangedKind::LoginItem)
        return Verdict::Suffice;
    const bool isRewritten = request.operation == Operation::Empty;
    if (!request.hasParts)
        return forItem(request.path, isRewritten);
    for (const auto& part : request.parts) {
        if (const auto verdict = forItem(part, isRewritten); verdict != Verdict::Suffice)
            return verdict;
    }
    return Verdict::Suffice;
}

OwnRights::Verdict OwnRights::forItem(const std::string& path, bool isRewritten) {
    const std::string_view folder = pathWithoutLastComponent(path);
    if (!m_inFolder || folder != m_folder) {
        m_folder = folder;
        m_inFolder.reset();
        auto located = m_files.locate(path);
        if (!located)
            return Verdict::Suffice;
        m_inFolder.emplace(*std::move(located));
        m_folderVerdict = mayWrite(m_inFolder->parent.get(), ".", W_OK | X_OK);
    }
    const std::string name(lastPathComponent(path));
    const int around = m_inFolder->parent.get();
    if (isRewritten)
        return mayWrite(around, name.c_str(), W_OK);
    struct stat item {};
    if (m_folderVerdict != Verdict::Suffice || ::fstatat(around, name.c_str(), &item, AT_SYMLINK_NOFOLLOW) != 0)
        return m_folderVerdict;
    if (isOthersInStickyFolder(item, around))
        return Verdict::NeedAdministrator;
    return S_ISDIR(item.st_mode) ? mayWrite(around, name.c_str(), W_OK | X_OK) : Verdict::Suffice;
}

} // namespace sweeply
