#pragma once

#include "ui/TargetFolder.h"

#include <QAbstractListModel>
#include <QDialog>
#include <string>
#include <thread>
#include <vector>

class QLabel;
class QLineEdit;
class QListView;
class QPushButton;

namespace sweeply {

/// Where a person chooses files and folders of the target. It shows paths as the Mac knows them and leads nowhere else:
/// links end where they would on the Mac, and a typed path that lies outside is refused. Folders are read on a thread
/// of their own. Main thread.
class TargetChooser final : public QDialog {
  public:
    /// `files` outlive this. Starts in `folder`, a path of the target.
    TargetChooser(const FileManager& files, const QString& title, const std::string& folder, QWidget* parent);
    ~TargetChooser() override;

    /// Paths of the target, once the dialog was accepted.
    [[nodiscard]] const std::vector<std::string>& chosen() const { return m_chosen; }
    /// The folder that is shown.
    [[nodiscard]] const std::string& folder() const { return m_folder; }

  private:
    class Entries;

    /// Shows that folder; with it, selects the entry of that name.
    void open(const std::string& folder, const std::string& selected = {});
    void showEntries(const Result<std::vector<TargetEntry>>& entries, const std::string& selected);
    void goTo(const QString& typed);
    /// Opens a folder, chooses anything else.
    void activate(const QModelIndex& index);
    void chooseSelected();
    void complain(const QString& problem);

    const FileManager& m_files;
    std::string m_folder;
    std::vector<std::string> m_chosen;
    Entries* m_entries;
    QLineEdit* m_path;
    QListView* m_list;
    QLabel* m_problem;
    QPushButton* m_up;
    QPushButton* m_add;
    std::jthread m_reading; ///< last: ends before what it uses
};

} // namespace sweeply
