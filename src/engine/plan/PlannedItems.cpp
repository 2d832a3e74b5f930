#include "engine/plan/PlannedItems.h"

#include "appcore/ResourceFinder.h"
#include "appcore/changes/ChangeGate.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "engine/ADScanController.h"
#include "formats/Utf8.h"

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <utility>

namespace sweeply {

namespace {

PlannedItem itemOf(const ChangeRequest& request, bool isChecked) {
    const auto* why = request.why.get();
    return {request.path,
            std::string(request.module),
            request.kind,
            request.size,
            isChecked,
            why ? std::optional(*why) : std::nullopt,
            {request.size, request.seen}};
}

/// What a module would be asked to do with an item that it does not list any more.
ChangeRequest changeFor(const PlannedItem& item, const ADScanController& module) {
    const bool isReceipt = item.kind == ChangedKind::Receipt;
    const std::int8_t type = item.kind == ChangedKind::LoginItem    ? nodetype::kLoginItem
                             : item.kind == ChangedKind::LaunchItem ? nodetype::kLaunchItem
                                                                    : std::int8_t{0};
    const auto node = Node::nodeWithName(isReceipt ? std::string(kReceiptEntry) + item.path : std::string(), Icon::None,
                                         0, MeasuredItem{item.size, item.seen.identity}, item.path, false, type);
    if (item.why)
        node->setEvidence(SharedEvidence(*item.why));
    return module.changeFor(*node);
}

/// An application that claims the item now and did not when the plan was made; empty where there is none.
std::string newClaimantOf(const Evidence* now, const std::optional<Evidence>& planned) {
    if (!now)
        return {};
    const auto isNew = [&](const std::string& path) {
        const auto known = planned ? planned->alsoClaimedBy : std::vector<std::string>();
        return std::ranges::find(known, validUtf8(path)) == known.end();
    };
    const auto claimant = std::ranges::find_if(now->alsoClaimedBy, isNew);
    return claimant == now->alsoClaimedBy.end() ? std::string() : *claimant;
}

/// Why an item is not what the plan tells of; empty where it is.
std::string differenceOf(const ChangeRequest& now, const PlannedItem& planned) {
    if (now.kind != planned.kind || now.seen != planned.seen.identity ||
        (now.seen.isKnown() && now.size != planned.seen.size))
        return "has changed since the plan was made, and stays";
    if (const auto claimant = newClaimantOf(now.why.get(), planned.why); !claimant.empty())
        return "stays: " + claimant + " claims it since the plan was made";
    return {};
}

/// Goes over the leaves of a tree that a clean would take if they were checked.
void forEachItem(Node& node, const std::function<void(Node&)>& work) {
    for (const auto* children : {&node.children(), &node.invisibleChildren()}) {
        for (const auto& child : *children) {
            if (child->hasChildren() || child->hasInvisibleChildren())
                forEachItem(*child, work);
            else if (!child->path().empty())
                work(*child);
        }
    }
}

/// Has groups say what their items say, here and below.
void recheckGroups(Node& node) {
    bool isAnyGroup = false;
    for (const auto* children : {&node.children(), &node.invisibleChildren()}) {
        for (const auto& child : *children) {
            if (child->hasChildren() || child->hasInvisibleChildren()) {
                recheckGroups(*child);
                isAnyGroup = true;
            }
        }
    }
    node.setEnabledWithoutRecalc(node.ifAnyEnabled());
    if (!isAnyGroup)
        node.recalcSize();
}

/// What became of the checked items that a module lists still: nothing where they are what they were.
using Found = std::unordered_map<const PlannedItem*, std::optional<LeftAlone>>;

/// Checks of what a module lists exactly what is wanted and still what it was. Under the tree lock.
void checkWanted(const ADScanController& module, const std::unordered_map<std::string, const PlannedItem*>& wanted,
                 Found& found) {
    forEachItem(*module.rootNode(), [&](Node& node) {
        auto request = module.changeFor(node);
        const auto item = wanted.find(keyOf(itemOf(request, false)));
        auto difference = item == wanted.end() ? std::string() : differenceOf(request, *item->second);
        node.setEnabledWithoutRecalc(item != wanted.end() && difference.empty());
        if (item == wanted.end())
            return;
        auto& left = found[item->second];
        if (!difference.empty()) {
            Error error{ErrorKind::Other, request.path, std::move(difference)};
            left = LeftAlone{std::move(request), {OutcomeKind::Changed, std::move(error)}};
        }
    });
    recheckGroups(*module.rootNode());
    for (auto* group = module.rootNode()->parentNode(); group; group = group->parentNode())
        group->setEnabledWithoutRecalc(group->ifAnyEnabled());
}

} // namespace

std::vector<PlannedItem> itemsFoundBy(std::span<ADScanController* const> modules, TreeLock& treeLock) {
    std::vector<PlannedItem> items;
    std::unordered_map<std::string, std::size_t> numbers;
    const std::lock_guard lock(treeLock);
    for (const auto* module : modules) {
        forEachItem(*module->rootNode(), [&](const Node& node) {
            auto item = itemOf(module->changeFor(node), node.ifEnabled());
            const auto [other, isNew] = numbers.emplace(keyOf(item), items.size());
            if (isNew)
                items.push_back(std::move(item));
            else // what several applications share goes with either
                items[other->second].isChecked = items[other->second].isChecked || item.isChecked;
        });
    }
    return items;
}

std::vector<LeftAlone> checkAsPlanned(const Plan& plan, std::span<ADScanController* const> modules,
                                      const ChangeGate& gate, TreeLock& treeLock) {
    std::unordered_map<std::string, const PlannedItem*> wanted;
    for (const auto& item : plan.items) {
        if (item.isChecked)
            wanted.emplace(keyOf(item), &item);
    }
    Found found;
    {
        const std::lock_guard lock(treeLock);
        for (const auto* module : modules)
            checkWanted(*module, wanted, found);
    }
    std::vector<LeftAlone> leftAlone;
    for (const auto& item : plan.items) {
        if (const auto listed = found.find(&item); listed != found.end()) {
            if (listed->second)
                leftAlone.push_back(*std::move(listed->second));
        } else if (item.isChecked) {
            const auto module = std::ranges::find(modules, item.module, &ADScanController::moduleName);
            auto request = changeFor(item, **module);
            auto outcome = gate.outcomeOfUnlisted(request);
            leftAlone.push_back({std::move(request), std::move(outcome)});
        }
    }
    return leftAlone;
}

} // namespace sweeply
