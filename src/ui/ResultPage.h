#pragma once

#include "ui/NodeModel.h"
#include "ui/ScrollAnchor.h"

#include <QSortFilterProxyModel>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QDropEvent;
class QLabel;
class QLineEdit;
class QStackedLayout;
class QTreeView;

namespace sweeply {

class ADDropImageView;
class ResultMap;
struct Drag;
class SystemLog;

/// One module's results: an outline with a field to filter it, or what to do while there are none. Main thread.
class ResultPage final : public QWidget {
  public:
    struct Services {
        TreeLock& treeLock;
        SizeUnits units;
        Pictures& pictures;
        SystemLog& log;
        /// The current item of this module's page changed; none for a null node.
        std::function<void(ADScanControllerView&, const Node::Pointer&)> showInformation;
        /// The target's path on this machine, empty when there is none.
        std::function<QString(const std::string&)> hostPath;
        /// The reverse, for what is dropped; says so and gives nothing for what is not in the target.
        std::function<std::optional<std::string>(const QString&)> targetPath;
        /// Shows a line to the person.
        std::function<void(const QString&)> say;
        /// Has the person choose files and folders of the target; none when nothing was chosen.
        std::function<std::vector<std::string>(const QString& title)> chooseFiles;
    };

    /// All outlive this. `hint` says what to do while there is nothing to show.
    ResultPage(ADScanControllerView& module, Services services, const QString& title, const QString& hint);
    ~ResultPage() override;

    [[nodiscard]] ADScanControllerView& module() const { return m_model.module(); }
    [[nodiscard]] NodeModel& model() { return m_model; }
    [[nodiscard]] QTreeView& outline() const { return *m_outline; }
    /// May files be given to the module?
    [[nodiscard]] bool takesFiles() const { return m_dropTarget != nullptr; }
    /// Has the person choose files for the module, as if they were dropped here.
    void addFiles();
    /// Shows beside each item why it is listed, in place of how many it holds.
    void showReasons();
    /// Says below the heading what the module finds.
    void setPurpose(const QString& sentence);
    /// A row of its own below the results; the page owns it.
    void addBelow(QWidget* row);
    /// Tells the information panel what is current here.
    void showCurrent();

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    [[nodiscard]] Drag dragOf(const QDropEvent& event, bool isDropped) const;
    void filter(const QString& text);
    void showContents();
    void showColumns();
    void expandNew(const QModelIndex& parent, int first, int last);
    void showMenu(const QPoint& place);
    [[nodiscard]] Node::Pointer nodeAt(const QModelIndex& index) const;
    [[nodiscard]] std::vector<Node::Pointer> selection() const;

    Services m_services;
    NodeModel m_model;
    QSortFilterProxyModel m_filtered;
    std::unique_ptr<ADDropImageView> m_dropTarget; ///< none where nothing may be dropped
    bool m_showsReasons = false;
    QLineEdit* m_filter;
    QTreeView* m_outline;
    QLabel* m_hint;
    QStackedLayout* m_contents;
    ScrollAnchor m_anchor;
    ResultMap* m_map;
};

} // namespace sweeply
