#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sweeply {

class FileManager;
class SystemVersion;

/// Which processors the target's machine has: "intel", "ppc", or "unknown" where nobody can tell.
///
/// The machine itself says when the target is this machine. Of another one: its system, if that runs on Intel only;
/// else its kernel, if that is for one processor only.
[[nodiscard]] std::string processorFamily(const FileManager& files, const SystemVersion& version);

/// The family that a machine of this name belongs to, as the kernel says it: "i386", "x86_64", "Power Macintosh".
[[nodiscard]] std::string processorFamilyOfMachine(std::string_view machine);

} // namespace sweeply
