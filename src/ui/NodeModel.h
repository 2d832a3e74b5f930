#pragma once

#include "engine/ADScanControllerView.h"
#include "engine/EngineServices.h"
#include "engine/ResultViews.h"
#include "engine/tree/SortKeys.h"

#include <QAbstractItemModel>
#include <QTimer>
#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace sweeply {

class Pictures;

/// A module's result tree for Qt's views. Main thread.
///
/// Keeps the lists of children of what was looked at, as they were at the last update, in an order of its own: the
/// largest first until somebody asks for another. Reads each item under the tree lock when it is drawn. Changes are
/// taken over at most ten times a second, as rows that come, go and move: it never starts over, so whoever holds a
/// persistent index keeps the item.
class NodeModel final : public QAbstractItemModel, public ContentOutline {
  public:
    enum Column { Name, Size, Count, Why, ColumnCount };
    enum Role { PathRole = Qt::UserRole };

    /// All outlive this.
    NodeModel(ADScanControllerView& module, TreeLock& treeLock, SizeUnits units, Pictures& pictures);
    ~NodeModel() override;

    [[nodiscard]] Node::Pointer nodeAt(const QModelIndex& index) const;
    /// Where a node stands in column Name; nowhere for the root, and for one that is not shown yet or any more.
    [[nodiscard]] QModelIndex indexOf(const Node& node) const;
    [[nodiscard]] ADScanControllerView& module() const { return m_module; }
    /// What a node's box shows. Under the tree lock.
    [[nodiscard]] static Qt::CheckState markOf(const Node& node);
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
    /// By the engine's own rules. What comes in later takes its place; a click on a box moves nothing.
    void sort(int column, Qt::SortOrder order) override;

  private:
    /// A node whose children were asked for.
    struct Branch {
        Node::Pointer node;
        Branch* parent = nullptr;
        int row = 0;                            ///< in the parent's children
        std::vector<Node::Pointer> children;    ///< in the order of the rows
        std::vector<const Node*> inTree;        ///< the same in the tree's order
        std::unordered_set<const Node*> groups; ///< those of them that have children; not asked of each row again
        std::unordered_map<const Node*, std::unique_ptr<Branch>> open;
    };

    /// The branch of an index's own children; made when it is asked for first.
    Branch& branchOf(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOf(const Branch& branch) const;
    /// Makes the lists of a new branch.
    void fill(Branch& branch) const;
    /// The node's children in the tree's order, and what to sort them by. Notes which are groups.
    [[nodiscard]] std::pair<std::vector<Node::Pointer>, SortKeys> lookAt(Branch& branch) const;
    void update(Branch& branch, bool rearranges);
    /// Removes and appends rows until they are those of the tree, in whatever order.
    void takeOver(Branch& branch, const std::vector<Node::Pointer>& now);
    void removeRows(Branch& branch, const std::unordered_set<const Node*>& gone);
    void appendRows(Branch& branch, std::vector<Node::Pointer> added);
    /// Gives the rows this order of the same nodes.
    void arrange(Branch& branch, std::vector<Node::Pointer> rows);
    static void renumber(Branch& branch);
    /// Why an item is listed and how sure that is; empty for one without evidence. Under the tree lock.
    [[nodiscard]] static QString reasonFor(const Node& node);

    ADScanControllerView& m_module;
    TreeLock& m_treeLock;
    const SizeUnits m_units;
    Pictures& m_pictures;
    std::function<std::vector<Node::Pointer>()> m_selection;
    mutable Branch m_root;
    NodeOrder m_order{NodeKey::Size, true};
    bool m_isArranged = false; ///< by sizes that are final
    QTimer m_updating;
};

} // namespace sweeply
