#pragma once

#include "engine/tree/Node.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class DiskSizes;
class FileManager;
class LoginItems;
class PackageManager;
class SWApplicationCore;
class SystemLog;
struct FolderConstants;

/// What a node of an application's tree stands for, besides a file or folder, which is 0.
namespace nodetype {
inline constexpr std::int8_t kLoginItem = 1;
inline constexpr std::int8_t kSystemApplication = 2;
inline constexpr std::int8_t kSharedPackage = 3;
inline constexpr std::int8_t kLaunchItem = 4;
} // namespace nodetype

/// Finds what belongs to an application elsewhere on the disk, by its identifier and its name, and hangs it under the
/// application's node. For one scan thread at a time.
class ResourceFinder final {
  public:
    struct Services {
        FileManager& files;
        const FolderConstants& folders;
        const DiskSizes& sizes;
        const SWApplicationCore& applications;
        const LoginItems& loginItems;
        PackageManager& packages;
        SystemLog& log;
    };
    using Paths = std::vector<std::string>;

    /// All outlive this. Nodes are added with `treeLock` held.
    ResourceFinder(Services services, std::recursive_mutex& treeLock) : m_services(services), m_treeLock(treeLock) {}

    /// The entries of `folder` whose names have the term anywhere, or with `byWords` all words of it as words. Only the
    /// folder's own unless `recursive`. None for an empty term.
    [[nodiscard]] Paths findFile(std::string_view term, const std::string& folder, bool byWords, bool recursive) const;

    /// Everything that belongs to the applications at these paths, the first of which is the node's own.
    void findAllResourcesForApplications(const Paths& paths, Node& node);

    /// The preference files of the bundle at `path`.
    void findPreferencesForApplication(const std::string& path, Node& node) {
        findPreferences(path, termsOf(path), node);
    }

    /// The names of plug-ins that a bundle carries.
    [[nodiscard]] Paths originalPluginsForApplication(const std::string& path) const;
    [[nodiscard]] static bool isSystemFileAtPath(std::string_view path);

  private:
    /// What an application is searched by.
    struct Terms {
        std::string identifier;
        std::string name;
    };
    using Finder = void (ResourceFinder::*)(const std::string& path, const Terms& terms, Node& node);

    void findPreferences(const std::string& path, const Terms& terms, Node& node);
    void findApplicationSupport(const std::string& path, const Terms& terms, Node& node);
    void findLoginItems(const std::string& path, const Terms& terms, Node& node);
    void findPlugins(const std::string& path, const Terms& terms, Node& node);
    void findCaches(const std::string& path, const Terms& terms, Node& node);
    void findLogs(const std::string& path, const Terms& terms, Node& node);
    void findLibraryPaths(const std::string& path, const Terms& terms, Node& node);
    void findPDFServices(const std::string& path, const Terms& terms, Node& node);
    void findReceiptResources(const std::string& path, const Terms& terms, Node& node);
    void findLaunchItems(const std::string& path, const Terms& terms, Node& node);
    void findGrowlTickets(const std::string& path, const Terms& terms, Node& node);

    [[nodiscard]] Terms termsOf(const std::string& path) const;
    /// By identifier, then by name.
    void findInFolders(const Paths& folders, const Terms& terms, Node& node);
    [[nodiscard]] Paths withIdentifier(const Terms& terms, const std::string& folder) const;
    void add(const Paths& found, Node& node, Icon icon, std::int8_t type = 0);
    [[nodiscard]] Paths libraryFolders() const;

    const Services m_services;
    std::recursive_mutex& m_treeLock;
};

} // namespace sweeply
