#include "ui/ResultMap.h"

#include "appcore/sizes/SizeDisplay.h"
#include "ui/Text.h"

#include <QAbstractProxyModel>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>
#include <mutex>

namespace sweeply {

namespace {

constexpr int kTakeOverInterval = 250; // milliseconds
/// Between the colours of a module's parts, in degrees.
constexpr int kHueStep = 48;

} // namespace

ResultMap::ResultMap(QTreeView& outline, NodeModel& model, TreeLock& treeLock, SizeUnits units, const QColor& colour)
    : m_outline(outline), m_model(model), m_treeLock(treeLock), m_units(units), m_colour(colour),
      m_view(new MapView(*this, localized("Map"))), m_up(new QToolButton),
      m_items(std::make_shared<MapItems>()), m_nodes{model.nodeAt({})}, m_shown(m_nodes.front()) {
    m_up->setAutoRaise(true);
    m_up->setIcon(style()->standardIcon(QStyle::SP_ArrowUp));
    m_up->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_up->setToolTip(localized("Back to what is above it"));
    m_up->hide();
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(2);
    all->addWidget(m_up);
    all->addWidget(m_view, 1);
    connect(m_up, &QToolButton::clicked, this, [this] { leave(); });
    m_takingOver.setSingleShot(true);
    m_takingOver.setInterval(kTakeOverInterval);
    connect(&m_takingOver, &QTimer::timeout, this, [this] { takeOver(); });
    const auto later = [this] {
        m_view->update(); // the marks at once
        if (isVisible() && !m_takingOver.isActive())
            m_takingOver.start();
    };
    connect(&m_model, &QAbstractItemModel::rowsInserted, this, later);
    connect(&m_model, &QAbstractItemModel::rowsRemoved, this, later);
    connect(&m_model, &QAbstractItemModel::dataChanged, this, later);
}

void ResultMap::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    takeOver();
}

void ResultMap::takeOver() {
    auto items = std::make_shared<MapItems>();
    m_nodes.assign(1, m_model.nodeAt({}));
    {
        const std::lock_guard lock(m_treeLock);
        for (std::size_t item = 0; item < m_nodes.size(); ++item) {
            const auto& node = *m_nodes[item];
            if (!node.hasChildren()) {
                items->items[item].size = node.childrenSize();
                continue;
            }
            items->addChildren(item, node.childrenCount());
            const auto& children = node.children();
            m_nodes.insert(m_nodes.end(), children.begin(), children.end());
        }
    }
    items->items.front().size = 0; // of the whole only what is in it counts
    items->addUp();
    m_items = std::move(items);
    showGroup(placeOf(m_shown.get()).value_or(0));
    showCurrent();
}

void ResultMap::showGroup(std::size_t item) {
    m_shown = m_nodes[item];
    m_up->setVisible(item != 0);
    if (item != 0)
        m_up->setText(lookOf(item).name);
    m_view->setItems(m_items, item);
}

std::optional<std::size_t> ResultMap::placeOf(const Node* node) const {
    const auto found = std::ranges::find(m_nodes, node, &Node::Pointer::get);
    return found == m_nodes.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - m_nodes.begin()));
}

QModelIndex ResultMap::rowOf(std::size_t item) const {
    const auto row = m_model.indexOf(*m_nodes[item]);
    const auto* filter = qobject_cast<const QAbstractProxyModel*>(m_outline.model());
    return filter ? filter->mapFromSource(row) : row;
}

void ResultMap::showCurrent() {
    const auto index = m_outline.currentIndex();
    const auto* filter = qobject_cast<const QAbstractProxyModel*>(m_outline.model());
    const auto row = filter ? filter->mapToSource(index) : index;
    m_view->setCurrent(row.isValid() ? placeOf(m_model.nodeAt(row).get()) : std::nullopt);
}

void ResultMap::setFilter(const QString& text) {
    m_filter = text;
    m_view->update();
}

// What the map asks

bool ResultMap::matches(std::size_t item) const {
    if (m_filter.isEmpty() || m_items->items[item].childCount > 0)
        return true;
    for (; item != 0; item = m_items->items[item].parent) {
        if (shown(m_nodes[item]->name()).contains(m_filter, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

QColor ResultMap::colourOf(std::size_t item) const {
    if (!matches(item))
        return QColor(Qt::gray);
    if (m_model.module().parts().size() < 2)
        return m_colour;
    std::size_t part = item;
    while (part != 0 && m_items->items[part].parent != 0)
        part = m_items->items[part].parent;
    const int step = part == 0 ? 0 : static_cast<int>(part - m_items->items.front().firstChild);
    return QColor::fromHsv((m_colour.hsvHue() + step * kHueStep) % 360, m_colour.hsvSaturation(), m_colour.value());
}

MapLook ResultMap::lookOf(std::size_t item) const {
    const std::lock_guard lock(m_treeLock);
    const auto& node = *m_nodes[item];
    return {shown(node.name()), QString::fromStdString(stringSizeFromLong(m_items->items[item].size, m_units)),
            colourOf(item), NodeModel::markOf(node)};
}

QString ResultMap::toolTipOf(std::size_t item) const {
    const auto look = lookOf(item);
    const std::lock_guard lock(m_treeLock);
    const auto path = shown(m_nodes[item]->path());
    return look.name + QLatin1Char('\n') + (path.isEmpty() ? QString() : path + QLatin1Char('\n')) + look.size;
}

void ResultMap::select(std::size_t item) {
    const auto row = rowOf(item);
    if (row.isValid())
        m_outline.setCurrentIndex(row);
}

void ResultMap::toggle(std::size_t item) {
    if (const auto row = m_model.indexOf(*m_nodes[item]); row.isValid())
        m_model.setData(row, {}, Qt::CheckStateRole);
}

void ResultMap::enter(std::size_t item) {
    // An item cannot be gone into, but the group that holds it can.
    const auto shownGroup = placeOf(m_shown.get()).value_or(0);
    while (item != shownGroup && m_items->items[item].childCount == 0)
        item = m_items->items[item].parent;
    if (item != shownGroup)
        showGroup(item);
}

void ResultMap::leave() {
    const auto item = placeOf(m_shown.get()).value_or(0);
    if (item != 0)
        showGroup(m_items->items[item].parent);
}

} // namespace sweeply
