#pragma once

#include "engine/EngineServices.h"
#include "engine/ScanControllerProtocol.h"
#include "engine/ScanDelegates.h"
#include "engine/tree/Node.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace sweeply {

/// What a module has found: the tree, the figures of it, and how whoever shows it learns that it changed.
///
/// Any thread. Everything that reads or changes the tree holds the tree lock; nodes are taken out on the main thread.
class ModuleResults : public ScanControllerProtocol {
  public:
    explicit ModuleResults(EngineServices services);
    ModuleResults(const ModuleResults&) = delete;
    ModuleResults& operator=(const ModuleResults&) = delete;

    /// Not owned; set before the first run.
    void setViewDelegate(ScanViewDelegate* viewDelegate) { m_viewDelegate = viewDelegate; }
    [[nodiscard]] ScanViewDelegate* viewDelegate() const { return m_viewDelegate; }

    [[nodiscard]] const Node::Pointer& rootNode() const { return m_rootNode; }
    void addChildNode(Node::Pointer node);
    void removeNode(Node& node, bool andWaitUntilDone);
    /// Main thread.
    void removeNodeOnMainThread(Node& node);
    void setEveryObjectEnabled(bool enabled) override;

    [[nodiscard]] std::size_t childrenCount() const;
    [[nodiscard]] Node::Pointer objectAtIndex(std::size_t index) const;
    [[nodiscard]] virtual bool ifAnyEnabled() const;
    [[nodiscard]] virtual std::size_t filesFoundInEnabled() const;
    [[nodiscard]] std::uint32_t numberOfEnabledObjects() const;
    [[nodiscard]] std::uint64_t totalSize() const override;
    [[nodiscard]] std::size_t filesFound() const override { return childrenCount(); }
    [[nodiscard]] std::string statusText() const override;
    /// Is an item at `path` among the leaves below `node`?
    [[nodiscard]] bool ifAlreadyAddedFile(const std::string& path, const Node& node) const;

    /// Tells the views, once however often it is called before they look.
    void rootNodeChanged();
    void updateInterfaceAndWaitUntilDone(bool wait);

  protected:
    [[nodiscard]] const EngineServices& services() const { return m_services; }
    [[nodiscard]] std::string rootSizeText() const;
    /// Empties the tree for the next scan, whatever was checked in it.
    void forgetEverything();
    /// Not run any more once this module is gone.
    void runOnMainThreadLater(std::function<void()> call);

  private:
    EngineServices m_services;
    ScanViewDelegate* m_viewDelegate = nullptr;
    Node::Pointer m_rootNode; ///< its contents are guarded by the tree lock
    std::atomic<bool> m_viewUpdatePending{false};

    /// Calls that wait for the main thread look whether this is still there; it goes on the main thread.
    std::shared_ptr<const bool> m_isAlive = std::make_shared<const bool>(true);
};

} // namespace sweeply
