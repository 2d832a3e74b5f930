#include "ui/SectionModel.h"

#include "ui/Text.h"

#include <QFont>
#include <utility>

namespace sweeply {

namespace {

/// What an index points to of its own: 0 for a section, or one more than the section's row.
constexpr quintptr kSection = 0;

} // namespace

void SectionModel::setSections(std::vector<ListedSection> sections) {
    beginResetModel();
    m_sections = std::move(sections);
    endResetModel();
}

const ListedItem* SectionModel::itemAt(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() == kSection)
        return nullptr;
    return &m_sections[index.internalId() - 1].items[static_cast<std::size_t>(index.row())];
}

QModelIndex SectionModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : kSection);
}

QModelIndex SectionModel::parent(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() == kSection)
        return {};
    return createIndex(static_cast<int>(index.internalId() - 1), 0, kSection);
}

int SectionModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return static_cast<int>(m_sections.size());
    if (parent.internalId() != kSection || parent.column() != 0)
        return 0;
    return static_cast<int>(m_sections[static_cast<std::size_t>(parent.row())].items.size());
}

int SectionModel::columnCount(const QModelIndex&) const { return ColumnCount; }

QVariant SectionModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const auto* item = itemAt(index);
    const auto* section = item ? nullptr : &m_sections[static_cast<std::size_t>(index.row())];
    if (role == Qt::TextAlignmentRole && (index.column() == Count || index.column() == Size))
        return (Qt::AlignRight | Qt::AlignVCenter).toInt();
    if (role == Qt::FontRole && section) {
        QFont font;
        font.setBold(true);
        return font;
    }
    if (role == Qt::ToolTipRole && index.column() == Name)
        return shown(item ? item->path : section->title);
    if (role != Qt::DisplayRole && !(role == Qt::ToolTipRole && index.column() == Note))
        return {};
    switch (index.column()) {
    case Name:
        return shown(item ? item->path : section->title);
    case Count:
        return section ? QString::number(section->count) : QString();
    case Size:
        return QString::fromStdString(stringSizeFromLong(item ? item->size : section->size, m_units));
    case Note:
        return shown(item ? item->note : section->note);
    default:
        return {};
    }
}

QVariant SectionModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole && (section == Count || section == Size))
        return (Qt::AlignRight | Qt::AlignVCenter).toInt();
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return localized("Name");
    case Count:
        return localized("Items");
    case Size:
        return localized("Size");
    case Note:
        return localized("Note");
    default:
        return {};
    }
}

} // namespace sweeply
