#include "modules/devjunk/DevTrashController.h"

#include "appcore/FolderConstants.h"
#include "appcore/JunkNames.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/sizes/DiskSizes.h"
#include "engine/IgnoreList.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <array>
#include <unordered_set>

namespace sweeply {

namespace {

constexpr std::array<std::string_view, 4> devTrashFiles{"classes.nib", "info.nib", "data.dependency", "designable.nib"};
constexpr std::array<std::string_view, 0> otherFiles{};

/// What a bar shows before the number of applications is known.
constexpr std::uint32_t kWaitingForApplications = 200;

/// What is developer junk goes as a whole.
Interest interestIn(std::string_view name, FileType) {
    const auto extension = pathExtension(name);
    const bool isJunk = extension == "h" || extension == "hpp" || junk::isOneOf(devTrashFiles, name);
    return isJunk ? Interest::Item : Interest::Below;
}

Node::Pointer categoryNode(const char* title, Icon icon) {
    return Node::nodeWithName(localizedString(title), icon, 0, 0, {}, true);
}

} // namespace

DevTrashController::DevTrashController(const ModuleServices& services, ScanCoordinator& coordinator)
    : ADScanControllerView(services.engine, coordinator), m_junk(services),
      m_applicationNode(categoryNode(translatable("Development Junk"), Icon::DevelopmentJunk)),
      m_dsStoreNode(categoryNode(translatable("Finder Junk"), Icon::FinderJunk)),
      m_trashNode(categoryNode(translatable("Trashes"), Icon::Trashes)),
      m_othersNode(categoryNode(translatable("Other"), Icon::OtherJunk)),
      m_windowsNode(categoryNode(translatable("MS Windows Junk"), Icon::WindowsJunk)) {
    rootNode()->setName(localizedString("Developers Junk"));
    initUserDefaults();
}

bool DevTrashController::shouldCleanApplication(const std::string& path) {
    return !m_junk.ignoreList.applicationInList(path);
}

void DevTrashController::scanThread() {
    prepareForScan();
    setTotalProcentage(kWaitingForApplications);
    incProgress();
    auto surveys = m_junk.surveys.takePart(interestIn);
    const auto applications = m_junk.applicationsToScan(this);
    surveys.expect(applications);
    setTotalProcentage(static_cast<std::uint32_t>(applications.size()));
    {
        const std::lock_guard lock(services().treeLock);
        m_applicationNode->killChildren();
    }
    show(m_applicationNode);
    for (const auto& application : applications) {
        if (stopped())
            break;
        if (shouldCleanApplication(application)) {
            analyzeApplication(application, surveys);
            sleepAfterItem();
            waitWhilePaused();
        }
        incProgress();
    }
    hideIfEmpty(m_applicationNode);
}

void DevTrashController::analyzeFile(const std::string& path) {
    const std::string item = normalisedPath(m_junk.folders.expandTilde(path));
    if (pathExtension(item) == "app") {
        analyzeApplications({item});
        return;
    }
    const auto applications = m_junk.applications.createApplicationsArrayInPathDeep(item, this);
    incTotalProcentageBy(static_cast<std::uint32_t>(applications.size()));
    analyzeApplications(applications);
    if (!stopped())
        analyzeFolder(item);
    incProgress();
}

void DevTrashController::analyzeApplications(const std::vector<std::string>& paths) {
    show(m_applicationNode);
    auto surveys = m_junk.surveys.takePart(interestIn);
    surveys.expect(paths);
    for (const auto& application : paths) {
        if (stopped())
            break;
        if (!m_junk.ignoreList.applicationInListWithUserNotification(application))
            analyzeApplication(application, surveys);
        incProgress();
        sleepAfterItem();
        waitWhilePaused();
    }
    hideIfEmpty(m_applicationNode);
}

void DevTrashController::analyzeApplication(const std::string& path, SharedSurveys::Part& surveys) {
    setCurrentItem(path);
    {
        // What is listed already would count twice.
        const std::lock_guard lock(services().treeLock);
        if (m_applicationNode->childWithEqualPath(path))
            return;
    }
    const auto [junk, failure] = surveys.surveyOf(path, stopToken());
    if (failure)
        services().log.log(formatText("[Dev Junk] Exception %@ occured for app %@", {failure->reason, path}));
    if (junk.empty())
        return;
    const auto application = Node::nodeWithName(nameWithoutExtension(path), Icon::ItsOwn, 0, 0, path, true);
    application->setNeedExpand(true);
    for (const auto& item : junk)
        application->addInvisibleChild(itemNode(item.path, Icon::None, item.measured, m_developerFile));
    {
        const std::lock_guard lock(services().treeLock);
        m_applicationNode->addChild(application);
    }
    incFoundObjectsCount();
    updateInterfaceAndWaitUntilDone(false);
}

void DevTrashController::analyzeFolder(const std::string& path) {
    std::unordered_set<std::string> trashed;
    auto walk = m_junk.files.enumeratorAtPath(path);
    while (const auto entry = walk.next()) {
        if (stopped())
            break;
        const auto name = lastPathComponent(entry->path);
        const std::string item = joinedPath(path, entry->path);
        const auto measured = [&] { return m_junk.sizes.measureEntry(walk.folder(), item); };
        if (trashed.contains(item)) {
            walk.skipDescendants(); // what is in there goes with it, and must not count twice
        } else if (junk::isOneOf(junk::kTrash, name) || junk::isOneOf(junk::kTrashes, name)) {
            // What counts lies one level down, in the folders of users or volumes.
            const auto found = enumerateAllTrashesAtPath(m_junk.files, item);
            addObjectFromArray(found, m_trashNode);
            trashed.insert(found.begin(), found.end());
        } else if (junk::isOneOf(junk::kFinder, name)) {
            addObject({item, measured()}, m_dsStoreNode, path);
            walk.skipDescendants();
        } else if (junk::isOneOf(junk::kWindows, name)) {
            addObject({item, measured()}, m_windowsNode, path);
            walk.skipDescendants();
        } else if (junk::isOneOf(otherFiles, name)) {
            addObject({item, measured()}, m_othersNode, path);
            walk.skipDescendants();
        }
        waitWhilePaused();
    }
    hideIfEmpty(m_trashNode);
    hideIfEmpty(m_applicationNode);
}

std::vector<std::string> DevTrashController::enumerateAllTrashAtPath(const FileManager& files,
                                                                     const std::string& path) {
    std::vector<std::string> paths;
    const auto attributes = files.attributesOfItemAtPath(path, Links::DontFollow);
    if (!attributes || attributes->type != FileType::Directory)
        return paths; // a link to a folder leads to what is no trash
    const auto entries = files.contentsOfDirectoryAtPath(path);
    if (!entries)
        return paths;
    for (const auto& entry : *entries)
        paths.push_back(joinedPath(path, entry.name));
    return paths;
}

std::vector<std::string> DevTrashController::enumerateAllTrashesAtPath(const FileManager& files,
                                                                       const std::string& path) {
    std::vector<std::string> paths;
    for (const auto& folder : enumerateAllTrashAtPath(files, path)) {
        auto entries = enumerateAllTrashAtPath(files, folder);
        std::ranges::move(entries, std::back_inserter(paths));
    }
    return paths;
}

Node::Pointer DevTrashController::itemNode(const std::string& path, Icon icon, const MeasuredItem& measured,
                                           const SharedEvidence& evidence) {
    auto node = Node::nodeWithName(lastPathComponent(path), icon, 0, measured, path, true);
    node->setEvidence(evidence);
    node->setShouldWait(false);
    return node;
}

void DevTrashController::addObject(const Junk& item, const Node::Pointer& category, const std::string& folderPath) {
    setCurrentItem(item.path);
    show(category);
    auto node = itemNode(item.path, Icon::None, item.measured, m_finderFile);
    {
        const std::lock_guard lock(services().treeLock);
        auto folder = category->childWithEqualPath(folderPath);
        if (!folder) {
            folder = Node::nodeWithName(nameWithoutExtension(folderPath), Icon::ItsOwn, 0, 0, folderPath, true);
            folder->setNeedExpand(true);
            category->addChild(folder);
        }
        const auto& listed = folder->invisibleChildren();
        if (std::ranges::any_of(listed, [&](const auto& other) { return other->path() == item.path; }))
            return;
        folder->addInvisibleChild(std::move(node));
    }
    incFoundObjectsCount();
    updateInterfaceAndWaitUntilDone(false);
}

void DevTrashController::addObjectFromArray(const std::vector<std::string>& items, const Node::Pointer& category) {
    if (items.empty())
        return;
    show(category);
    for (const auto& item : items) {
        setCurrentItem(item);
        auto node = itemNode(item, Icon::ItsOwn, m_junk.sizes.measure(item), m_trash);
        {
            const std::lock_guard lock(services().treeLock);
            if (category->childWithEqualPath(item))
                continue;
            category->addChild(std::move(node));
        }
        incFoundObjectsCount();
        updateInterfaceAndWaitUntilDone(false);
    }
}

void DevTrashController::show(const Node::Pointer& category) {
    {
        const std::lock_guard lock(services().treeLock);
        if (category->parentNode())
            return;
        category->killChildren();
        category->setEnabledWithoutRecalc(true);
    }
    addChildNode(category);
}

void DevTrashController::hideIfEmpty(const Node::Pointer& category) {
    bool isShownEmpty = false;
    {
        const std::lock_guard lock(services().treeLock);
        isShownEmpty = category->parentNode() && !category->hasChildren();
    }
    if (isShownEmpty)
        removeNode(*category, false);
}

} // namespace sweeply
