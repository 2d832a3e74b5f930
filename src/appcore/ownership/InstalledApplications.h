#pragma once

#include "appcore/ownership/ApplicationIndex.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class FileManager;
class PackageManager;
class SWApplicationCore;
class WorkControl;

/// Whose something may be: what all installed applications are known by, what they bring and what their installers
/// wrote down. Each kind is read when it is first asked for and kept, so whoever does not ask pays nothing.
/// Thread-safe.
class InstalledApplications final {
  public:
    /// All outlive this.
    InstalledApplications(const FileManager& files, const SWApplicationCore& applications, PackageManager& packages)
        : m_files(files), m_applications(applications), m_packages(packages) {}

    /// Waits for the list of applications, which somebody must be building. nullptr when `control` is stopped before;
    /// null waits without end.
    [[nodiscard]] std::shared_ptr<const ApplicationIndex> index(const WorkControl* control);

    /// The bundles that carry a plug-in of this name, out of those of `index`.
    [[nodiscard]] std::vector<std::string> bringing(const std::string& plugin, const ApplicationIndex& index);

    /// A bundle that a package installed.
    struct Installed {
        std::string application; ///< path
        std::string package;     ///< name of its receipt
    };
    /// The applications of `index` whose packages' receipts list the path.
    [[nodiscard]] std::vector<Installed> installedWith(const std::string& path, const ApplicationIndex& index);
    /// Those that the package of this name installed.
    [[nodiscard]] std::vector<Installed> installedBy(const std::string& package, const ApplicationIndex& index);

  private:
    /// What one receipt lists, as sorted hashes: two paths with the same one only make an item seem to be claimed.
    struct Listing {
        std::string package;
        std::vector<std::string> appNames;
        std::vector<std::uint64_t> paths;
    };
    void readListings();
    [[nodiscard]] static std::vector<Installed> applicationsOf(const Listing& listing, const ApplicationIndex& index);

    const FileManager& m_files;
    const SWApplicationCore& m_applications;
    PackageManager& m_packages;

    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::shared_ptr<const ApplicationIndex> m_index;
    bool m_hasPlugins = false;
    std::map<std::string, std::vector<std::string>, std::less<>> m_bringing;
    bool m_hasListings = false;
    std::vector<Listing> m_listings;
};

} // namespace sweeply
