#include "appcore/ResourceFinder.h"

#include "appcore/BroughtPlugins.h"
#include "appcore/FolderConstants.h"
#include "appcore/LoginItems.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "appcore/sizes/DiskSizes.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/StringExtras.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <map>
#include <unordered_set>

namespace sweeply {

namespace {

template<typename Found>
void moveIdentifiersFirst(std::vector<Found>& found) {
    std::ranges::stable_partition(found,
                                  [](const auto& item) { return item.evidence.rule == EvidenceRule::Identifier; });
}

} // namespace

bool ResourceFinder::isSystemFileAtPath(std::string_view path) {
    return path.find("/System/Library") != std::string_view::npos;
}

void ResourceFinder::findAllResourcesForApplications(const Paths& paths, Node& node, const Judgement& judgement) {
    constexpr Finder kFinders[] = {
        &ResourceFinder::findPreferences,      &ResourceFinder::findApplicationSupport,
        &ResourceFinder::findLoginItems,       &ResourceFinder::findPlugins,
        &ResourceFinder::findCaches,           &ResourceFinder::findLogs,
        &ResourceFinder::findLibraryPaths,     &ResourceFinder::findPDFServices,
        &ResourceFinder::findReceiptResources, &ResourceFinder::findLaunchItems,
        &ResourceFinder::findGrowlTickets,
    };
    std::vector<Search> searches;
    for (const auto& path : paths)
        searches.push_back(
            {m_services.applications.termsOfAppWithPath(m_services.folders.expandTilde(path)), node, judgement});
    for (const auto finder : kFinders) {
        for (const auto& search : searches)
            (this->*finder)(search);
    }
}

void ResourceFinder::findPreferencesForApplication(const std::string& path, Node& node, const Judgement& judgement) {
    findPreferences({m_services.applications.termsOfAppWithPath(path), node, judgement});
}

void ResourceFinder::add(std::vector<Found> found, const Search& search, Look look) {
    for (auto& [path, evidence] : found) {
        // A folder that everybody uses belongs to nobody, whatever it is called.
        if (!m_services.files.removals().guard().reasonAgainst(path).empty())
            continue;
        addJudged(Node::nodeWithName(m_services.folders.abbreviateWithTilde(path), look.icon, 1,
                                     m_services.sizes.measure(path), path, true, look.type),
                  std::move(evidence), search);
    }
}

void ResourceFinder::addJudged(Node::Pointer item, Evidence evidence, const Search& search) {
    const auto& judgement = search.judgement;
    const bool isByTerms = evidence.rule == EvidenceRule::Identifier || evidence.rule == EvidenceRule::Name ||
                           evidence.rule == EvidenceRule::Ticket;
    if (isByTerms && search.terms.path != judgement.claims.subject().bundle)
        evidence.rule = EvidenceRule::NestedApplication;
    evidence = judgement.claims.judged(item->path(), std::move(evidence));
    const std::lock_guard lock(m_treeLock);
    if (item->type() == nodetype::kLoginItem) {
        showEvidence(*item, std::move(evidence), judgement.checksWeakMatches);
        search.node.addChild(std::move(item));
    } else if (const auto listed = search.node.childWithEqualPath(item->path())) {
        if (listed->type() == 0)
            listed->setType(item->type()); // how it has to be removed, whoever found it first
        if (!listed->evidence() || listed->evidence()->strength < evidence.strength)
            showEvidence(*listed, std::move(evidence), judgement.checksWeakMatches);
    } else {
        showEvidence(*item, std::move(evidence), judgement.checksWeakMatches);
        search.node.addUniqueChild(std::move(item));
    }
    search.node.recalcSize();
}

std::shared_ptr<FolderListings> ResourceFinder::keepListings() {
    const std::lock_guard lock(m_listingsMutex);
    auto listings = m_listings.lock();
    if (!listings) {
        listings = std::make_shared<FolderListings>(m_services.files);
        m_listings = listings;
    }
    return listings;
}

std::vector<ResourceFinder::Found> ResourceFinder::matchesIn(const std::string& folder, SearchTerms terms,
                                                             const ApplicationTerms& application) {
    std::vector<Found> found;
    // A name matches only where all of its words are.
    const auto words = piecesBetweenSpaces(application.name);
    const auto longest = std::ranges::max_element(words, {}, &std::string_view::size);
    const auto listing = keepListings()->of(folder);
    for (const auto* entry :
         listing->withAnyOf({application.identifier, longest == words.end() ? std::string_view() : *longest})) {
        if (auto match = matchOf(searchedEntry(m_services.files, folder, *entry, terms), application))
            found.push_back({joinedPath(folder, entry->name), *std::move(match)});
    }
    moveIdentifiersFirst(found);
    return found;
}

void ResourceFinder::findInFolders(const SearchedFolders::Group& group, const Search& search, Look look) {
    for (const auto& folder : group.folders)
        add(matchesIn(folder, group.terms, search.terms), search, look);
}

void ResourceFinder::findPreferences(const Search& search) {
    findInFolders(m_services.searched.preferences, search, {});
    findInFolders(m_services.searched.hostPreferences, search, {});
}

void ResourceFinder::findApplicationSupport(const Search& search) {
    findInFolders(m_services.searched.applicationSupport, search, {});
}

void ResourceFinder::findLibraryPaths(const Search& search) { findInFolders(m_services.searched.library, search, {}); }

void ResourceFinder::findCaches(const Search& search) { findInFolders(m_services.searched.caches, search, {}); }

void ResourceFinder::findLogs(const Search& search) { findInFolders(m_services.searched.logs, search, {}); }

void ResourceFinder::findPDFServices(const Search& search) {
    findInFolders(m_services.searched.pdfServices, search, {Icon::ItsOwn});
}

void ResourceFinder::findGrowlTickets(const Search& search) {
    findInFolders(m_services.searched.growlTickets, search, {Icon::ItsOwn});
}

void ResourceFinder::findLaunchItems(const Search& search) {
    const auto& group = m_services.searched.launchItems;
    const auto& bundle = search.judgement.claims.subject().bundle;
    for (const auto& folder : group.folders) {
        auto found = matchesIn(folder, group.terms, search.terms);
        for (auto& [path, evidence] : found) {
            auto program = programOfLaunchItem(m_services.launchItems, m_services.folders, path);
            if (isInside(program, bundle))
                evidence = {EvidenceRule::LaunchItem, EvidenceStrength::Certain, std::move(program)};
        }
        add(std::move(found), search, {Icon::ItsOwn, nodetype::kLaunchItem});
    }
}

void ResourceFinder::findPlugins(const Search& search) {
    // Where none is installed there is no need to look through a bundle, which may be a big one.
    if (std::ranges::all_of(m_services.applications.pluginsPaths(),
                            [this](const auto& folder) { return !m_services.files.enumeratorAtPath(folder).next(); }))
        return;
    const auto originals = originalPluginsForApplication(m_services.files, search.terms.path);
    if (originals.empty())
        return;
    const std::unordered_set<std::string_view> wanted(originals.begin(), originals.end());
    for (const auto& folder : m_services.applications.pluginsPaths()) {
        // The first of each name, in the order of the bundle. One walk serves all names.
        std::map<std::string, std::string, std::less<>> first;
        auto walk = m_services.files.enumeratorAtPath(folder);
        while (const auto entry = walk.next()) {
            const auto name = lastPathComponent(entry->path);
            if (wanted.contains(name))
                first.try_emplace(std::string(name), joinedPath(normalisedPath(folder), entry->path));
        }
        for (const auto& original : originals) {
            if (auto found = first.extract(original))
                add({{std::move(found.mapped()), {EvidenceRule::BroughtPlugin, EvidenceStrength::Certain, original}}},
                    search, {Icon::ItsOwn});
        }
    }
}

void ResourceFinder::findLoginItems(const Search& search) {
    for (const auto& item : m_services.loginItems.loginItemsList()) {
        if (LoginItems::pathOf(item) != search.terms.path)
            continue;
        addJudged(Node::nodeWithName(localizedString("Startup Item"), Icon::StartupItem, 1, 0, search.terms.path, true,
                                     nodetype::kLoginItem),
                  {EvidenceRule::LoginItem, EvidenceStrength::Certain, search.terms.path}, search);
    }
}

void ResourceFinder::findReceiptResources(const Search& search) {
    const auto& [path, identifier, appName] = search.terms;
    if (!PackageManager::isNormalAppleApplication(identifier))
        return;
    if (appName.empty()) {
        m_services.log.log(formatText("Failed to get app name for %@", {path}));
        return;
    }
    auto packages = m_services.packages.findPackageByAppName(formatText("%@.app", {appName}));
    if (packages.empty())
        packages = m_services.packages.findPackageByAppName(std::string(lastPathComponent(path)));
    for (const auto& package : packages) {
        if (!m_services.packages.doesPackageBelongToAppWithPath(path, package))
            continue;
        const Evidence evidence{EvidenceRule::Receipt, EvidenceStrength::Certain, package.name};
        // A package of several applications owns the others' files as well.
        std::vector<Found> found;
        for (const auto& entry : m_services.packages.getPackageDependencies(package, true)) {
            const bool isReceipt = entry.find(kReceiptEntry) != std::string::npos;
            if (!isReceipt && !isSystemFileAtPath(entry) && (!package.isMultiApp() || entry == path) &&
                m_services.files.attributesOfItemAtPath(entry, Links::DontFollow))
                found.push_back({entry, evidence});
        }
        add(std::move(found), search, {Icon::Package});
        const std::int8_t type = package.isMultiApp() ? nodetype::kSharedPackage : std::int8_t{0};
        if (m_services.packages.hasDatabase())
            addJudged(Node::nodeWithName(std::string(kReceiptEntry) + package.name, Icon::Package, 1, 0, package.name,
                                         true, type),
                      evidence, search);
        else if (!package.path.empty())
            add({{package.path, evidence}}, search, {Icon::Package, type});
    }
}

} // namespace sweeply
