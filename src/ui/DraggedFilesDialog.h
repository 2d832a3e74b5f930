#pragma once

#include "modules/draggedfiles/DraggedFilesController.h"

#include <QDialog>

class QListWidget;

namespace sweeply {

/// The files dropped on the program, and what can become of them. Main thread.
class DraggedFilesDialog final : public QDialog, private DraggedFilesView {
  public:
    /// `files` outlives this.
    DraggedFilesDialog(DraggedFilesController& files, QWidget* parent);
    ~DraggedFilesDialog() override;

  private:
    void reloadData() override;
    void endSheet() override;

    DraggedFilesController& m_files;
    QListWidget* m_list;
};

} // namespace sweeply
