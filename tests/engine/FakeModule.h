#pragma once

#include "engine/ADGroupScanController.h"

#include <functional>
#include <set>

namespace sweeply {

/// A module whose hooks are what the test says. `Base` is ADScanController for a sub-module of a group, or
/// ADScanControllerView.
template<typename Base>
class FakeModule final : public Base {
  public:
    template<typename... Arguments>
    explicit FakeModule(std::string defaultsKey, Arguments&&... arguments)
        : Base(std::forward<Arguments>(arguments)...), key(std::move(defaultsKey)) {
        this->rootNode()->setEnabledWithoutRecalc(true);
    }
    ~FakeModule() override { this->stopAndJoin(); }

    std::string defaultsName() const override { return key; }
    bool needToSetUserDefalts() const override { return true; }
    bool priviligesNeededToClean() const override { return needsRights; }
    bool shouldRespondToDragEvents() const override { return true; }
    bool ifScanRunning() const override { return seemsToScan || Base::ifScanRunning(); }
    bool isRootNodeCleanable(Node& node) override { return &node != uncleanable; }
    void analyzeFile(const std::string& path) override { this->addChildNode(leaf(path, 1)); }

    static Node::Pointer leaf(const std::string& path, std::uint64_t size, bool enabled = true) {
        return Node::nodeWithName(path, Icon::None, 0, size, path, enabled);
    }
    static Node::Pointer group(const std::string& name, bool enabled, const std::vector<Node::Pointer>& children) {
        auto node = Node::nodeWithName(name, Icon::None, 0, 0, {}, enabled);
        for (const auto& child : children)
            node->addChild(child);
        return node;
    }

    std::string key;
    bool needsRights = false;
    bool seemsToScan = false; ///< while a test does what the scan's thread would
    const Node* uncleanable = nullptr;
    std::function<void(FakeModule&)> whenScanning = [](FakeModule&) {};
    /// Called for each item; the default removes nothing and says that it did.
    std::function<bool(const std::string&)> whenCleaning = [](const std::string&) { return true; };
    std::set<std::string> immovable; ///< paths that cannot be removed
    std::vector<std::string> cleaned;

  protected:
    void scanThread() override {
        this->prepareForScan();
        whenScanning(*this);
    }
    ChangeOutcome cleanThisNode(Node& node) override {
        cleaned.push_back(node.path());
        const bool isGone = !immovable.contains(node.path()) && whenCleaning(node.path());
        return {isGone ? OutcomeKind::Removed : OutcomeKind::Failed};
    }

  private:
    std::string className() const override { return "FakeModule"; }
};

using FakeView = FakeModule<ADScanControllerView>;
using FakeChild = FakeModule<ADScanController>;

class FakeGroup final : public ADGroupScanController {
  public:
    using ADGroupScanController::ADGroupScanController;
    FakeChild& add(const std::string& key, EngineServices engine) {
        auto child = std::make_unique<FakeChild>(key, engine);
        auto& added = *child;
        addScanController(std::move(child));
        return added;
    }
    std::string defaultsName() const override { return "Group"; }

  private:
    std::string className() const override { return "FakeGroup"; }
};

} // namespace sweeply
