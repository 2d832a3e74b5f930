#include "modules/FolderEntries.h"

#include "appcore/sizes/DiskSizes.h"
#include "engine/IgnoreList.h"
#include "platform/CompanionFiles.h"
#include "platform/FileManager.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <utility>

namespace sweeply {

namespace {

bool isListed(const DirectoryEntry& entry) { return entry.name != ".DS_Store"; }

/// The companions of listed entries.
std::unordered_set<std::string> companionsAmong(const std::vector<DirectoryEntry>& entries, int folder) {
    std::unordered_set<std::string> all;
    for (const auto& entry : entries)
        if (entry.type == FileType::Regular && isCompanionFile(folder, entry.name))
            all.insert(entry.name);
    std::unordered_set<std::string> companions;
    for (const auto& entry : entries)
        if (!all.empty() && isListed(entry))
            companions.insert(all.extract(companionName(entry.name)));
    return companions;
}

} // namespace

RememberedNodes::RememberedNodes(const IgnoreList& ignoreList, std::string_view moduleKey, EvidenceRule rule)
    : m_evidence(rule) {
    for (auto& key : ignoreList.ignoreListForController(moduleKey))
        m_ignored.insert(std::move(key));
}

Node::Pointer RememberedNodes::nodeFor(std::string_view name, std::string path, const MeasuredItem& item) const {
    const bool isIgnored = !m_ignored.empty() && m_ignored.contains(ignoreKeyForPath(path));
    auto node = Node::nodeWithName(name, Icon::ItsOwn, 0, item, std::move(path), !isIgnored);
    node->setEvidence(m_evidence);
    node->setNeedExpand(true);
    node->setStoreState(true);
    return node;
}

void scanEntriesOfFolder(std::string_view folderPath, ADScanController& module, const ModuleServices& services,
                         const EntryRules& rules) {
    const std::string path = normalisedPath(folderPath);
    if (services.files.isMissingAtPath(path)) {
        if (const auto made = services.files.createDirectoryAtPath(path); !made)
            services.engine.log.log(made.error().message());
    }
    const auto folder = services.files.openDirectory(path);
    const auto entries = services.files.contentsOfDirectoryAtPath(path);
    if (!folder || !entries)
        return;
    module.incTotalProcentageBy(static_cast<std::uint32_t>(entries->size()));
    const RememberedNodes nodes(services.ignoreList, rules.moduleKey, rules.rule);
    std::unordered_set<std::string> companions;
    if (rules.goesWhole)
        companions = companionsAmong(*entries, folder->get());
    for (const auto& entry : *entries) {
        if (module.stopped())
            return;
        if (isListed(entry) && !companions.contains(entry.name)) {
            std::string item = joinedPath(path, entry.name);
            module.setCurrentItem(item);
            auto found = services.sizes.measureEntry(folder->get(), item);
            if (const auto companion = companionName(entry.name); !companions.empty() && companions.contains(companion))
                found.size += services.sizes.measureEntry(folder->get(), joinedPath(path, companion)).size;
            if (found.size >= rules.smallestSize)
                module.addChildNode(nodes.nodeFor(entry.name, std::move(item), found));
        }
        module.sleepAfterItem();
        module.incProgress();
        module.rootNodeChanged();
        module.waitWhilePaused();
    }
}

} // namespace sweeply
