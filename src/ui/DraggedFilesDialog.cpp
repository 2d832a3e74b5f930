#include "ui/DraggedFilesDialog.h"

#include "platform/Localization.h"
#include "ui/Text.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace sweeply {

DraggedFilesDialog::DraggedFilesDialog(DraggedFilesController& files, QWidget* parent)
    : QDialog(parent), m_files(files), m_list(new QListWidget) {
    setWindowTitle(localized("Dropped Files"));
    setWindowModality(Qt::WindowModal);
    m_list->setAccessibleName(localized("Dropped Files"));
    auto* all = new QVBoxLayout(this);
    all->addWidget(new QLabel(localized("What shall become of these files?")));
    all->addWidget(m_list);
    auto* buttons = new QHBoxLayout;
    const auto add = [&](const char* title, void (DraggedFilesController::*choice)()) {
        auto* button = new QPushButton(localizedTitle(title));
        buttons->addWidget(button);
        connect(button, &QPushButton::clicked, this, [this, choice] { (m_files.*choice)(); });
    };
    add(translatableButton("Uninstall"), &DraggedFilesController::uninstallApps);
    add(translatableButton("Slim"), &DraggedFilesController::slimApps);
    add(translatableButton("Erase"), &DraggedFilesController::quickRemove);
    buttons->addStretch(1);
    add(translatableButton("Cancel"), &DraggedFilesController::close);
    all->addLayout(buttons);
    connect(this, &QDialog::rejected, this, [this] { m_files.escapePressed(); });
    m_files.setView(this);
    reloadData();
}

DraggedFilesDialog::~DraggedFilesDialog() { m_files.setView(nullptr); }

void DraggedFilesDialog::reloadData() {
    m_list->clear();
    for (const auto& path : m_files.records())
        m_list->addItem(path.empty() ? localized("Unknown") : shown(path));
}

void DraggedFilesDialog::endSheet() {
    m_files.setView(nullptr);
    accept();
}

} // namespace sweeply
