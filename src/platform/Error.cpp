#include "platform/Error.h"

#include <cerrno>
#include <system_error>

namespace sweeply {

namespace {

ErrorKind kindOf(int errorNumber) {
    switch (errorNumber) {
    case ENOENT:
        return ErrorKind::NotFound;
    case EACCES:
    case EPERM:
        return ErrorKind::PermissionDenied;
    case EROFS:
        return ErrorKind::ReadOnly;
    case ENOSPC:
    case EDQUOT:
        return ErrorKind::NoSpace;
    case ENOTDIR:
    case EISDIR:
        return ErrorKind::WrongType;
    case EEXIST:
    case ENOTEMPTY:
        return ErrorKind::AlreadyExists;
    case EXDEV:
        return ErrorKind::OutsideRoot;
    case EFBIG:
        return ErrorKind::TooLarge;
    default:
        return ErrorKind::Other;
    }
}

} // namespace

Error systemError(int errorNumber, std::string_view path) {
    // std::strerror is not safe to call from several threads at once; the category's message is.
    return {kindOf(errorNumber), std::string(path), std::generic_category().message(errorNumber)};
}

} // namespace sweeply
