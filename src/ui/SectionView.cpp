#include "ui/SectionView.h"

#include <QHeaderView>
#include <algorithm>
#include <utility>

namespace sweeply {

SectionView::SectionView(SizeUnits units, const QString& accessibleName) : m_model(units) {
    setAccessibleName(accessibleName);
    setModel(&m_model);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto& columns = *header();
    columns.setStretchLastSection(false);
    columns.setSectionResizeMode(SectionModel::Name, QHeaderView::Stretch);
    columns.setSectionResizeMode(SectionModel::Note, QHeaderView::Interactive);
    const QFontMetrics metrics(font());
    columns.resizeSection(SectionModel::Count, metrics.horizontalAdvance(QStringLiteral("0")) * 9);
    columns.resizeSection(SectionModel::Size, metrics.horizontalAdvance(QStringLiteral("0")) * 12);
}

void SectionView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    // In a narrow view the names need the room more; a note is whole in its tool tip.
    const int wide = QFontMetrics(font()).horizontalAdvance(QStringLiteral("0")) * 28;
    header()->resizeSection(SectionModel::Note, std::min(wide, viewport()->width() * 3 / 10));
}

void SectionView::setSections(std::vector<ListedSection> sections) {
    std::vector<int> open;
    if (sections.size() == m_model.sections().size()) {
        for (int row = 0; row < m_model.rowCount(); ++row) {
            if (isExpanded(m_model.index(row, 0)))
                open.push_back(row);
        }
    }
    m_model.setSections(std::move(sections));
    for (const int row : open)
        expand(m_model.index(row, 0));
}

std::vector<const ListedItem*> SectionView::selectedItems() const {
    std::vector<const ListedItem*> items;
    for (const auto& index : selectionModel()->selectedRows()) {
        if (const auto* item = m_model.itemAt(index))
            items.push_back(item);
    }
    return items;
}

} // namespace sweeply
