#pragma once

#include <QWidget>

class QPushButton;
class QTreeWidget;

namespace sweeply {

class UncheckedItems;

/// The items that were unchecked in results and are remembered, module by module, to be forgotten again. Main thread.
class UncheckedItemsPage final : public QWidget {
  public:
    /// `items` outlives this.
    explicit UncheckedItemsPage(UncheckedItems& items);

  private:
    void fill();
    void forgetSelected();

    UncheckedItems& m_items;
    QTreeWidget* m_list;
    QPushButton* m_remove;
};

} // namespace sweeply
