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
        if (const auto& failure = walk.failure())
            reportProblem({failure->kind, joinedPath(item, failure->path), failure->reason});
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

void ApplicationUninstaller::addApplicationAtPath(const std::string& path) {
    const auto identifier = m_uninstaller.applications.bundleIDForAppWithPath(path).value_or(std::string());
    const bool isOfTheSystem = identifier.find("com.apple") != std::string::npos;
    const auto application = Node::nodeWithName(nameWithoutExtension(path), Icon::ItsOwn, 0, 0, path, true,
                                                isOfTheSystem ? nodetype::kSystemApplication : std::int8_t{0});
    application->setNeedExpand(true);
    application->addChild(Node::nodeWithName(m_uninstaller.folders.abbreviateWithTilde(path), Icon::ItsOwn, 1,
                                             m_uninstaller.sizes.folderSizeAtPath(path), path, true));
    {
        const std::lock_guard lock(services().treeLock);
        rootNode()->setEnabledWithoutRecalc(true);
    }
    addChildNode(application);
    incFoundObjectsCount();
    updateInterfaceAndWaitUntilDone(false);
    std::vector<std::string> pathes{path};
    for (auto& nested : nestedApplications(m_uninstaller.files, path))
        pathes.push_back(std::move(nested));
    m_parts.finder.findAllResourcesForApplications(pathes, *application);
}

void ApplicationUninstaller::addPackageAtPath(const std::string& path) {
    const auto attributes = m_uninstaller.files.attributesOfItemAtPath(path, Links::DontFollow);
    if (!attributes || (attributes->type != FileType::Regular && attributes->type != FileType::Directory))
        return;
    const auto type = attributes->type == FileType::Regular ? Package::Type::Flat : Package::Type::Bundle;
    auto record = m_parts.packages.packageAt(std::string(lastPathComponent(path)), path, type);
    std::vector<std::string> pathes{path};
    for (auto& entry : m_parts.packages.getPackageDependencies(record, true))
        pathes.push_back(std::move(entry));
    const auto package = Node::nodeWithName(nameWithoutExtension(path), Icon::ItsOwn, 0, 0, path, true);
    package->setNeedExpand(true);
    for (const auto& entry : pathes) {
        if (const auto receipt = entry.find(kReceiptEntry); receipt != std::string::npos)
            package->addUniqueChild(
                Node::nodeWithName(entry, Icon::Package, 1, 0, entry.substr(receipt + kReceiptEntry.size()), true));
        else if (m_uninstaller.files.attributesOfItemAtPath(entry, Links::DontFollow) &&
                 m_uninstaller.files.removals().guard().reasonAgainst(entry).empty())
            package->addUniqueChild(Node::nodeWithName(m_uninstaller.folders.abbreviateWithTilde(entry), Icon::ItsOwn,
                                                       1, m_uninstaller.sizes.folderSizeAtPath(entry), entry, true));
    }
    {
        const std::lock_guard lock(services().treeLock);
        rootNode()->setEnabledWithoutRecalc(true);
    }
    addChildNode(package);
    incFoundObjectsCount();
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

void ApplicationUninstaller::startUninstallation() { globalScanController().uninstallWith({this}); }

bool ApplicationUninstaller::isRootNodeCleanable(Node& node) {
    if (!m_parts.steps.confirmsSystemApplication(node))
        return false;
    std::string path;
    {
        const std::lock_guard lock(services().treeLock);
        path = node.path();
    }
    if (m_uninstaller.applications.bundleIDForAppWithPath(path) == kOwnIdentifier) {
        if (!confirmsOwnRemoval())
            return m_parts.steps.keep(path, "stays: its removal was not confirmed");
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
