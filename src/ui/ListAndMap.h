#pragma once

#include <QSplitter>

class QToolButton;

namespace sweeply {

/// An outline and, as long as the person wants it, a map of the same: beside it where there is room, else below.
/// Whether it is wanted is remembered for all pages. Main thread.
class ListAndMap final : public QSplitter {
  public:
    enum class Shows { WhatIsWanted, Both };

    /// Takes both over.
    ListAndMap(QWidget* list, QWidget* map, Shows shows = Shows::WhatIsWanted);

    /// The button that shows and hides the map; whoever asks for it lays it out and owns it.
    [[nodiscard]] QToolButton* makeButton();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    QWidget* m_map;
    QToolButton* m_button = nullptr;
};

} // namespace sweeply
