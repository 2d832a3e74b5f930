#pragma once

#include "ui/SectionModel.h"

#include <QTreeView>

namespace sweeply {

/// A list in sections as it is drawn. Main thread.
class SectionView final : public QTreeView {
  public:
    SectionView(SizeUnits units, const QString& accessibleName);

    [[nodiscard]] SectionModel& sectionModel() { return m_model; }
    /// Shows these; what was open stays open where there are as many sections as before.
    void setSections(std::vector<ListedSection> sections);
    [[nodiscard]] std::vector<const ListedItem*> selectedItems() const;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    SectionModel m_model;
};

} // namespace sweeply
