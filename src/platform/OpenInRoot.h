#pragma once

#include <string>
#include <sys/types.h>

namespace sweeply {

/// May links in the middle of a path be followed? One in its last component is a matter of O_NOFOLLOW.
enum class MiddleLinks { Follow, Refuse };

/// Opens `path`, relative to the folder `root`, so that nothing on the way leads out of it: an absolute link starts
/// again at the root, and ".." stops there. Flags are those of open(2); O_CLOEXEC is added. Returns a descriptor, or -1
/// with errno set, like open(2); a refused link is ELOOP.
[[nodiscard]] int openInRoot(int root, const std::string& path, int flags, MiddleLinks links = MiddleLinks::Follow);

/// The same by looking at one component after the other, for systems whose kernel does not resolve within a root.
[[nodiscard]] int openInRootByWalking(int root, const std::string& path, int flags,
                                      MiddleLinks links = MiddleLinks::Follow);

} // namespace sweeply
