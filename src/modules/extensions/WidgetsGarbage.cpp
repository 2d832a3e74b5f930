#include "modules/extensions/WidgetsGarbage.h"

#include "appcore/FolderConstants.h"
#include "appcore/LoginItems.h"
#include "appcore/ResourceFinder.h"
#include "appcore/ownership/TermAutomaton.h"
#include "appcore/processes/LaunchItems.h"
#include "appcore/sizes/DiskSizes.h"
#include "platform/BundleInfo.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <algorithm>

namespace sweeply {

namespace {

constexpr std::uint32_t kFirstSteps = 100;
constexpr std::string_view kWidgetPrefix = "widget-";

} // namespace

WidgetsGarbage::WidgetsGarbage(const ModuleServices& services, ScanCoordinator& coordinator, Parts parts)
    : ADScanControllerView(services.engine, coordinator), m_garbage(services), m_parts(parts),
      m_widgetsNode(Node::nodeWithName(localizedString("Widgets"), Icon::WidgetLeftovers, 0, 0, {}, true)),
      m_startupItemsNode(Node::nodeWithName(localizedString("Startup Items"), Icon::StartupItem, 0, 0, {}, true)) {
    rootNode()->setName(localizedString("WidgetsGarbage"));
    initUserDefaults();
}

void WidgetsGarbage::scanThread() {
    prepareForScan();
    rescan();
}

void WidgetsGarbage::rescan() {
    {
        const std::lock_guard lock(services().treeLock);
        for (const auto& category : {m_widgetsNode, m_startupItemsNode})
            category->killChildren();
    }
    setTotalProcentage(kFirstSteps);
    if (m_garbage.part.includesUsersOwn())
        scanForUsersOwn();
    if (!stopped())
        scanForLaunchDeamons();
    sleepAfterItem();
}

void WidgetsGarbage::scanForUsersOwn() {
    const TermAutomaton installed(scanForWidgetsPlists());
    incProgress();
    if (!stopped())
        findUnnecessaryWidgetsPrefferences(installed);
    if (!stopped())
        scanForLoginItems();
}

void WidgetsGarbage::itemIsDone() {
    incProgress();
    waitWhilePaused();
}

// Widgets

std::vector<std::string> WidgetsGarbage::scanForWidgetsPlists() {
    std::vector<std::string> identifiers;
    for (const auto& folder : {m_garbage.folders.SYSTEMWIDGETSPATH, m_garbage.folders.USERWIDGETSPATH}) {
        for (const auto& path : findPlistsIn(normalisedPath(m_garbage.folders.expandTilde(folder)))) {
            const auto list = propertyListAtPath(m_garbage.files, path);
            if (!list) {
                services().log.log(formatText("Error : %@", {list.error().reason}));
                reportProblem(list.error());
            } else if (const auto* identifier = list->findString("CFBundleIdentifier")) {
                identifiers.push_back(*identifier);
            }
        }
    }
    return identifiers;
}

std::vector<std::string> WidgetsGarbage::findPlistsIn(const std::string& folder) {
    std::vector<std::string> found;
    auto walk = m_garbage.files.enumeratorAtPath(folder);
    while (const auto entry = walk.next()) {
        if (stopped())
            break;
        if (entry->type == FileType::Directory && pathExtension(entry->path) == "lproj")
            walk.skipDescendants();
        else if (lastPathComponent(entry->path) == "Info.plist")
            found.push_back(joinedPath(folder, entry->path));
    }
    return found;
}

void WidgetsGarbage::findUnnecessaryWidgetsPrefferences(const TermAutomaton& installed) {
    const std::string folder = normalisedPath(m_garbage.folders.expandTilde(m_garbage.folders.USERPREFERENCESPATH));
    const auto entries = m_garbage.files.contentsOfDirectoryAtPath(folder);
    if (!entries)
        return;
    incTotalProcentageBy(static_cast<std::uint32_t>(entries->size()));
    for (const auto& entry : *entries) {
        if (stopped())
            return;
        if (entry.type != FileType::Directory && pathExtension(entry.name) == "plist" &&
            nameWithoutExtension(entry.name).find(kWidgetPrefix) != std::string_view::npos &&
            !installed.occursIn(entry.name))
            addWidgetGarbageRecordWithPath(joinedPath(folder, entry.name));
        itemIsDone();
    }
}

void WidgetsGarbage::addWidgetGarbageRecordWithPath(const std::string& path) {
    setCurrentItem(path);
    const auto file = nameWithoutExtension(path);
    const auto shortName = pathExtension(file);
    auto node = Node::nodeWithName(shortName.empty() ? file : shortName, Icon::WidgetLeftovers, 0,
                                   m_garbage.sizes.measure(path), path, true);
    node->setEvidence(
        SharedEvidence(EvidenceRule::OrphanedWidget, file.substr(file.find(kWidgetPrefix) + kWidgetPrefix.size())));
    addTo(m_widgetsNode, std::move(node));
}

// What starts by itself

void WidgetsGarbage::scanForLoginItems() {
    const auto items = m_parts.loginItems.loginItemsList();
    incTotalProcentageBy(static_cast<std::uint32_t>(items.size()));
    for (const auto& item : items) {
        if (stopped())
            return;
        const std::string path = LoginItems::pathOf(item);
        if (path.empty())
            services().log.log("Skipped a login item without a path");
        else if (m_garbage.files.isMissingAtPath(path))
            addStartupItem(path, {}, nodetype::kLoginItem, path);
        itemIsDone();
    }
}

void WidgetsGarbage::scanForLaunchDeamons() {
    auto files = m_parts.launchItems.getAllLaunchFiles();
    std::erase_if(files, [this](const std::string& path) { return !m_garbage.part.includes(path); });
    incTotalProcentageBy(static_cast<std::uint32_t>(files.size()));
    for (const auto& path : files) {
        if (stopped())
            return;
        setCurrentItem(path);
        const auto definition = m_parts.launchItems.definitionAtPath(path);
        if (!definition)
            reportProblem(definition.error());
        else if (!definition->program)
            reportProblem({ErrorKind::Damaged, path, "names no program"});
        else if (m_parts.launchItems.isProgramMissing(*definition))
            addStartupItem(path, m_garbage.sizes.measure(path), nodetype::kLaunchItem, *definition->program);
        itemIsDone();
    }
}

void WidgetsGarbage::addStartupItem(const std::string& path, const MeasuredItem& item, std::int8_t type,
                                    const std::string& program) {
    auto node =
        Node::nodeWithName(lastPathComponent(path), Icon::ItsOwn, 0, item, path, !isOnAbsentVolume(program), type);
    node->setEvidence(SharedEvidence(
        type == nodetype::kLoginItem ? EvidenceRule::DeadLoginItem : EvidenceRule::DeadLaunchItem, program));
    addTo(m_startupItemsNode, std::move(node));
}

bool WidgetsGarbage::isOnAbsentVolume(const std::string& path) const {
    constexpr std::string_view kVolumes = "/Volumes/";
    if (!path.starts_with(kVolumes))
        return false;
    const auto end = path.find('/', kVolumes.size());
    return !m_garbage.files.directoryExistsAtPath(path.substr(0, end));
}

void WidgetsGarbage::addTo(const Node::Pointer& category, Node::Pointer child) {
    const std::lock_guard lock(services().treeLock);
    const bool isChecked = child->ifEnabled();
    if (!category->parentNode()) {
        category->killChildren();
        category->setEnabledWithoutRecalc(isChecked);
        rootNode()->addChild(category);
    } else if (isChecked) {
        category->setEnabledWithoutRecalc(true);
    }
    category->addChild(std::move(child));
    incFoundObjectsCount();
    updateInterfaceAndWaitUntilDone(false);
}

} // namespace sweeply
