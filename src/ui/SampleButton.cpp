#include "ui/SampleButton.h"

#include "cli/sample/SampleVolume.h"
#include "ui/Text.h"

#include <QDir>
#include <QFileDialog>
#include <QMenu>
#include <QTemporaryDir>
#include <utility>

namespace sweeply {

SampleButton::SampleButton(std::function<void(const QString&)> made, std::function<void(const QString&)> failed)
    : QPushButton(localized("Take a Tour on a Sample")), m_made(std::move(made)), m_failed(std::move(failed)) {
    setToolTip(localized("Writes a small made-up Mac to try everything on, and says what to look at."));
    auto* menu = new QMenu(this);
    menu->addAction(localized("In a Temporary Folder"), this, [this] { makeTemporary(); });
    menu->addAction(localized("In a Folder of Yours…"), this, [this] { makeInChosenFolder(); });
    setMenu(menu);
}

SampleButton::~SampleButton() = default;

void SampleButton::makeTemporary() {
    auto folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/sweeply-sample"));
    if (!folder->isValid())
        return m_failed(folder->errorString());
    // The one before goes only now: it may still be open.
    const auto before = std::exchange(m_temporary, std::move(folder));
    makeIn(m_temporary->filePath(QStringLiteral("Sample Mac")));
}

void SampleButton::makeInChosenFolder() {
    const auto chosen = QFileDialog::getExistingDirectory(this, localized("A Folder for the Sample"));
    if (chosen.isEmpty())
        return;
    makeIn(QDir(chosen).isEmpty() ? chosen : QDir(chosen).filePath(QStringLiteral("Sample Mac")));
}

void SampleButton::makeIn(const QString& folder) {
    if (const auto written = writeSampleVolume(utf8(folder), 1); written)
        m_made(folder);
    else
        m_failed(shown(written.error().message()));
}

} // namespace sweeply
