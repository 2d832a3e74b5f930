#pragma once

#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace sweeply {

/// What went wrong, as far as callers tell cases apart. Branch on this, never on text.
enum class ErrorKind {
    NotFound,         ///< nothing stands at the path
    PermissionDenied, ///< the user may not; administrator rights might help
    ReadOnly,         ///< the volume is mounted read-only
    NoSpace,          ///< the volume or the quota is full
    WrongType,        ///< a folder where a file was wanted, or the reverse
    AlreadyExists,
    OutsideRoot, ///< the path would leave the target's root
    Protected,   ///< a path that is never removed
    Damaged,     ///< the contents do not parse
    TooLarge,
    Unavailable, ///< the service or tool is not there
    Stopped,     ///< somebody asked for it
    Other,
};

/// A failure and what it is about. The path is the one that the caller gave, so that a message can name it.
struct Error {
    ErrorKind kind = ErrorKind::Other;
    std::string path;
    /// Why, in words for a person, without the path: "Permission denied", "line 3: unexpected end of file".
    std::string reason;

    /// "PATH: REASON", or the reason alone when there is no path.
    [[nodiscard]] std::string message() const { return path.empty() ? reason : path + ": " + reason; }
};

/// The error for a failed system call: its number mapped to a kind and the system's own words.
[[nodiscard]] Error systemError(int errorNumber, std::string_view path);

template<typename T>
using Result = tl::expected<T, Error>;
using Failure = tl::unexpected<Error>;

} // namespace sweeply
