#include "ui/TourBar.h"

#include "ui/Text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace sweeply {

TourBar::TourBar() : m_text(new QLabel), m_next(new QPushButton(localized("Next"))) {
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setAccessibleName(localized("Guided Tour"));
    m_text->setForegroundRole(QPalette::ToolTipText);
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    auto* close = new QPushButton(localized("End Tour"));
    auto* line = new QHBoxLayout(this);
    line->addWidget(m_text, 1);
    line->addWidget(m_next);
    line->addWidget(close);
    connect(m_next, &QPushButton::clicked, this, [this] {
        m_steps.skip();
        showStep();
    });
    connect(close, &QPushButton::clicked, this, &QWidget::hide);
    hide();
}

void TourBar::start() {
    m_steps = {};
    showStep();
    show();
}

void TourBar::see(const TourSteps::Seen& seen) {
    if (isVisible() && m_steps.see(seen))
        showStep();
}

void TourBar::showStep() {
    m_text->setText(m_steps.text());
    m_text->setAccessibleName(m_text->text());
    m_next->setVisible(m_steps.step() != TourSteps::Step::Done);
}

} // namespace sweeply
