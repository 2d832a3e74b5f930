#include "ui/ApplicationsQuery.h"

#include "appcore/SWVersionComparator.h"
#include "platform/TargetPath.h"
#include "ui/ApplicationsModel.h"
#include "ui/Text.h"

#include <compare>
#include <utility>

namespace sweeply {

namespace {

constexpr std::time_t kYear = 365L * 24 * 60 * 60; // seconds

template<typename Value>
int threeWay(const Value& left, const Value& right) {
    return left < right ? -1 : left > right ? 1 : 0;
}

bool isUnknown(const SurveyedApplication& application, int column) {
    return (column == ApplicationsModel::Size && !application.size) ||
           (column == ApplicationsModel::Changed && application.changed == 0) ||
           (column == ApplicationsModel::Version && application.version.empty());
}

} // namespace

bool ApplicationsQuery::matches(const SurveyedApplication& application, std::time_t now) const {
    if (isLarge && application.size.value_or(0) < kLargeApplication)
        return false;
    if (isUnchangedForAYear && (application.changed == 0 || application.changed > now - kYear))
        return false;
    if (isNotApples && application.identifier.starts_with("com.apple."))
        return false;
    return shown(application.path).contains(text, Qt::CaseInsensitive) ||
           shown(application.identifier).contains(text, Qt::CaseInsensitive);
}

ApplicationsFilter::ApplicationsFilter(ApplicationsModel& applications) : m_applications(applications) {
    m_collator.setNumericMode(true);
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    setSourceModel(&applications);
}

void ApplicationsFilter::setQuery(ApplicationsQuery query) {
    m_query = std::move(query);
    invalidateFilter();
}

const SurveyedApplication& ApplicationsFilter::at(const QModelIndex& index) const {
    return m_applications.at(mapToSource(index).row());
}

bool ApplicationsFilter::filterAcceptsRow(int row, const QModelIndex&) const {
    return m_query.matches(m_applications.at(row), std::time(nullptr));
}

int ApplicationsFilter::compare(const SurveyedApplication& left, const SurveyedApplication& right, int column) const {
    switch (column) {
    case ApplicationsModel::Version:
        return SWVersionComparator::compareVersion(left.version, right.version);
    case ApplicationsModel::Size:
        return threeWay(left.size, right.size);
    case ApplicationsModel::Place:
        return m_collator.compare(shown(pathWithoutLastComponent(left.path)),
                                  shown(pathWithoutLastComponent(right.path)));
    case ApplicationsModel::Changed:
        return threeWay(left.changed, right.changed);
    default:
        return m_collator.compare(shown(left.name), shown(right.name));
    }
}

bool ApplicationsFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    const auto& one = m_applications.at(left.row());
    const auto& other = m_applications.at(right.row());
    const int column = left.column();
    if (isUnknown(one, column) != isUnknown(other, column))
        return isUnknown(other, column) == (sortOrder() == Qt::AscendingOrder);
    const int order = compare(one, other, column);
    return order != 0 ? order < 0 : compare(one, other, ApplicationsModel::Name) < 0;
}

} // namespace sweeply
