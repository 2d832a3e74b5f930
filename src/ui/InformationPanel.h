#pragma once

#include "engine/EngineServices.h"
#include "engine/tree/Node.h"

#include <QWidget>

class QLabel;

namespace sweeply {

class FileManager;

/// What is known of the current item: where it lies, what it is, and what its removal means. Main thread.
class InformationPanel final : public QWidget {
  public:
    /// All outlive this.
    InformationPanel(const FileManager& files, TreeLock& treeLock, SizeUnits units);

    /// Nothing for a null node. `moduleDescription` says why such items are found.
    void show(const Node::Pointer& node, const QString& moduleDescription);

  private:
    const FileManager& m_files;
    TreeLock& m_treeLock;
    const SizeUnits m_units;
    QLabel* m_nothing;
    QWidget* m_details;
    QLabel* m_name;
    QLabel* m_path;
    QLabel* m_kind;
    QLabel* m_size;
    QLabel* m_modified;
    QLabel* m_why;
    QLabel* m_removal;
};

} // namespace sweeply
