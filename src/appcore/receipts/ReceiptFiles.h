#pragma once

#include "appcore/receipts/Package.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// In a file list, what stands before the identifier of a receipt in the system's database.
inline constexpr std::string_view kReceiptEntry = "Package: ";

/// Turns the lines that a bill of materials has into entries of a file list: absolute paths, receipts as they are. With
/// `filtered`, bundles stand for all that is in them: those that are known by their extension and those for which
/// `isApplication` is true. What does not stay below the package's install location is left out.
[[nodiscard]] std::vector<std::string>
processReceiptsOutput(const std::vector<std::string>& lines, const Package& package, bool filtered,
                      const std::function<bool(const std::string& path)>& isApplication);

} // namespace sweeply
