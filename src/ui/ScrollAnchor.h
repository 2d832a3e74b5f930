#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <memory>

class QTreeView;

namespace sweeply {

/// Keeps what a person looks at in its place while rows come, go and move around it: the current row where it can be
/// seen, else the topmost one. Whoever is at the very top and has chosen nothing sees what comes in there. Main thread.
class ScrollAnchor final : public QObject {
  public:
    /// `view` outlives this. Its rows are all of one height.
    explicit ScrollAnchor(QTreeView& view) : m_view(view) {}

    /// The view has a model, or another one, from now on.
    void watchModel();

  private:
    void remember();
    void restore();

    QTreeView& m_view;
    std::unique_ptr<QObject> m_watch; ///< of the view's model
    QPersistentModelIndex m_row;
    int m_top = 0; ///< of the row, in the view
    bool m_isRestoring = false;
};

} // namespace sweeply
