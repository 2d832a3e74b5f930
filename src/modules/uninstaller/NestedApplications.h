#pragma once

#include <string>
#include <vector>

namespace sweeply {

class FileManager;

/// The applications inside a bundle, at any depth; frameworks and localizations are not looked into.
[[nodiscard]] std::vector<std::string> nestedApplications(const FileManager& files, const std::string& bundle);

} // namespace sweeply
