#include "ui/WrappedLabel.h"

#include <QPainter>
#include <QStyle>

namespace sweeply {

namespace {

constexpr int kUsualWidth = 28; ///< in characters

} // namespace

WrappedLabel::WrappedLabel() {
    setTextFormat(Qt::PlainText);
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

int WrappedLabel::heightForWidth(int width) const {
    return fontMetrics().boundingRect(0, 0, width, 0, Qt::TextWrapAnywhere, text()).height();
}

QSize WrappedLabel::sizeHint() const {
    const int width = kUsualWidth * fontMetrics().averageCharWidth();
    return {width, heightForWidth(width)};
}

QSize WrappedLabel::minimumSizeHint() const { return {fontMetrics().maxWidth(), fontMetrics().height()}; }

void WrappedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const auto alignment = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignTop);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(contentsRect(), static_cast<int>(alignment) | Qt::TextWrapAnywhere, text());
}

} // namespace sweeply
