#include "appcore/ownership/InstalledApplications.h"

#include "appcore/BroughtPlugins.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/receipts/PackageManager.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <set>
#include <thread>
#include <utility>

namespace sweeply {

namespace {

/// Below that a second thread costs more than it takes over.
constexpr std::size_t kWorthAThread = 50;

/// Calls `work` for each number below `count`, on two threads where there is enough to do: half of the time goes into
/// waiting for the disk or for a tool.
template<typename Work>
void forEachOnTwoThreads(std::size_t count, std::size_t worthAThread, const Work& work) {
    std::atomic<std::size_t> next{0};
    const auto run = [&] {
        for (std::size_t i = next++; i < count; i = next++)
            work(i);
    };
    const std::jthread helper = count >= worthAThread ? std::jthread(run) : std::jthread();
    run();
}

} // namespace

std::shared_ptr<const ApplicationIndex> InstalledApplications::index(const WorkControl* control) {
    (void)m_applications.createApplicationsArrayForController(control);
    if (control != nullptr && control->stopped())
        return nullptr;
    const std::lock_guard lock(m_mutex);
    if (!m_index) {
        const auto all = m_applications.getAllApllicationArray();
        const std::set<std::string> distinct(all.begin(), all.end());
        const std::vector<std::string> paths(distinct.begin(), distinct.end());
        std::vector<ApplicationTerms> terms(paths.size());
        forEachOnTwoThreads(paths.size(), kWorthAThread,
                            [&](std::size_t i) { terms[i] = m_applications.termsOfAppWithPath(paths[i]); });
        m_index = std::make_shared<const ApplicationIndex>(std::move(terms));
    }
    return m_index;
}

std::vector<std::string> InstalledApplications::bringing(const std::string& plugin, const ApplicationIndex& index) {
    const std::lock_guard lock(m_mutex);
    if (!std::exchange(m_hasPlugins, true)) {
        for (const auto& application : index.applications()) {
            for (auto& name : originalPluginsForApplication(m_files, application.path)) {
                auto& bundles = m_bringing[std::move(name)];
                if (bundles.empty() || bundles.back() != application.path)
                    bundles.push_back(application.path);
            }
        }
    }
    const auto found = m_bringing.find(plugin);
    return found == m_bringing.end() ? std::vector<std::string>() : found->second;
}

void InstalledApplications::readListings() {
    if (std::exchange(m_hasListings, true))
        return;
    auto packages = m_packages.pkgs();
    std::erase_if(packages, [](const Package& package) { return !package.appNames || package.appNames->empty(); });
    m_listings.resize(packages.size());
    forEachOnTwoThreads(packages.size(), 2, [&](std::size_t i) {
        auto& listing = m_listings[i];
        listing = {packages[i].name, *packages[i].appNames, {}};
        for (const auto& entry : m_packages.getPackageDependencies(packages[i], true))
            listing.paths.push_back(std::hash<std::string>()(entry));
        std::ranges::sort(listing.paths);
    });
}

std::vector<InstalledApplications::Installed> InstalledApplications::applicationsOf(const Listing& listing,
                                                                                    const ApplicationIndex& index) {
    std::vector<Installed> found;
    for (const auto& application : index.applications()) {
        if (std::ranges::find(listing.appNames, lastPathComponent(application.path)) != listing.appNames.end())
            found.push_back({application.path, listing.package});
    }
    return found;
}

std::vector<InstalledApplications::Installed> InstalledApplications::installedWith(const std::string& path,
                                                                                   const ApplicationIndex& index) {
    const std::lock_guard lock(m_mutex);
    readListings();
    const auto hash = std::hash<std::string>()(path);
    std::vector<Installed> found;
    for (const auto& listing : m_listings) {
        if (std::ranges::binary_search(listing.paths, hash))
            std::ranges::move(applicationsOf(listing, index), std::back_inserter(found));
    }
    return found;
}

std::vector<InstalledApplications::Installed> InstalledApplications::installedBy(const std::string& package,
                                                                                 const ApplicationIndex& index) {
    const auto known = m_packages.findPackageByName(package);
    return known && known->appNames ? applicationsOf({package, *known->appNames, {}}, index) : std::vector<Installed>();
}

} // namespace sweeply
