#pragma once

#include "engine/ADScanControllerView.h"
#include "engine/EngineServices.h"
#include "engine/ResultViews.h"

#include <QAbstractItemModel>
#include <QTimer>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

namespace sweeply {

class Pictures;

/// A module's result tree for Qt's views. Main thread.
///
/// Keeps the lists of children of what was looked at, as they were at the last update, and reads each item under the
/// tree lock when it is drawn. Changes are taken over at most ten times a second, as inserted and removed rows where
/// they are such.
class NodeModel final : public QAbstractItemModel, public ContentOutline {
  public:
    enum Column { Name, Size, Count, ColumnCount };
    enum Role { PathRole = Qt::UserRole };

    /// All outlive this.
    NodeModel(ADScanControllerView& module, TreeLock& treeLock, SizeUnits units, Pictures& pictures);
    ~NodeModel() override;

    [[nodiscard]] Node::Pointer nodeAt(const QModelIndex& index) const;
    [[nodiscard]] ADScanControllerView& module() const { return m_module; }
    /// Takes over all changes now.
    void update();
    /// Tells what is selected, for the engine.
    void setSelection(std::function<std::vector<Node::Pointer>()> selection) { m_selection = std::move(selection); }

    // As the engine's view
    void reloadData() override;
    [[nodiscard]] std::vector<Node::Pointer> selectedItems() const override;

    // As Qt's model
    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    /// By the engine's own rules; new items come last until the next time.
    void sort(int column, Qt::SortOrder order) override;

  private:
    /// A node whose children were asked for.
    struct Branch {
        Node::Pointer node;
        Branch* parent = nullptr;
        int row = 0; ///< in the parent's children
        std::vector<Node::Pointer> children;
        std::unordered_map<const Node*, std::unique_ptr<Branch>> open;
    };

    /// The branch of an index's own children; made when it is asked for first.
    Branch& branchOf(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOf(const Branch& branch) const;
    [[nodiscard]] std::vector<Node::Pointer> childrenOf(const Node& node) const;
    /// False when the model was started over, and this branch with it.
    bool update(Branch& branch);
    /// False when there are too many places to change row by row.
    bool removeMissing(Branch& branch, const std::vector<Node::Pointer>& now);
    void restart();
    static void renumber(Branch& branch);

    ADScanControllerView& m_module;
    TreeLock& m_treeLock;
    const SizeUnits m_units;
    Pictures& m_pictures;
    std::function<std::vector<Node::Pointer>()> m_selection;
    mutable Branch m_root;
    QTimer m_updating;
};

} // namespace sweeply
