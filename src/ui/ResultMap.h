#pragma once

#include "engine/EngineServices.h"
#include "ui/MapView.h"
#include "ui/NodeModel.h"

#include <QColor>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <vector>

class QToolButton;
class QTreeView;

namespace sweeply {

/// A module's results as a map beside their outline: the same items, marks and current row. An item takes as much of it
/// as it takes of the disk, checked or not. Main thread.
class ResultMap final : public QWidget, private MapSource {
  public:
    /// All outlive this. `outline` shows the model, or a filter of it.
    ResultMap(QTreeView& outline, NodeModel& model, TreeLock& treeLock, SizeUnits units, const QColor& colour);

    /// The outline's current row changed.
    void showCurrent();
    /// Draws what has not this text in its name, or in that of a group above it, in grey.
    void setFilter(const QString& text);
    [[nodiscard]] MapView& view() const { return *m_view; }
    /// The item on the map, by its place there.
    [[nodiscard]] const Node::Pointer& nodeOf(std::size_t item) const { return m_nodes[item]; }

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    [[nodiscard]] MapLook lookOf(std::size_t item) const override;
    [[nodiscard]] QString toolTipOf(std::size_t item) const override;
    void select(std::size_t item) override;
    void toggle(std::size_t item) override;
    void enter(std::size_t item) override;
    void leave() override;

    void takeOver();
    void showGroup(std::size_t item);
    [[nodiscard]] std::optional<std::size_t> placeOf(const Node* node) const;
    [[nodiscard]] QModelIndex rowOf(std::size_t item) const;
    [[nodiscard]] QColor colourOf(std::size_t item) const;
    [[nodiscard]] bool matches(std::size_t item) const;

    QTreeView& m_outline;
    NodeModel& m_model;
    TreeLock& m_treeLock;
    const SizeUnits m_units;
    const QColor m_colour;
    MapView* m_view;
    QToolButton* m_up; ///< out of the group that is shown; hidden while that is all
    std::shared_ptr<const MapItems> m_items;
    std::vector<Node::Pointer> m_nodes; ///< by their places on the map
    Node::Pointer m_shown;              ///< the group that is shown
    QString m_filter;
    QTimer m_takingOver;
};

} // namespace sweeply
