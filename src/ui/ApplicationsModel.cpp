#include "ui/ApplicationsModel.h"

#include "platform/Localization.h"
#include "platform/TargetPath.h"
#include "ui/Pictures.h"
#include "ui/Text.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <unordered_set>
#include <utility>

namespace sweeply {

void ApplicationsModel::removeAllBut(const std::vector<SurveyedApplication>& staying) {
    std::unordered_set<std::string_view> paths;
    for (const auto& application : staying)
        paths.insert(application.path);
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (paths.contains(at(row).path))
            continue;
        beginRemoveRows({}, row, row);
        m_applications.erase(m_applications.begin() + row);
        endRemoveRows();
    }
    renumber();
}

void ApplicationsModel::renumber() {
    m_rows.clear();
    for (int row = 0; row < rowCount(); ++row)
        m_rows.emplace(at(row).path, row);
}

void ApplicationsModel::list(std::vector<SurveyedApplication> applications) {
    removeAllBut(applications);
    std::erase_if(applications, [this](const auto& application) { return m_rows.contains(application.path); });
    if (applications.empty())
        return;
    beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(applications.size()) - 1);
    std::ranges::move(applications, std::back_inserter(m_applications));
    endInsertRows();
    renumber();
}

void ApplicationsModel::learn(std::vector<SurveyedApplication> applications) {
    int first = rowCount();
    int last = -1;
    for (auto& application : applications) {
        const auto row = m_rows.find(application.path);
        if (row == m_rows.end())
            continue;
        auto& known = m_applications[static_cast<std::size_t>(row->second)];
        if (!application.size && known.size) { // only what it is was looked at anew so far
            application.size = known.size;
            application.isSizeWhole = known.isSizeWhole;
            application.changed = known.changed;
        }
        known = std::move(application);
        first = std::min(first, row->second);
        last = std::max(last, row->second);
    }
    if (last >= 0)
        emit dataChanged(index(first, 0), index(last, ColumnCount - 1));
}

std::size_t ApplicationsModel::countUnmeasured() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(m_applications, [](const auto& application) { return !application.size; }));
}

void ApplicationsModel::redraw() {
    if (rowCount() > 0)
        emit dataChanged(index(0, Name), index(rowCount() - 1, Name), {Qt::DecorationRole});
}

int ApplicationsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_applications.size());
}

int ApplicationsModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QString ApplicationsModel::textOf(const SurveyedApplication& application, int column) const {
    switch (column) {
    case Name:
        return shown(application.name);
    case Version:
        return shown(application.version);
    case Size: {
        if (!application.size)
            return QStringLiteral("…");
        const auto size = stringSizeFromLong(*application.size, m_units);
        return QString::fromStdString(application.isSizeWhole ? size : localizedFormat("more than %@", {size}));
    }
    case Place:
        return shown(pathWithoutLastComponent(application.path));
    default:
        return application.changed == 0 ? QString()
                                        : QLocale().toString(QDateTime::fromSecsSinceEpoch(application.changed).date(),
                                                             QLocale::ShortFormat);
    }
}

QVariant ApplicationsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const auto& application = at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return textOf(application, index.column());
    case Qt::ToolTipRole:
        return shown(application.path);
    case Qt::DecorationRole:
        return index.column() == Name ? m_pictures.iconFor(Icon::ItsOwn, application.path) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == Size ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    default:
        return {};
    }
}

QVariant ApplicationsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return section == Size ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                               : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return localized("Name");
    case Version:
        return localized("Version");
    case Size:
        return localized("Size");
    case Place:
        return localized("Where");
    default:
        return localized("Last Change");
    }
}

} // namespace sweeply
