#include "ui/MapView.h"

#include "platform/Localization.h"
#include "ui/Text.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>
#include <QToolTip>
#include <algorithm>
#include <stop_token>
#include <utility>

namespace sweeply {

namespace {

constexpr int kMarkSide = 15;
constexpr int kGap = 4; ///< between a box's edge and what is written in it

constexpr int kFewestLetters = 5; ///< that are worth writing

QRectF rectangleOf(const MapArea& area) { return {area.x, area.y, area.width, area.height}; }

bool isDark(const QColor& colour) { return qGray(colour.rgb()) < 140; }

} // namespace

MapView::MapView(MapSource& source, const QString& name) : m_source(source) {
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(120, 90);
    m_measures.heading = fontMetrics().height() + 2;
}

void MapView::setItems(std::shared_ptr<const MapItems> items, std::size_t whole) {
    m_items = std::move(items);
    m_whole = whole;
    layOutLater();
}

void MapView::setCurrent(std::optional<std::size_t> item) {
    if (m_current == item)
        return;
    m_current = item;
    if (item && *item < m_items->items.size()) {
        const auto look = m_source.lookOf(*item);
        setAccessibleDescription(look.name + QStringLiteral(", ") + look.size +
                                 (look.mark == Qt::Checked ? QStringLiteral(", ") + localized("checked") : QString()));
        QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&changed);
    }
    update();
}

void MapView::layOutLater() {
    const MapArea area{0, 0, static_cast<double>(width()), static_cast<double>(height())};
    m_layouts.start([this, items = m_items, whole = m_whole, area, measures = m_measures](const std::stop_token&) {
        return [this, items, boxes = layOut(*items, whole, area, measures)]() mutable {
            m_boxes = std::move(boxes);
            m_drawn = items;
            update();
        };
    });
}

void MapView::resizeEvent(QResizeEvent*) { layOutLater(); }

std::optional<std::size_t> MapView::currentBox() const {
    const auto found =
        std::ranges::find_if(m_boxes, [this](const MapBox& box) { return box.folded == 0 && box.item == m_current; });
    return found == m_boxes.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - m_boxes.begin()));
}

// Drawing

QRect MapView::markOf(const MapBox& box) const {
    if (box.folded > 0 || box.area.width < kMarkSide + 2 * kGap || box.area.height < kMarkSide + 2)
        return {};
    const int left = layoutDirection() == Qt::RightToLeft
                         ? static_cast<int>(box.area.x + box.area.width) - kMarkSide - kGap
                         : static_cast<int>(box.area.x) + kGap;
    return {left, static_cast<int>(box.area.y) + 2, kMarkSide, kMarkSide};
}

void MapView::paintBox(QPainter& painter, const MapBox& box) const {
    const auto rectangle = rectangleOf(box.area).adjusted(0.5, 0.5, -0.5, -0.5);
    auto look = m_source.lookOf(box.item);
    if (box.folded > 0) {
        look.name = QString::fromStdString(localizedFormat("%@ more", {std::to_string(box.folded)}));
        look.size.clear();
    }
    QColor colour = look.colour;
    const bool isPale = box.folded > 0 || box.isOpen || look.mark == Qt::Unchecked;
    if (isPale)
        colour = QColor::fromRgbF((colour.redF() + 2 * palette().base().color().redF()) / 3,
                                  (colour.greenF() + 2 * palette().base().color().greenF()) / 3,
                                  (colour.blueF() + 2 * palette().base().color().blueF()) / 3);
    painter.fillRect(rectangle, colour);
    painter.setPen(palette().base().color());
    painter.drawRect(rectangle);
    const int line = fontMetrics().height();
    if (rectangle.width() < 3 * line || rectangle.height() < line + 1)
        return;
    int before = kGap;
    if (const auto mark = markOf(box); look.mark && !mark.isNull()) {
        QStyleOptionViewItem option;
        option.initFrom(this);
        option.rect = mark;
        option.state |= *look.mark == Qt::Checked     ? QStyle::State_On
                        : *look.mark == Qt::Unchecked ? QStyle::State_Off
                                                      : QStyle::State_NoChange;
        style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &option, &painter, this);
        before += kMarkSide + kGap;
    }
    painter.setPen(isDark(colour) ? Qt::white : Qt::black);
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const auto text = rectangle.adjusted(isMirrored ? kGap : before, 1, isMirrored ? -before : -kGap, 0);
    if (text.width() < kFewestLetters * fontMetrics().averageCharWidth())
        return;
    const auto write = [&](double top, const QString& words) {
        painter.drawText(QRectF(text.left(), text.top() + top, text.width(), line),
                         static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignVCenter),
                         fontMetrics().elidedText(words, Qt::ElideMiddle, static_cast<int>(text.width())));
    };
    if (box.isOpen || rectangle.height() < 2 * line + 2) {
        const bool hasRoom = fontMetrics().horizontalAdvance(look.name + look.size) + 2 * kGap < text.width();
        write(0, hasRoom && !look.size.isEmpty() ? look.name + QStringLiteral("  ") + look.size : look.name);
        return;
    }
    write(0, look.name);
    if (fontMetrics().horizontalAdvance(look.size) <= text.width())
        write(line, look.size);
}

void MapView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    if (m_drawn != m_items && m_drawn->items.size() != m_items->items.size())
        return; // of other items; the new layout is on its way
    for (const auto& box : m_boxes)
        paintBox(painter, box);
    if (const auto box = currentBox()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::NoBrush);
        const auto rectangle = rectangleOf(m_boxes[*box].area);
        painter.setPen(QPen(palette().base().color(), 5));
        painter.drawRect(rectangle.adjusted(2, 2, -2, -2));
        painter.setPen(QPen(hasFocus() ? palette().highlight().color() : palette().text().color(), 3));
        painter.drawRect(rectangle.adjusted(1.5, 1.5, -1.5, -1.5));
    }
}

// The person

bool MapView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const auto box = boxAt(m_boxes, help->pos().x(), help->pos().y());
    if (!box)
        QToolTip::hideText();
    else // strangers' names stand in it
        QToolTip::showText(
            help->globalPos(),
            m_source.toolTipOf(m_boxes[*box].item).toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>")),
            this);
    return true;
}

void MapView::choose(std::size_t box) {
    setCurrent(m_boxes[box].item);
    m_source.select(m_boxes[box].item);
}

void MapView::mousePressEvent(QMouseEvent* event) {
    const auto place = event->position();
    const auto box = event->button() == Qt::LeftButton ? boxAt(m_boxes, place.x(), place.y()) : std::nullopt;
    if (!box)
        return QWidget::mousePressEvent(event);
    choose(*box);
    if (m_boxes[*box].folded == 0 && markOf(m_boxes[*box]).contains(place.toPoint()))
        m_source.toggle(m_boxes[*box].item);
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
    const auto place = event->position();
    const auto box = boxAt(m_boxes, place.x(), place.y());
    if (!box)
        return;
    if (m_boxes[*box].folded == 0 && markOf(m_boxes[*box]).contains(place.toPoint()))
        m_source.toggle(m_boxes[*box].item); // two quick clicks
    else
        m_source.enter(m_boxes[*box].item);
}

void MapView::goBeside(int dx, int dy) {
    const auto from = currentBox();
    if (!from) {
        if (!m_boxes.empty())
            choose(0);
        return;
    }
    if (const auto next = boxBeside(m_boxes, *from, dx, dy))
        choose(*next);
}

void MapView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
        return goBeside(-1, 0);
    case Qt::Key_Right:
        return goBeside(1, 0);
    case Qt::Key_Up:
        return goBeside(0, -1);
    case Qt::Key_Down:
        return goBeside(0, 1);
    case Qt::Key_Home:
        if (!m_boxes.empty())
            choose(0);
        return;
    case Qt::Key_Space:
        if (m_current)
            m_source.toggle(*m_current);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_current)
            m_source.enter(*m_current);
        return;
    case Qt::Key_Backspace:
        return m_source.leave();
    default:
        QWidget::keyPressEvent(event);
    }
}

void MapView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    if (!m_current && !m_boxes.empty())
        choose(0);
    update();
}

} // namespace sweeply
