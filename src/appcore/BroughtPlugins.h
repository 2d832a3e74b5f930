#pragma once

#include <string>
#include <vector>

namespace sweeply {

class FileManager;

/// The names of the plug-ins that a bundle carries, in the order in which they are met, repetitions included. They may
/// have been copied into the folders for plug-ins under these names.
[[nodiscard]] std::vector<std::string> originalPluginsForApplication(const FileManager& files, const std::string& path);

} // namespace sweeply
