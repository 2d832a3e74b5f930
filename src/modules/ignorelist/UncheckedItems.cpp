#include "modules/ignorelist/UncheckedItems.h"

#include "appcore/SWApplicationCore.h"
#include "engine/IgnoreList.h"
#include "engine/tree/Node.h"
#include "modules/ignorelist/IgnoreListPreferences.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

/// This module remembers applications, which may move, and not paths.
constexpr std::string_view kLanguagesModule = "CleanLanguageTranslations";

std::vector<std::string> textsIn(const plist::Value* list) {
    return list ? plist::textsOf(*list) : std::vector<std::string>();
}

} // namespace

UncheckedItems::UncheckedItems(UserDefaults& defaults, const SWApplicationCore& applications, SystemLog& log)
    : m_defaults(defaults), m_applications(applications), m_log(log) {}

void UncheckedItems::fetchOthersChanges() {
    // All lists are one value: without this, what another Sweeply remembered since we read it would be forgotten.
    (void)m_defaults.synchronize();
}

plist::Dictionary UncheckedItems::storedLists() const {
    auto stored = m_defaults.objectForKey(ignorelist::kDisabledNodes);
    auto* lists = stored ? stored->asDictionary() : nullptr;
    return lists ? std::move(*lists) : plist::Dictionary();
}

std::vector<std::string> UncheckedItems::ignoreListForController(std::string_view moduleKey) const {
    return textsIn(storedLists().find(moduleKey));
}

std::vector<std::string> UncheckedItems::moduleKeys() const {
    std::vector<std::string> keys;
    const auto lists = storedLists();
    for (const auto& [key, list] : lists.members())
        keys.push_back(key);
    return keys;
}

std::vector<std::string> UncheckedItems::keysOf(const std::vector<const Node*>& nodes,
                                                std::string_view moduleKey) const {
    std::vector<std::string> keys;
    for (const Node* node : nodes) {
        std::string key = moduleKey == kLanguagesModule
                              ? m_applications.bundleIDForAppWithPath(node->path()).value_or(std::string())
                              : ignoreKeyForPath(node->path());
        if (key.empty())
            m_log.log("Node key in ignore list is nil");
        else
            keys.push_back(std::move(key));
    }
    return keys;
}

void UncheckedItems::addToIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view moduleKey) {
    addKeys(keysOf(nodes, moduleKey), moduleKey);
}

void UncheckedItems::removeFromIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view moduleKey) {
    removeKeys(keysOf(nodes, moduleKey), moduleKey);
}

std::size_t UncheckedItems::addKeys(const std::vector<std::string>& keys, std::string_view moduleKey) {
    if (keys.empty())
        return 0;
    std::lock_guard lock(m_mutex);
    fetchOthersChanges();
    auto lists = storedLists();
    auto remembered = textsIn(lists.find(moduleKey));
    remembered.insert(remembered.end(), keys.begin(), keys.end());
    store(std::move(lists), moduleKey, remembered);
    return keys.size();
}

std::size_t UncheckedItems::removeKeys(const std::vector<std::string>& keys, std::string_view moduleKey) {
    std::lock_guard lock(m_mutex);
    fetchOthersChanges();
    auto lists = storedLists();
    if (!lists.find(moduleKey))
        return 0;
    auto remembered = textsIn(lists.find(moduleKey));
    auto sorted = keys;
    std::ranges::sort(sorted);
    const auto removed =
        std::erase_if(remembered, [&](const std::string& key) { return std::ranges::binary_search(sorted, key); });
    store(std::move(lists), moduleKey, remembered);
    return removed;
}

void UncheckedItems::store(plist::Dictionary lists, std::string_view moduleKey, const std::vector<std::string>& keys) {
    lists.set(moduleKey, plist::arrayOf(keys));
    m_defaults.setObject(ignorelist::kDisabledNodes, std::move(lists));
    // At once: a person who keeps an item must find it kept even if the power fails next. A failure is logged by the
    // preferences themselves.
    (void)m_defaults.synchronize();
}

} // namespace sweeply
