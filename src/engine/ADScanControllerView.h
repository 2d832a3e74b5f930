#pragma once

#include "engine/ADScanController.h"
#include "engine/ResultViews.h"

#include <atomic>
#include <string>
#include <vector>

namespace sweeply {

class ScanCoordinator;
class ScanObject;

/// A module with results of its own on screen: it turns clicks into changes of the tree, keeps the ignore list in step
/// and hands removals to the coordinator. Its own delegate and view delegate. What a click does belongs to the main
/// thread.
class ADScanControllerView : public ADScanController, public ScanDelegate, public ScanViewDelegate {
  public:
    /// The coordinator outlives every module.
    ADScanControllerView(EngineServices services, ScanCoordinator& globalScanController);

    [[nodiscard]] ScanCoordinator& globalScanController() const { return m_globalScanController; }
    /// The module's row in the list; not owned.
    void setScanObject(ScanObject* scanObject) { m_scanObject = scanObject; }
    [[nodiscard]] ScanObject* scanObject() const { return m_scanObject; }

    // Views, attached while they exist; not owned

    void setContentOutline(ContentOutline* outline) { m_contentOutline = outline; }
    [[nodiscard]] ContentOutline* contentOutline() const { return m_contentOutline; }
    void setContentTable(ContentTable* table) { m_contentTable = table; }
    [[nodiscard]] ContentTable* contentTable() const { return m_contentTable; }
    /// Has the main window show this module.
    void activate();
    /// The main window is about to show it: switches the coordinator to the module's mode.
    virtual void willSwithToYourView();
    void updateViews();
    [[nodiscard]] virtual bool shouldBeDragSource() const { return false; }
    /// Whose results are on screen for this module: its own, unless it only stands for others.
    [[nodiscard]] virtual ADScanControllerView& shownController() { return *this; }
    /// The target's paths of what goes with an item without being shown below it, in the order in which it goes. Empty
    /// for an item that is just what its own path says.
    [[nodiscard]] virtual std::vector<std::string> pathsBehind(const Node& node) const;
    /// Items that a removal would take away.
    [[nodiscard]] virtual std::size_t filesFoundForRemove() const { return filesFound(); }
    /// Starts removing what is checked, in a module that uninstalls.
    virtual void startUninstallation() {}
    /// The results are empty: a module with an area to drop files on shows it.
    virtual void showDropImageView() {}

    // What the person does

    /// Scans this module alone. Like quickClean, ignored while it scans or anything cleans.
    virtual void quickScan();
    void quickClean();
    void checkAll() { checkEverything(true); }
    void checkNone() { checkEverything(false); }
    /// A click on a check box of the outline. Remembers the choice for nodes that ask for it.
    void toggleOutlineItem(Node& node);
    /// A click on a check box of the table.
    void toggleTableRow(std::size_t row);
    /// All selected take the opposite of the first one's mark, so that a mixed selection becomes uniform.
    void checkSelectedItems(const std::vector<Node::Pointer>& items);
    void checkSelectedRows(const std::vector<std::size_t>& rows);
    /// Takes them off the list; nothing is deleted on disk. Refused during a run.
    void removeSelectedItems(const std::vector<Node::Pointer>& items);
    void removeSelectedRows(const std::vector<std::size_t>& rows);
    void sortDescriptorsDidChange(const std::vector<SortDescriptor>& descriptors);
    /// May files be dropped now?
    [[nodiscard]] bool validateDrop() const;
    /// The paths of dragged rows, in order.
    [[nodiscard]] std::vector<std::string> pathsOfRows(const std::vector<std::size_t>& rows) const;

    void removedAmoutOfSpace(std::uint64_t bytes);

    // As its own delegate

    void scanIsFinished(ADScanController& controller) override;
    [[nodiscard]] bool ifGlobalCleanRunning() const override;
    std::optional<bool> authorisationDemanded() override;
    void staysWithoutRights(ADScanController& controller) override;
    ChangeOutcome perform(const ChangeRequest& request) override;
    [[nodiscard]] bool showsResults() const override { return m_contentOutline || m_contentTable; }
    void updateView() override { updateViews(); }
    void updatedNode(Node&) override { updateViews(); }
    void refreshInterface() override;

  protected:
    virtual void checkEverything(bool enabled);
    /// The person checked, unchecked or took items off the list. Without the tree lock.
    virtual void checkMarksChanged() {}

  private:
    /// Does this module scan, or anything clean?
    [[nodiscard]] bool isBusy() const;
    /// A click on the box of a part that has no results yet can only mean its switch. Under the tree lock.
    void takeSwitchFrom(const Node& node);
    [[nodiscard]] bool refusesRemovalFromList();
    void showAfterRemovalFromList();

    ScanCoordinator& m_globalScanController;
    std::atomic<ContentOutline*> m_contentOutline = nullptr; ///< workers look whether there is one
    std::atomic<ContentTable*> m_contentTable = nullptr;
    ScanObject* m_scanObject = nullptr;
};

} // namespace sweeply
