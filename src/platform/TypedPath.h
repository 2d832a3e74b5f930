#pragma once

#include "platform/Error.h"

#include <optional>
#include <string>
#include <string_view>

namespace sweeply {

class TargetRoot;

/// What a person at this machine means by a path.
struct TypedPath {
    /// The item as a target path without "." and "..". A link in its last component is the item.
    std::string path;
    /// Another item of the target that the same letters name on this machine.
    std::optional<std::string> alsoMeans;
};

/// Reads `typed` (not empty, "~" replaced already) as the shell shows it and as the target has it:
///
/// - a path that lies below the root on this machine means that item; a relative one counts from the current folder,
/// and
///   has to lie there;
/// - any other absolute path is a target path. Where both exist, the target path is meant.
///
/// ".." is resolved inside the root as the target's own system would, through links. A path of this machine that climbs
/// out of the root with it is an error, for what lies there is none of the target's. One that leads through a folder
/// that is not there keeps its "..": nothing stands at it, and nothing is ever removed by it.
[[nodiscard]] Result<TypedPath> typedPath(const TargetRoot& root, std::string_view typed);

/// What is left of a host path behind its longest beginning that is the root folder itself, by whatever links it is
/// reached: "/Users" of "/mnt/mac/Users". Nothing where it leads past the root.
[[nodiscard]] std::optional<std::string> pathBehindRoot(const TargetRoot& root, std::string_view hostPath);

} // namespace sweeply
