#include "ui/ManualPage.h"

#include "app/OwnProcess.h"
#include "platform/Localization.h"
#include "ui/Text.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <utility>

namespace sweeply {

namespace {

/// As the build made it of the manual pages.
QString manual() {
    QFile file(QString::fromStdString(besideProgram("share") + "/manual.html"));
    if (!file.open(QIODevice::ReadOnly))
        return QString::fromStdString(
                   localizedFormat("%@ cannot be read: %@", {utf8(file.fileName()), utf8(file.errorString())}))
            .toHtmlEscaped();
    return QString::fromUtf8(file.readAll());
}

/// What the tool that makes it leaves to the reader: room between the parts, and the two heads as headings.
constexpr const char* kStyle = "h1 { font-size: large; margin-top: 18px; } h2 { font-size: medium; margin-top: 12px; }"
                               "a { text-decoration: none; color: palette(text); } dt { margin-top: 8px; }"
                               "table.foot { margin-bottom: 24px; } td { padding-right: 12px; }";

} // namespace

ManualPage::ManualPage(std::function<void()> close) : m_text(new QTextBrowser), m_find(new QLineEdit) {
    auto* heading = new QLabel(localized("Manual"));
    auto font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    heading->setFont(font);
    m_find->setPlaceholderText(localized("Find"));
    m_find->setAccessibleName(localized("Find"));
    m_find->setClearButtonEnabled(true);
    m_find->setMaximumWidth(240);
    auto* back = new QPushButton(localized("Back"));
    back->setToolTip(localized("Back to the Mac (Esc)"));
    auto* top = new QHBoxLayout;
    top->addWidget(heading, 1);
    top->addWidget(m_find);
    top->addWidget(back);
    m_text->setAccessibleName(localized("Manual"));
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->document()->setDefaultStyleSheet(QLatin1String(kStyle));
    m_text->document()->setDocumentMargin(16);
    m_text->setHtml(manual());
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(m_text, 1);
    const auto on = [this](const QKeySequence& keys, std::function<void()> act) {
        auto* shortcut = new QShortcut(keys, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, std::move(act));
    };
    on(QKeySequence::Find, [this] { m_find->setFocus(); });
    on(QKeySequence::FindNext, [this] { find(false); });
    on(QKeySequence::FindPrevious, [this] { find(true); });
    on(QKeySequence(Qt::Key_Escape), close);
    connect(back, &QPushButton::clicked, this, std::move(close));
    connect(m_find, &QLineEdit::returnPressed, this, [this] { find(false); });
    connect(m_find, &QLineEdit::textEdited, this, [this] {
        m_text->moveCursor(QTextCursor::Start);
        find(false);
    });
    setFocusProxy(m_text);
}

void ManualPage::find(bool isBackward) {
    const auto flags = isBackward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    if (m_find->text().isEmpty() || m_text->find(m_find->text(), flags))
        return;
    m_text->moveCursor(isBackward ? QTextCursor::End : QTextCursor::Start); // once around
    m_text->find(m_find->text(), flags);
}

} // namespace sweeply
