#pragma once

#include "appcore/ApplicationSurvey.h"

#include <QCollator>
#include <QSortFilterProxyModel>
#include <QString>
#include <ctime>

namespace sweeply {

class ApplicationsModel;

/// Bytes of an application that counts as large.
inline constexpr std::uint64_t kLargeApplication = 100'000'000;

/// Which applications a person wants to see; all of it must be so. What is not known yet of one is not so.
struct ApplicationsQuery {
    QString text; ///< in the name, the identifier or the path, whatever the case of letters
    bool isLarge = false;
    bool isUnchangedForAYear = false;
    bool isNotApples = false;

    /// `now` in seconds since 1970.
    [[nodiscard]] bool matches(const SurveyedApplication& application, std::time_t now) const;
};

/// The applications that a query matches, in the order of a column: names as people read them, versions as numbers,
/// what is unknown last. Main thread.
class ApplicationsFilter final : public QSortFilterProxyModel {
  public:
    /// `applications` outlive this.
    explicit ApplicationsFilter(ApplicationsModel& applications);

    void setQuery(ApplicationsQuery query);
    /// Of a row as it is shown here.
    [[nodiscard]] const SurveyedApplication& at(const QModelIndex& index) const;

  protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
    [[nodiscard]] bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

  private:
    /// Below zero when the first comes before the other.
    [[nodiscard]] int compare(const SurveyedApplication& left, const SurveyedApplication& right, int column) const;

    const ApplicationsModel& m_applications;
    ApplicationsQuery m_query;
    QCollator m_collator;
};

} // namespace sweeply
