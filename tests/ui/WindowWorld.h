#pragma once

#include "cli/sample/SampleVolume.h"
#include "platform/TestFolder.h"
#include "ui/MainWindow.h"
#include "ui/RemovalSheet.h"
#include "ui/ResultPage.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>

namespace sweeply {

/// The whole program in a window that nobody sees, on the sample volume.
class WindowWorld : public testing::Test {
  protected:
    WindowWorld() {
        EXPECT_TRUE(writeSampleVolume(root(), 1));
        QSettings().clear();
        openWindow();
        QObject::connect(&m_sheets, &QTimer::timeout, [this] { answerSheet(); });
        m_sheets.start(10);
    }
    ~WindowWorld() override { m_window.reset(); }

    void openWindow() {
        m_window = std::make_unique<MainWindow>(m_desktop, std::vector<std::string>{"sweeply"});
        EXPECT_TRUE(m_window->open({root(), {}, {}, {}}, {}));
        m_window->show();
    }
    std::string root() const { return m_folder.path("volume"); }
    ScanController& controller() { return m_window->session()->application().scanController(); }
    bool isThere(const std::string& path) const { return std::filesystem::exists(root() + path); }
    /// The tool with that title.
    QAction* tool(const char* title) {
        for (auto* action : m_window->findChild<QToolBar*>()->actions()) {
            if (action->text() == QLatin1String(title))
                return action;
        }
        ADD_FAILURE() << "no tool " << title;
        return nullptr;
    }
    /// Unlike QTest::qWaitFor, answers waiting threads at once.
    bool waitUntil(const std::function<bool()>& done) {
        QElapsedTimer time;
        QTimer looksAgain;
        looksAgain.start(5);
        for (time.start(); !done() && time.elapsed() < 60000;)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return done();
    }
    void scan() {
        tool("Scan")->trigger();
        EXPECT_TRUE(waitUntil([this] { return !controller().isScanning(); }));
    }
    /// Clicks the button with that title in the next dialog.
    void answer(const QString& title) {
        QTimer::singleShot(10, m_window.get(), [this, title] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return answer(title); // not there yet
            m_asked << box->text();
            for (auto* button : box->buttons()) {
                if (button->text() == title)
                    return QTest::mouseClick(button, Qt::LeftButton);
            }
            ADD_FAILURE() << "no button " << title.toStdString();
            box->reject();
        });
    }
    /// Looks at the sheet before a removal as soon as it is whole, and presses the button that was chosen for it.
    void answerSheet() {
        auto* sheet = dynamic_cast<RemovalSheet*>(QApplication::activeModalWidget());
        if (!sheet)
            return;
        const auto buttons = sheet->findChildren<QPushButton*>();
        const auto isChosen = [this](const auto* button) { return button->text() == m_sheetButton; };
        if (!std::ranges::all_of(buttons, &QPushButton::isEnabled))
            return; // not all of it is known yet
        if (auto look = std::exchange(m_lookAtSheet, {}))
            look(*sheet);
        QTest::mouseClick(*std::ranges::find_if(buttons, isChosen), Qt::LeftButton);
    }
    ResultPage& page(std::uint8_t viewCode) {
        m_window->showView(viewCode);
        for (auto* widget : m_window->findChildren<QWidget*>()) {
            auto* candidate = dynamic_cast<ResultPage*>(widget);
            if (candidate && &candidate->module() == controller().moduleForViewCode(viewCode))
                return *candidate;
        }
        throw std::logic_error("no such page");
    }
    void drop(ResultPage& place, const std::string& hostPath) {
        QMimeData files;
        files.setUrls({QUrl::fromLocalFile(QString::fromStdString(hostPath))});
        QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&place, &enter);
        QDropEvent event(QPointF(9, 9), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&place, &event);
        EXPECT_TRUE(waitUntil([this] { return !controller().isScanning(); }));
    }

    TestFolder m_folder;
    Desktop m_desktop;
    std::unique_ptr<MainWindow> m_window;
    QStringList m_asked;
    QString m_sheetButton = QStringLiteral("Remove");
    std::function<void(RemovalSheet&)> m_lookAtSheet;

  private:
    QTimer m_sheets;
};

} // namespace sweeply
