#pragma once

#include "engine/EngineServices.h"
#include "engine/tree/Node.h"

#include <QWidget>
#include <functional>
#include <string>
#include <utility>
#include <vector>

class QBoxLayout;
class QLabel;
class QPlainTextEdit;

namespace sweeply {

class FileManager;

/// What is known of the current item: where it lies, what it is, why it is listed and who else claims it, what its
/// removal means, and what it stands for without showing it. Main thread.
class InformationPanel final : public QWidget {
  public:
    /// All outlive this.
    InformationPanel(const FileManager& files, TreeLock& treeLock, SizeUnits units);

    /// `changed` is called after there is something to show, or nothing any more.
    void setChanged(std::function<void()> changed) { m_changed = std::move(changed); }
    [[nodiscard]] bool isEmpty() const { return !m_node; }
    /// Top to bottom for a panel at the side, beside each other for one below.
    void setOrientation(Qt::Orientation orientation);

    /// What the item's module knows of it.
    struct Details {
        std::uint8_t viewCode = 0;
        QString purpose; ///< of the module, for what is no item itself
        std::vector<std::string> pathsBehind;
    };
    void show(const Node::Pointer& node, const Details& details);
    void showNothing();
    /// Takes over what a click may have changed.
    void refresh();

  private:
    void showPathsBehind(const std::vector<std::string>& paths, const std::string& folder);

    const FileManager& m_files;
    TreeLock& m_treeLock;
    const SizeUnits m_units;
    Node::Pointer m_node; ///< none while nothing is shown
    QString m_purpose;    ///< of the node's module
    std::function<void()> m_changed = [] {};
    QBoxLayout* m_columns;
    QLabel* m_name;
    QLabel* m_path;
    QLabel* m_kind;
    QLabel* m_size;
    QLabel* m_modified;
    QLabel* m_why;
    QLabel* m_removal;
    QLabel* m_behindTitle;
    QPlainTextEdit* m_behind;
};

} // namespace sweeply
