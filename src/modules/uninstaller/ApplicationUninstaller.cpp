#include "modules/uninstaller/ApplicationUninstaller.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "appcore/LoginItems.h"
#include "appcore/RemovalPrimitives.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "appcore/sizes/DiskSizes.h"
#include "engine/ScanCoordinator.h"
#include "formats/PropertyList.h"
#include "platform/Alerts.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/SystemLog.h"
#include "platform/SystemVersion.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr const char* kOwnIdentifier = "com.brindle.Sweeply";
constexpr std::size_t kLargestPropertyList = std::size_t{4} << 20U;

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

std::vector<std::string> ApplicationUninstaller::pathesOfApplication(const std::string& path) const {
    std::vector<std::string> pathes{path};
    auto walk = m_uninstaller.files.enumeratorAtPath(path);
    while (const auto entry = walk.next()) {
        const auto extension = pathExtension(entry->path);
        if (entry->type == FileType::Directory &&
            (extension == "lproj" || lastPathComponent(entry->path) == "Frameworks"))
            walk.skipDescendants();
        else if (extension == "app" && entry->type == FileType::Directory)
            pathes.push_back(joinedPath(path, entry->path));
    }
    return pathes;
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
    m_parts.finder.findAllResourcesForApplications(pathesOfApplication(path), *application);
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
                 m_uninstaller.files.guard().reasonAgainst(entry).empty())
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

void ApplicationUninstaller::startUninstallation() { globalScanController().uninstallWith(*this); }

bool ApplicationUninstaller::asks(const std::string& title, const std::string& text, const std::string& yes) {
    Alert alert;
    alert.style = Alert::Style::Informational;
    alert.title = title;
    alert.text = text;
    alert.buttons = {localizedButton("No"), yes};
    std::size_t answer = 0;
    services().mainThread.runAndWait([&] { answer = m_parts.alerts.runAlert(alert).button; });
    return answer == 1;
}

bool ApplicationUninstaller::isRootNodeCleanable(Node& node) {
    std::string path;
    std::string name;
    bool isOfTheSystem = false;
    std::vector<ProcessControl::Application> applications;
    {
        const std::lock_guard lock(services().treeLock);
        path = node.path();
        name = node.name();
        isOfTheSystem = node.type() == nodetype::kSystemApplication;
        for (const auto& child : node.children())
            applications.push_back({std::string(node.name()), child->path()});
    }
    if (isOfTheSystem &&
        !asks(localizedString("Deleting system application"),
              localizedFormat("\"%@\" seems to be a system application. Removing it can corrupt your system. \nDo you "
                              "want to remove it anyway?",
                              {name}),
              localizedButton("Yes")))
        return keep(path, "stays: it is a system application, and its removal was not confirmed");
    const bool isConfirmed = m_uninstaller.applications.bundleIDForAppWithPath(path) == kOwnIdentifier
                                 ? confirmsOwnRemoval()
                                 : m_parts.processes.tryToStopApplications(applications, *this);
    if (!isConfirmed)
        return keep(path, "stays: it was not confirmed, or is still running");
    if (needsRights(node))
        globalScanController().authorisationDemanded(); // who says no keeps what needs them
    return !stopped();
}

bool ApplicationUninstaller::needsRights(const Node& application) const {
    const std::lock_guard lock(services().treeLock);
    return std::ranges::any_of(application.children(), [this](const Node::Pointer& item) {
        if (!item->ifEnabled())
            return false;
        if (item->name().find(kReceiptEntry) != std::string_view::npos)
            return m_parts.version.isSnowLeopardOrBetter();
        const auto attributes = m_uninstaller.files.attributesOfItemAtPath(item->path(), Links::DontFollow);
        return attributes && ::geteuid() != 0 && attributes->owner != ::geteuid();
    });
}

bool ApplicationUninstaller::keep(const std::string& path, const std::string& reason) {
    return m_parts.removals.failed(path, {ErrorKind::Other, path, reason});
}

bool ApplicationUninstaller::confirmsOwnRemoval() {
    if (!asks(localizedString("Uninstalling Sweeply application"),
              localizedString("Sweeply is the application you are working with at this point. It will be closed and "
                              "completely removed if you click the Uninstall button.\nWould you like to uninstall "
                              "Sweeply?"),
              localizedButton("Uninstall")))
        return false;
    services().mainThread.runAndWait([this] { globalScanController().setTerminating(true); });
    return true;
}

bool ApplicationUninstaller::cleanThisNode(Node& node) {
    std::int8_t type = 0;
    std::string name;
    {
        const std::lock_guard lock(services().treeLock);
        type = node.type();
        name = node.name();
    }
    const std::string path = node.path();
    if (type == nodetype::kLoginItem)
        return m_parts.loginItems.removeLoginItemAtPath(path) || keep(path, "the login item could not be removed");
    if (type == nodetype::kLaunchItem)
        removeLaunchDaemon(path);
    if (type == nodetype::kSharedPackage &&
        !asks(localizedString("Deleting multiple application package"),
              localizedFormat("Package \"%@\" serves multiple applications. Removing it will make impossible to "
                              "uninstall or fix other applications later. It's highly recommended to leave it. Do you "
                              "want to remove it anyway?",
                              {name}),
              localizedButton("Yes")))
        return keep(path, "stays: it serves several applications, and its removal was not confirmed");
    const bool isReceipt = name.find(kReceiptEntry) != std::string::npos;
    if (isReceipt && m_parts.version.isSnowLeopardOrBetter())
        return m_parts.packages.removePkg(path) || keep(path, "the receipt could not be forgotten");
    return tryToRemoveFileAtPath(path);
}

void ApplicationUninstaller::removeLaunchDaemon(const std::string& path) {
    const auto bytes = m_uninstaller.files.contentsAtPath(path, kLargestPropertyList);
    const auto list = bytes ? plist::parse(*bytes) : tl::unexpected(bytes.error().reason);
    const auto place = m_uninstaller.files.hostPath(path);
    // On another machine's volume nothing of it is loaded here.
    if (!list || !place || !m_uninstaller.files.isHostRoot())
        return;
    const auto unloaded = m_parts.tasks.launchTaskAndGetTermStatusWithCmd("/bin/launchctl", {"unload", "-w", *place});
    const auto* label = list->findString("Label");
    if (label)
        m_parts.tasks.launchTaskAndGetTermStatusWithCmd("/bin/launchctl", {"remove", *label});
    if (!unloaded || *unloaded != 0)
        services().log.log(formatText("Failed to unload launch daemon %@", {escapedForLog(path)}));
}

} // namespace sweeply
