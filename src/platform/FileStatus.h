#pragma once

#include "platform/FileAttributes.h"

#include <sys/stat.h>

namespace sweeply {

/// The type that the mode of a stat structure tells.
[[nodiscard]] FileType fileTypeOf(mode_t mode);

[[nodiscard]] FileAttributes attributesFrom(const struct stat& status);

} // namespace sweeply
