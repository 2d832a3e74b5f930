#include "ui/ScrollAnchor.h"

#include <QAbstractItemModel>
#include <QScrollBar>
#include <QTreeView>

namespace sweeply {

void ScrollAnchor::watchModel() {
    m_row = QModelIndex();
    m_watch = std::make_unique<QObject>();
    const auto* model = m_view.model();
    connect(model, &QAbstractItemModel::layoutAboutToBeChanged, m_watch.get(), [this] { remember(); });
    connect(model, &QAbstractItemModel::rowsAboutToBeInserted, m_watch.get(), [this] { remember(); });
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, m_watch.get(), [this] { remember(); });
}

void ScrollAnchor::remember() {
    if (m_isRestoring)
        return; // of several changes in a row the first one knows what was seen
    const auto* bar = m_view.verticalScrollBar();
    const auto current = m_view.currentIndex();
    const bool isCurrentSeen = current.isValid() && m_view.viewport()->rect().intersects(m_view.visualRect(current));
    if (!isCurrentSeen && bar->value() == bar->minimum())
        return;
    m_row = isCurrentSeen ? current : m_view.indexAt({0, 0});
    m_top = m_view.visualRect(m_row).top();
    m_isRestoring = true;
    QMetaObject::invokeMethod(
        this, [this] { restore(); }, Qt::QueuedConnection);
}

void ScrollAnchor::restore() {
    m_isRestoring = false;
    const auto place = m_row.isValid() ? m_view.visualRect(m_row) : QRect();
    if (place.height() <= 0)
        return;
    auto* bar = m_view.verticalScrollBar();
    const bool isByRow = m_view.verticalScrollMode() == QAbstractItemView::ScrollPerItem;
    bar->setValue(bar->value() + (place.top() - m_top) / (isByRow ? place.height() : 1));
}

} // namespace sweeply
