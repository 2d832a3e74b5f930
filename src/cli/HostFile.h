#pragma once

#include "platform/Error.h"

#include <cstddef>
#include <string>

namespace sweeply {

// Files of this machine, not of the target, that a person names on the command line. Relative names count from the
// current folder; "-" is standard input or output.

/// TooLarge for more than `limit` bytes.
[[nodiscard]] Result<std::string> readHostFile(const std::string& name, std::size_t limit);

enum class ExistingFile { Stays, IsReplaced };

/// Could a file of that name be written? To find out before the work.
[[nodiscard]] Result<void> canWriteHostFile(const std::string& name, ExistingFile existing);

/// Writes the file whole or not at all, for its owner's eyes alone. Only a regular file is replaced, and no link is
/// written through. AlreadyExists where something stands there that stays.
[[nodiscard]] Result<void> writeHostFile(const std::string& name, const std::string& contents, ExistingFile existing);

} // namespace sweeply
