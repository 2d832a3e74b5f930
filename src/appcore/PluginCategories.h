#pragma once

#include "engine/tree/Icon.h"

#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

struct FolderConstants;

/// One kind of what people add to a system, and where it lies.
struct PluginCategory {
    /// The application or document type whose icon stands for the kind.
    std::string_view key;
    /// A key of the localised texts.
    std::string_view displayName;
    Icon icon = Icon::Plugin;
    /// Machine-wide, as they are written in the constants; the same below the home folder is the user's own.
    std::vector<std::string> folders;
    /// Do applications install such things themselves, so that they go with them?
    bool comesWithApplications = true;
};

/// The one list of kinds, in the order in which they are looked at.
[[nodiscard]] std::vector<PluginCategory> findAllPlugins(const FolderConstants& folders);

/// Where the launch items of a kind lie, which are unloaded before their files go.
inline constexpr std::string_view kStartupItems = "Startup Items";

/// The category's folders as paths of the target: the machine's, or those below the user's home.
[[nodiscard]] std::vector<std::string> systemFolders(const PluginCategory& category);
[[nodiscard]] std::vector<std::string> userFolders(const PluginCategory& category, const FolderConstants& folders);

} // namespace sweeply
