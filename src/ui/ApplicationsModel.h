#pragma once

#include "appcore/ApplicationSurvey.h"
#include "appcore/sizes/SizeDisplay.h"

#include <QAbstractTableModel>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace sweeply {

class Pictures;

/// The target's applications for Qt's views, one a row, as far as they are known. Main thread.
class ApplicationsModel final : public QAbstractTableModel {
  public:
    enum Column { Name, Version, Size, Place, Changed, ColumnCount };

    /// `pictures` outlive this.
    ApplicationsModel(SizeUnits units, Pictures& pictures) : m_units(units), m_pictures(pictures) {}

    /// Shows these and no others. What is known already of one that stays is kept.
    void list(std::vector<SurveyedApplication> applications);
    /// Takes over what is known of some; nothing of one that is not listed.
    void learn(std::vector<SurveyedApplication> applications);

    [[nodiscard]] const SurveyedApplication& at(int row) const { return m_applications[static_cast<std::size_t>(row)]; }
    /// Of how many the size is not known yet.
    [[nodiscard]] std::size_t countUnmeasured() const;
    /// The pictures have changed.
    void redraw();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    [[nodiscard]] QString textOf(const SurveyedApplication& application, int column) const;
    void removeAllBut(const std::vector<SurveyedApplication>& staying);
    void renumber();

    const SizeUnits m_units;
    Pictures& m_pictures;
    std::vector<SurveyedApplication> m_applications;
    std::unordered_map<std::string, int> m_rows; ///< by path
};

} // namespace sweeply
