#pragma once

#include "appcore/receipts/Package.h"
#include "platform/Error.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class Alerts;
class FileManager;
class MainThread;
class PrivilegedExecution;
class SystemLog;
class SystemVersion;
class ToolTable;
struct FolderConstants;

/// The receipts of installer packages: which there are, what they installed, whose they are. Thread-safe.
class PackageManager final {
  public:
    struct Services {
        FileManager& files;
        const FolderConstants& folders;
        const SystemVersion& version;
        const ToolTable& tools;
        PrivilegedExecution& privileged;
        Alerts& alerts;
        MainThread& mainThread;
        SystemLog& log;
    };
    using Paths = std::vector<std::string>;

    /// All outlive this.
    explicit PackageManager(Services services) : m_services(services) {}

    /// The index, brought up to date: packages that were known already are not read again. Blocks.
    [[nodiscard]] std::vector<Package> pkgs();
    /// In the index as it was last brought up to date.
    [[nodiscard]] std::optional<Package> findPackageByName(std::string_view name) const;
    /// Those that installed an application of that name, "Foo.app". Reads the index once.
    [[nodiscard]] std::vector<Package> findPackageByAppName(const std::string& appName);
    /// Did it install anything of the application at this path?
    [[nodiscard]] bool doesPackageBelongToAppWithPath(const std::string& appPath, const Package& package) const;
    /// Is it one whose receipts are looked for? Those that came with the system are not.
    [[nodiscard]] static bool isNormalAppleApplication(std::string_view bundleID);
    /// What the package installed: absolute paths, and receipts in the database as "Package: ID".
    [[nodiscard]] Paths getPackageDependencies(const Package& package, bool filtered) const;
    /// Reads a package's or receipt's own property list.
    [[nodiscard]] Package packageAt(std::string name, std::string path, Package::Type type) const;
    /// A record exactly when the database has no such receipt.
    [[nodiscard]] std::optional<Package> checkPackageInDB(const std::string& identifier) const;
    /// Has the database forget a receipt; needs administrator rights, and says so where there are none. True when there
    /// is none any more. Only for systems with a database.
    bool removePkg(const std::string& identifier);

    /// The files that make up a receipt in the database, the one that names it first; none where there is no such
    /// receipt, or none of this kind.
    [[nodiscard]] Paths receiptFiles(const std::string& identifier) const;

    /// Does this system keep its receipts in a database?
    [[nodiscard]] bool hasDatabase() const;

  private:
    [[nodiscard]] Paths rawLines(const Package& package) const;
    [[nodiscard]] Paths linesOfFlatPackage(const Package& package) const;
    /// `shown` is what the bill is called where it came from.
    [[nodiscard]] Paths parseBOM(const std::string& hostPath, const std::string& shown) const;
    /// `about` is what the question is about.
    [[nodiscard]] Paths pkgutil(const std::vector<std::string>& arguments, const std::string& about) const;
    [[nodiscard]] Paths linesOfTool(const char* tool, const std::vector<std::string>& arguments,
                                    const std::string& about) const;
    /// The same arguments for the target, wherever it lies.
    [[nodiscard]] std::vector<std::string> onThisVolume(std::vector<std::string> arguments) const;
    /// Those of the system, by name.
    [[nodiscard]] std::vector<Package> receipts() const;
    void updatePackagesDB();
    void loadPkgsDB();
    void savePkgsDB() const;
    [[nodiscard]] std::string pathForPkgsDBFile() const;

    const Services m_services;
    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::optional<std::vector<Package>> m_pkgs;
    std::optional<std::map<std::string, std::vector<Package>>> m_pkgsAssoc;
};

} // namespace sweeply
