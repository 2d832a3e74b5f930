#include "modules/uninstaller/ApplicationUninstaller.h"

#include "appcore/FolderConstants.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "appcore/sizes/DiskSizes.h"
#include "engine/ScanCoordinator.h"
#include "modules/uninstaller/NestedApplications.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kOwnIdentifier = "com.brindle.Sweeply";

} // namespace

ApplicationUninstaller::ApplicationUninstaller(const ModuleServices& services, ScanCoordinator& coordinator,
                                               Parts parts)
    : ADScanControllerView(services.engine, coordinator), m_uninstaller(services), m_parts(parts) {
    rootNode()->setEnabledWithoutRecalc(false);
    rootNode()->setName(localizedString("ApplicationUninstaller"));
}

// Adding

void ApplicationUninstaller::analyzeFiles(const std::vector<std::string>& paths) {
    const auto listings = m_parts.finder.keepListings();
    ADScanControllerView::analyzeFiles(paths);
    if (childrenCount() > 1)
        reconsiderClaims(); // what claimed something may go itself now
}

void ApplicationUninstaller::analyzeFile(const std::string& path) {
    const std::string item = normalisedPath(m_uninstaller.folders.expandTilde(path));
    std::vector<std::string> found;
    const auto isWanted = [](std::string_view name) { return name.ends_with(".app") || name.ends_with(".pkg"); };
    if (!m_uninstaller.files.attributesOfItemAtPath(item, Links::DontFollow))
        return;
    if (isWanted(item)) {
        found.push_back(item);
    } else {
        auto walk = m_uninstaller.files.enumeratorAtPath(item);
        while (const auto entry = walk.next()) {
            if (stopped())
                return;
            if (!isWanted(entry->path))
                continue;
            walk.skipDescendants();
            found.push_back(joinedPath(item, entry->path));
        }
    }
    incTotalProcentageBy(static_cast<std::uint32_t>(found.size()));
    for (const auto& record : found) {
        if (stopped())
            return;
        setCurrentItem(record);
        if (!isListed(record)) {
            if (record.ends_with(".pkg"))
                addPackageAtPath(record);
            else
                addApplicationAtPath(record);
        }
        incProgress();
        updateInterfaceAndWaitUntilDone(false);
        waitWhilePaused();
    }
}

bool ApplicationUninstaller::isListed(const std::string& path) const {
    const std::lock_guard lock(services().treeLock);
    return rootNode()->childWithEqualPath(path) != nullptr;
}

Claims::Subject ApplicationUninstaller::subjectAt(const std::string& path) const {
    Claims::Subject subject{path, m_uninstaller.applications.bundleIDForAppWithPath(path).value_or(std::string()), {}};
    const std::lock_guard lock(services().treeLock);
    for (const auto& entry : rootNode()->children()) {
        for (const auto& item : entry->children()) {
            // An application goes with its own entry, or with the package that brought it.
            if (item->ifEnabled() && pathExtension(item->path()) == "app" && item->type() != nodetype::kLoginItem)
                subject.going.insert(item->path());
        }
    }
    return subject;
}

void ApplicationUninstaller::addEntry(const Node::Pointer& entry) {
    {
        const std::lock_guard lock(services().treeLock);
        rootNode()->setEnabledWithoutRecalc(true);
    }
    entry->setNeedExpand(true);
    addChildNode(entry);
    incFoundObjectsCount();
    updateInterfaceAndWaitUntilDone(false);
}

void ApplicationUninstaller::addApplicationAtPath(const std::string& path) {
    const auto claims = m_parts.ownership.claimsOn(subjectAt(path), this);
    if (!claims)
        return;
    const bool isOfTheSystem = claims->subject().identifier.find("com.apple") != std::string::npos;
    const auto application = Node::nodeWithName(nameWithoutExtension(path), Icon::ItsOwn, 0, 0, path, true,
                                                isOfTheSystem ? nodetype::kSystemApplication : std::int8_t{0});
    auto contents = contentsOfBundle(m_uninstaller.sizes, path);
    const auto bundle = Node::nodeWithName(m_uninstaller.folders.abbreviateWithTilde(path), Icon::ItsOwn, 1,
                                           contents.measured, path, true);
    const SharedEvidence evidence(EvidenceRule::Bundle, claims->subject().identifier);
    application->setEvidence(evidence);
    bundle->setEvidence(evidence);
    application->addChild(bundle);
    addEntry(application);
    std::vector<std::string> pathes{path};
    std::ranges::move(contents.applications, std::back_inserter(pathes));
    m_parts.finder.findAllResourcesForApplications(pathes, *application,
                                                   {*claims, m_parts.ownership.checksWeakMatches()});
}

void ApplicationUninstaller::addPackageAtPath(const std::string& path) {
    const auto attributes = m_uninstaller.files.attributesOfItemAtPath(path, Links::DontFollow);
    if (!attributes || (attributes->type != FileType::Regular && attributes->type != FileType::Directory))
        return;
    const auto type = attributes->type == FileType::Regular ? Package::Type::Flat : Package::Type::Bundle;
    const std::string name(lastPathComponent(path));
    const auto entries = m_parts.packages.getPackageDependencies(m_parts.packages.packageAt(name, path, type), true);
    auto subject = subjectAt(path);
    // What the package installed is the package's own.
    std::ranges::copy_if(entries, std::inserter(subject.going, subject.going.end()),
                         [](const auto& entry) { return pathExtension(entry) == "app"; });
    const auto claims = m_parts.ownership.claimsOn(std::move(subject), this);
    if (!claims)
        return;
    const auto package = Node::nodeWithName(nameWithoutExtension(path), Icon::ItsOwn, 0, 0, path, true);
    const auto add = [&](const std::string& title, const std::string& item, const MeasuredItem& measured, Icon icon,
                         EvidenceRule rule) {
        auto evidence = claims->judged(item, {rule, EvidenceStrength::Certain, name});
        auto node = Node::nodeWithName(title, icon, 1, measured, item, true);
        showEvidence(*node, std::move(evidence), m_parts.ownership.checksWeakMatches());
        package->addUniqueChild(std::move(node));
    };
    const auto addFile = [&](const std::string& file, EvidenceRule rule) {
        if (m_uninstaller.files.attributesOfItemAtPath(file, Links::DontFollow) &&
            m_uninstaller.files.removals().guard().reasonAgainst(file).empty())
            add(m_uninstaller.folders.abbreviateWithTilde(file), file, m_uninstaller.sizes.measure(file), Icon::ItsOwn,
                rule);
    };
    package->setEvidence(SharedEvidence(EvidenceRule::Package, name));
    addFile(path, EvidenceRule::Package);
    for (const auto& entry : entries) {
        if (const auto receipt = entry.find(kReceiptEntry); receipt != std::string::npos)
            add(entry, entry.substr(receipt + kReceiptEntry.size()), {}, Icon::Package, EvidenceRule::Receipt);
        else
            addFile(entry, EvidenceRule::Receipt);
    }
    package->recalcSize();
    addEntry(package);
}

void ApplicationUninstaller::reconsiderClaims() {
    std::vector<Node::Pointer> entries;
    {
        const std::lock_guard lock(services().treeLock);
        entries = rootNode()->children();
    }
    for (const auto& entry : entries)
        reconsiderClaimsOn(*entry);
}

void ApplicationUninstaller::reconsiderClaimsOn(Node& entry) {
    struct Item {
        Node::Pointer node;
        std::string path;
        Evidence evidence;
    };
    std::vector<Item> items;
    std::string path;
    {
        const std::lock_guard lock(services().treeLock);
        path = entry.path();
        for (const auto& node : entry.children()) {
            if (const auto* evidence = node->evidence())
                items.push_back({node, node->path(), *evidence});
        }
    }
    // Something is listed, so the applications are known by now.
    const auto claims = m_parts.ownership.claimsOn(subjectAt(path), nullptr);
    const bool checksWeakMatches = m_parts.ownership.checksWeakMatches();
    for (auto& item : items) {
        auto judged = claims->judged(item.path, item.evidence);
        const std::lock_guard lock(services().treeLock);
        if (isCheckedAtFirst(judged, checksWeakMatches) != !item.node->isCheckedAlone()) {
            showEvidence(*item.node, std::move(judged), checksWeakMatches);
            entry.recalcSize();
        } else if (judged != item.evidence) {
            item.node->setEvidence(SharedEvidence(std::move(judged)));
        }
    }
}

void ApplicationUninstaller::showDropImageView() {
    {
        const std::lock_guard lock(services().treeLock);
        rootNode()->killChildren();
        rootNode()->setEnabledWithoutRecalc(false);
    }
    refreshInterface();
}

// Removing

void ApplicationUninstaller::startUninstallation() {
    if (m_parts.question.confirms(*this))
        globalScanController().uninstallWith({this});
}

bool ApplicationUninstaller::isRootNodeCleanable(Node& node) {
    if (!m_parts.steps.confirmsSystemApplication(node, *this))
        return false;
    std::string path;
    {
        const std::lock_guard lock(services().treeLock);
        path = node.path();
    }
    if (m_uninstaller.applications.bundleIDForAppWithPath(path) == kOwnIdentifier) {
        if (!confirmsOwnRemoval())
            return m_parts.steps.stays(node, *this, "stays: its removal was not confirmed");
    } else if (!m_parts.steps.stopsApplications(node, *this)) {
        return false;
    }
    m_parts.steps.demandRights(node, *this);
    return !stopped();
}

bool ApplicationUninstaller::confirmsOwnRemoval() {
    if (!m_parts.steps.asks(
            localizedString("Uninstalling Sweeply application"),
            localizedString("Sweeply is the application you are working with at this point. It will be closed and "
                            "completely removed if you click the Uninstall button.\nWould you like to uninstall "
                            "Sweeply?"),
            localizedButton("Uninstall")))
        return false;
    services().mainThread.runAndWait([this] { globalScanController().setTerminating(true); });
    return true;
}

} // namespace sweeply
