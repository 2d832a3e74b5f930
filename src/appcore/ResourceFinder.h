#pragma once

#include "appcore/ownership/Claims.h"
#include "appcore/ownership/FolderListings.h"
#include "engine/tree/Node.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class DiskSizes;
class FileManager;
class LaunchItems;
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
/// application's node with the evidence: unchecked where the match is weak or another application claims it. For one
/// scan thread at a time.
class ResourceFinder final {
  public:
    struct Services {
        FileManager& files;
        const FolderConstants& folders;
        const DiskSizes& sizes;
        const SWApplicationCore& applications;
        const SearchedFolders& searched;
        const LoginItems& loginItems;
        const LaunchItems& launchItems;
        PackageManager& packages;
        SystemLog& log;
    };
    using Paths = std::vector<std::string>;

    /// What decides over the check marks of what is found.
    struct Judgement {
        const Claims& claims;
        bool checksWeakMatches = false;
    };

    /// All outlive this. Nodes are added with `treeLock` held.
    ResourceFinder(const Services& services, std::recursive_mutex& treeLock)
        : m_services(services), m_treeLock(treeLock) {}

    /// As long as somebody holds what this returns, each folder that is searched is listed once.
    [[nodiscard]] std::shared_ptr<FolderListings> keepListings();

    /// Everything that belongs to the applications at these paths, the first of which is the node's own.
    void findAllResourcesForApplications(const Paths& paths, Node& node, const Judgement& judgement);
    /// The preference files of the bundle at `path`.
    void findPreferencesForApplication(const std::string& path, Node& node, const Judgement& judgement);

    [[nodiscard]] static bool isSystemFileAtPath(std::string_view path);

  private:
    /// One application, and where what is found of it goes.
    struct Search {
        const ApplicationTerms terms;
        Node& node;
        const Judgement& judgement;
    };
    /// What a finder found, and why.
    struct Found {
        std::string path;
        Evidence evidence;
    };
    struct Look {
        Icon icon = Icon::Preferences;
        std::int8_t type = 0;
    };
    using Finder = void (ResourceFinder::*)(const Search& search);

    void findPreferences(const Search& search);
    void findApplicationSupport(const Search& search);
    void findLoginItems(const Search& search);
    void findPlugins(const Search& search);
    void findCaches(const Search& search);
    void findLogs(const Search& search);
    void findLibraryPaths(const Search& search);
    void findPDFServices(const Search& search);
    void findReceiptResources(const Search& search);
    void findLaunchItems(const Search& search);
    void findGrowlTickets(const Search& search);

    /// The entries of one folder that match, those by identifier first.
    [[nodiscard]] std::vector<Found> matchesIn(const std::string& folder, SearchTerms terms,
                                               const ApplicationTerms& application);
    void findInFolders(const SearchedFolders::Group& group, const Search& search, Look look);
    void add(std::vector<Found> found, const Search& search, Look look);
    /// Adds the item, or, where it is listed already, lets the better reason count.
    void addJudged(Node::Pointer item, Evidence evidence, const Search& search);

    const Services m_services;
    std::recursive_mutex& m_treeLock;
    std::mutex m_listingsMutex;
    std::weak_ptr<FolderListings> m_listings; ///< guarded by m_listingsMutex
};

} // namespace sweeply
