#include "platform/FileLock.h"

#include "platform/FileManager.h"
#include "platform/FileWriting.h"
#include "platform/TemporaryFiles.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace sweeply {

Result<FileLock> FileLock::acquire(FileManager& fileManager, std::string_view path, bool waits) {
    auto item = fileManager.locate(path);
    if (!item)
        return Failure(item.error());
    const int folder = item->parent.get();
    std::string name = lockName(item->name);
    for (;;) {
        // Not blocking and not through a link: a stranger may have put a pipe or a link there. Only what we made
        // ourselves is given to the folder's owner.
        constexpr int kFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        UniqueFd file(::openat(folder, name.c_str(), kFlags | O_CREAT | O_EXCL, 0600));
        if (file) {
            giveToOwnerOf(fileManager.calls(), folder, file.get());
        } else if (errno == EEXIST) {
            file.reset(::openat(folder, name.c_str(), kFlags));
            if (!file && errno == ENOENT)
                continue; // gone since
        }
        struct stat status {};
        if (!file || ::fstat(file.get(), &status) != 0)
            return Failure(systemError(errno, path));
        if (!S_ISREG(status.st_mode))
            return Failure(Error{ErrorKind::WrongType, std::string(path), "its lock is not a file"});
        const auto isOurs = lockFile(folder, name, file, path, waits);
        if (!isOurs)
            return Failure(isOurs.error());
        if (*isOurs)
            return FileLock(std::move(item->parent), std::move(name), std::move(file));
        // Who had it before took it away; whoever comes now makes another.
    }
}

FileLock::~FileLock() {
    // While it is locked: nobody can have taken it for theirs yet.
    if (m_file)
        ::unlinkat(m_folder.get(), m_name.c_str(), 0);
}

} // namespace sweeply
