#include "platform/FileLock.h"

#include "platform/FileManager.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace sweeply {

Result<FileLock> FileLock::acquire(FileManager& fileManager, std::string_view path) {
    if (const auto made = fileManager.createFileAtPath(path, {}, 0600);
        !made && made.error().kind != ErrorKind::AlreadyExists)
        return Failure(made.error());
    const auto located = fileManager.locate(path);
    if (!located)
        return Failure(located.error());
    // Not blocking and not through a link: a stranger may have put a pipe or a link there.
    UniqueFd file(::openat(located->parent.get(), located->name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0)
        return Failure(systemError(errno, path));
    if (!S_ISREG(status.st_mode))
        return Failure(Error{ErrorKind::WrongType, std::string(path), "not a file that can be locked"});
    while (::flock(file.get(), LOCK_EX) != 0)
        if (errno != EINTR)
            return Failure(systemError(errno, path));
    return FileLock(std::move(file));
}

} // namespace sweeply
