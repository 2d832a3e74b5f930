#pragma once

#include "platform/Error.h"

#include <string>
#include <vector>

namespace sweeply {

/// The roots that a list names: one a line, as it stands there, whatever ends the line. Lines that are blank or begin
/// with "#" name none. `file` is a path of this machine, or "-" for standard input, which is read to its end. An error
/// where the list cannot be read, is no text or names nothing.
[[nodiscard]] Result<std::vector<std::string>> readRootsList(const std::string& file);

} // namespace sweeply
