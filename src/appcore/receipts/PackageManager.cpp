#include "appcore/receipts/PackageManager.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "appcore/PrivilegedExecution.h"
#include "appcore/receipts/PackageCache.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "formats/FlatPackage.h"
#include "formats/PackageInfo.h"
#include "platform/Alerts.h"
#include "platform/BundleInfo.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/Process.h"
#include "platform/StringExtras.h"
#include "platform/SystemLog.h"
#include "platform/SystemVersion.h"
#include "platform/TargetPath.h"
#include "platform/TemporaryFolder.h"
#include "platform/ToolTable.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <fstream>
#include <thread>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kPkgutil = "/usr/sbin/pkgutil";
constexpr const char* kDatabase = "/var/db/receipts/";
constexpr const char* kBundleReceipts = "/Library/Receipts";
constexpr std::size_t kLargestPropertyList = std::size_t{16} << 20U;
constexpr std::size_t kLargestCache = std::size_t{256} << 20U;

/// Receipts of the system's own maker that count all the same; each is looked for anywhere in this text.
constexpr std::string_view kKeptReceipts =
    "com.apple.pkg.iDVDcom.apple.pkg.iDVDThemescom.apple.pkg.iLife|com.apple.pkg.iLifeCookie|"
    "com.apple.pkg.iLifeSlideshow|com.apple.pkg.iLifeSoundEffects_Loopscom.apple.pkg.iMoviecom.apple.pkg."
    "iMovie_PreviousFoldercom.apple.pkg.iPhotocom.apple.pkg.GarageBandcom.apple.pkg.GarageBand_Instrumentscom.apple."
    "pkg.GarageBand_Loopscom.apple.pkg.GarageBand_LTPContentcom.apple.pkg.GarageBand_MagicContentcom.apple.pkg."
    "GarageBandFactoryContentcom.apple.pkg.iWebcom.apple.pkg.VideoOutSupportFCEcom.apple.pkg.ProAppRuntimecom.apple."
    "pkg.ProAppsEffectsFCEcom.apple.pkg.ProAppsMetadataSupportcom.apple.pkg.ApertureTrial|com.apple.pkg.Aperture";

constexpr std::array<std::string_view, 10> kProApplications{
    "com.apple.garageband",      "com.apple.iPhoto",        "com.apple.iWeb",          "com.apple.iDVD",
    "com.apple.iWork.Pages",     "com.apple.iWork.Numbers", "com.apple.iWork.Keynote", "com.apple.Aperture",
    "com.apple.FinalCutExpress", "com.apple.FinalCut",
};

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string nameOfReceipt(std::string_view identifier) { return std::string(kReceiptEntry) + std::string(identifier); }

} // namespace

bool PackageManager::hasDatabase() const { return m_services.version.isSnowLeopardOrBetter(); }

bool PackageManager::isNormalAppleApplication(std::string_view bundleID) {
    return bundleID.find("com.apple") == std::string_view::npos ||
           bundleID.find("com.apple.iMovie") != std::string_view::npos ||
           std::ranges::find(kProApplications, bundleID) != kProApplications.end();
}

// The index

std::string PackageManager::pathForPkgsDBFile() const {
    return m_services.folders.expandTilde("~/Library/Application Support/Sweeply/PkgsInfo");
}

void PackageManager::loadPkgsDB() {
    const auto bytes = m_services.files.contentsAtPath(pathForPkgsDBFile(), kLargestCache);
    if (!bytes && bytes.error().kind == ErrorKind::NotFound)
        return;
    auto packages = bytes.and_then(packagesInArchive);
    if (packages)
        m_pkgs = *std::move(packages);
    else // it is built anew
        m_services.log.log(pathForPkgsDBFile() + ": " + packages.error().reason);
}

void PackageManager::savePkgsDB() const {
    const std::string path = pathForPkgsDBFile();
    const auto bytes = archiveOfPackages(*m_pkgs);
    const auto saved = m_services.files.createDirectoryAtPath(pathWithoutLastComponent(path)).and_then([&] {
        return m_services.files.writeAtomically(path, bytes);
    });
    if (!saved)
        m_services.log.log(saved.error().message());
}

std::vector<Package> PackageManager::receipts() const {
    std::vector<Package> found;
    if (hasDatabase()) {
        for (const auto& line : pkgutil({"--pkgs"}, kDatabase)) {
            const std::string identifier(trimWhiteSpace(line));
            const bool isOfTheSystem = identifier.find("com.apple") != std::string::npos;
            if (identifier.empty() || (isOfTheSystem && kKeptReceipts.find(identifier) == std::string_view::npos))
                continue;
            found.push_back({identifier, {}, Package::Type::Database, {}, {}});
        }
        return found;
    }
    const auto entries = m_services.files.contentsOfDirectoryAtPath(kBundleReceipts);
    if (!entries)
        return found;
    for (const auto& entry : *entries) {
        if (pathExtension(entry.name) == "pkg")
            found.push_back({std::string(nameWithoutExtension(entry.name)),
                             joinedPath(kBundleReceipts, entry.name),
                             Package::Type::Bundle,
                             {},
                             {}});
    }
    std::ranges::sort(found, {}, &Package::name);
    return found;
}

void PackageManager::updatePackagesDB() {
    auto packages = receipts();
    std::map<std::string_view, const Package*> known;
    if (m_pkgs) {
        for (const auto& package : *m_pkgs)
            known.emplace(package.name, &package);
    }
    std::vector<Package*> fresh;
    for (auto& package : packages) {
        const auto same = known.find(package.name);
        if (same != known.end() && same->second->appNames && same->second->type == package.type) {
            package.basedir = same->second->basedir;
            package.appNames = same->second->appNames;
        } else {
            fresh.push_back(&package);
        }
    }
    // Most of the time goes into the tools that list a package's files; two keep both of two processors busy.
    std::atomic<std::size_t> next{0};
    const auto read = [&] {
        for (std::size_t i = next++; i < fresh.size(); i = next++) {
            *fresh[i] = packageAt(fresh[i]->name, fresh[i]->path, fresh[i]->type);
            fresh[i]->appNames = applicationNamesIn(getPackageDependencies(*fresh[i], false));
        }
    };
    {
        const std::jthread helper = fresh.size() > 1 ? std::jthread(read) : std::jthread();
        read();
    }
    const bool isChanged = !fresh.empty() || !m_pkgs || m_pkgs->size() != packages.size();
    m_pkgs = std::move(packages);
    if (isChanged) {
        m_pkgsAssoc.reset();
        savePkgsDB();
    }
}

std::vector<Package> PackageManager::pkgs() {
    const std::lock_guard lock(m_mutex);
    if (!m_pkgs)
        loadPkgsDB();
    updatePackagesDB();
    return *m_pkgs;
}

std::optional<Package> PackageManager::findPackageByName(std::string_view name) const {
    const std::lock_guard lock(m_mutex);
    if (!m_pkgs || name.empty())
        return std::nullopt;
    const auto found = std::ranges::find(*m_pkgs, name, &Package::name);
    return found == m_pkgs->end() ? std::nullopt : std::optional(*found);
}

std::vector<Package> PackageManager::findPackageByAppName(const std::string& appName) {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_pkgsAssoc) {
            if (!m_pkgs)
                loadPkgsDB();
            updatePackagesDB();
            m_pkgsAssoc.emplace();
            for (const auto& package : *m_pkgs) {
                for (const auto& name : *package.appNames)
                    (*m_pkgsAssoc)[name].push_back(package);
            }
        }
        const auto found = m_pkgsAssoc->find(appName);
        if (found != m_pkgsAssoc->end())
            return found->second;
    }
    return {};
}

bool PackageManager::doesPackageBelongToAppWithPath(const std::string& appPath, const Package& package) const {
    // Its own files, not those of an application whose name only begins alike.
    return std::ranges::any_of(getPackageDependencies(package, false), [&](const std::string& entry) {
        return entry == appPath || entry.starts_with(appPath + "/");
    });
}

// Single packages

Package PackageManager::packageAt(std::string name, std::string path, Package::Type type) const {
    Package package{std::move(name), std::move(path), type, {}, {}};
    if (type == Package::Type::Flat)
        return package;
    const std::string list = type == Package::Type::Database ? kDatabase + package.name + ".plist"
                                                             : joinedPath(package.path, "Contents/Info.plist");
    const auto bytes = m_services.files.contentsAtPath(list, kLargestPropertyList);
    const auto info = bytes ? plist::parse(*bytes) : tl::unexpected(bytes.error().reason);
    if (!info) {
        m_services.log.log(
            formatText("Pkg %@ plist read error. Assume basedir as / and empty bundle ID", {package.name}));
        package.basedir = "/";
        return package;
    }
    package.basedir = getPackageBaseDir(*info);
    if (const auto* identifier = info->findString("CFBundleIdentifier"))
        package.bundleID = *identifier;
    return package;
}

PackageManager::Paths PackageManager::getPackageDependencies(const Package& package, bool filtered) const {
    return processReceiptsOutput(rawLines(package), package, filtered, [this](const std::string& path) {
        const auto info = infoOfBundle(m_services.files, path);
        const auto* type = info ? info->findString("CFBundlePackageType") : nullptr;
        return type && *type == "APPL";
    });
}

PackageManager::Paths PackageManager::rawLines(const Package& package) const {
    switch (package.type) {
    case Package::Type::Database:
        return pkgutil({"--only-files", "--lsbom", package.name}, kDatabase + package.name + ".bom");
    case Package::Type::Flat:
        return linesOfFlatPackage(package);
    case Package::Type::Bundle:
        break;
    }
    Paths lines;
    const std::string contents = joinedPath(package.path, "Contents");
    for (const std::string& bom : {contents + "/Archive.bom", contents + "/Resources/" + package.name + ".bom"}) {
        const auto place = m_services.files.hostPath(bom);
        if (place) {
            lines = parseBOM(*place, bom);
            break;
        }
        m_services.files.addUnreadable(place.error());
    }
    if (hasDatabase() && !package.bundleID.empty())
        lines.push_back(nameOfReceipt(package.bundleID));
    return lines;
}

PackageManager::Paths PackageManager::linesOfFlatPackage(const Package& package) const {
    if (m_services.version.isTiger()) {
        m_services.log.log("Can't anlayse flat packages on Tiger");
        return {};
    }
    Paths lines;
    std::map<std::string, std::string> locations; // by the sub-package's folder
    std::vector<std::pair<std::string, std::string>> bills;
    const auto takeInfo = [&](const std::string& folder, const std::string& bytes) {
        const auto info = parsePackageInfo(bytes);
        if (!info) {
            m_services.log.log(formatText("Failed to parser PackageInfo for %@", {package.path}));
            return;
        }
        // What names no place of its own installs at the root, and leaves no receipt under its name.
        if (info->identifier.empty() || !info->installLocation)
            return;
        locations[folder] = *info->installLocation;
        if (hasDatabase())
            lines.push_back(nameOfReceipt(info->identifier));
        m_services.log.log(formatText("Base dir %@ bundleID %@", {*info->installLocation, info->identifier}));
    };
    const auto file = m_services.files.openForReading(package.path);
    const auto read = file
                          ? readFlatPackage(
                                file->get(),
                                [](std::string_view path) {
                                    return lastPathComponent(path) == "PackageInfo" || lastPathComponent(path) == "Bom";
                                },
                                [&](std::string_view path, std::string bytes) {
                                    const std::string folder(pathWithoutLastComponent(path));
                                    if (lastPathComponent(path) == "Bom")
                                        bills.emplace_back(folder, std::move(bytes));
                                    else
                                        takeInfo(folder, bytes);
                                })
                          : tl::unexpected(file.error().reason);
    if (!read) {
        m_services.log.log(formatText("Failed to open xar %@", {package.path + ": " + read.error()}));
        m_services.files.problems().add({ErrorKind::Damaged, package.path, read.error()});
        return {};
    }
    const auto folder = TemporaryFolder::make();
    for (const auto& [place, bytes] : bills) {
        const std::string copy = folder ? folder->path() + "/Bom" : std::string();
        std::ofstream(copy, std::ios::binary) << bytes;
        for (const auto& line : parseBOM(copy, joinedPath(joinedPath(package.path, place), "Bom"))) {
            const auto location = locations.find(place);
            if (location != locations.end() && line.size() > 1)
                lines.push_back(joinedPath("/" + location->second, std::string_view(line).substr(2)));
            else
                lines.push_back(line);
        }
    }
    return lines;
}

std::vector<std::string> PackageManager::onThisVolume(std::vector<std::string> arguments) const {
    if (!m_services.files.isHostRoot())
        arguments.insert(arguments.begin(), {"--volume", m_services.files.rootPath()});
    return arguments;
}

PackageManager::Paths PackageManager::parseBOM(const std::string& hostPath, const std::string& shown) const {
    return linesOfTool("/usr/bin/lsbom", {"-f", "-s", hostPath}, shown);
}

PackageManager::Paths PackageManager::pkgutil(const std::vector<std::string>& arguments,
                                              const std::string& about) const {
    return linesOfTool(kPkgutil, onThisVolume(arguments), about);
}

PackageManager::Paths PackageManager::linesOfTool(const char* tool, const std::vector<std::string>& arguments,
                                                  const std::string& about) const {
    const auto said = ADTaskRunner(m_services.tools, m_services.log).run(tool, arguments);
    if (!said) {
        m_services.files.problems().add({said.error().kind, about, said.error().reason});
        return {};
    }
    if (const std::string complaint(trimWhiteSpace(said->errors)); !complaint.empty()) {
        // "lsbom: /tmp/sweeply-1/Bom: REASON": what it calls itself and the file says nothing to a person.
        const std::string whose = about.substr(about.rfind('/', about.size() - 2) + 1) + ": ";
        const auto start = complaint.find(whose);
        // What the tool could not read we cannot either, and trying adds it to the problems.
        if (about.ends_with('/'))
            (void)m_services.files.openDirectory(about);
        else
            (void)m_services.files.openForReading(about);
        m_services.files.problems().add(
            {ErrorKind::Damaged, about,
             start == std::string::npos ? complaint : complaint.substr(start + whose.size())});
    }
    return linesOf(said->output);
}

std::optional<Package> PackageManager::checkPackageInDB(const std::string& identifier) const {
    // Some systems say it to standard output, others to standard error. Any other failure says nothing of the receipt.
    const auto said =
        ADTaskRunner(m_services.tools, m_services.log).run(kPkgutil, onThisVolume({"--pkg-info", identifier}));
    if (!said || (said->output + said->errors).find("No receipt for") == std::string::npos)
        return std::nullopt;
    return Package{identifier, {}, Package::Type::Database, {}, {}};
}

PackageManager::Paths PackageManager::receiptFiles(const std::string& identifier) const {
    Paths files;
    if (identifier.find('/') != std::string::npos)
        return files;
    for (const char* extension : {".plist", ".bom"}) {
        auto path = kDatabase + identifier + extension;
        if (m_services.files.attributesOfItemAtPath(path, Links::DontFollow))
            files.push_back(std::move(path));
        else if (files.empty())
            return files;
    }
    return files;
}

bool PackageManager::removePkg(const std::string& identifier) {
    if (!hasDatabase()) {
        m_services.log.log("removePkg should be called only on SnowLeopard");
        return false;
    }
    if (checkPackageInDB(identifier))
        return true; // what is not there is as good as removed
    if (!m_services.privileged.isAuthorised()) {
        Alert alert;
        alert.style = Alert::Style::Informational;
        alert.title = localizedString("Sweeply could not remove some files");
        alert.text = localizedString("Please try cleaning in authorized mode!\nClick on the lock below to enter your "
                                     "user name and password.");
        alert.buttons = {localizedButton("Ok")};
        m_services.mainThread.runAndWait([&] { m_services.alerts.runAlert(alert); });
        return false;
    }
    const auto status =
        m_services.privileged.statusOfCommandWithPrivilidges(kPkgutil, onThisVolume({"--forget", identifier}), -1);
    return status && *status == 0;
}

} // namespace sweeply
