#include "ui/Glyphs.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

namespace sweeply {

namespace {

/// On a field of 24 by 24.
const char* shapesOf(Glyph which) {
    switch (which) {
    case Glyph::Scan:
        return "<circle cx='10.5' cy='10.5' r='6'/><path d='M15 15l5.5 5.5'/>";
    case Glyph::Stop:
        return "<rect x='5.500' y='5.500' width='13' height='13' rx='1.500'/>";
    case Glyph::Pause:
        return "<path d='M8.500 5v14M15.500 5v14'/>";
    case Glyph::Resume:
        return "<path d='M7.500 4.500l11 7.500l-11 7.500z'/>";
    case Glyph::Remove:
        return "<path d='M4.500 7h15M6.500 7l1 13h9l1-13M9.500 7V4h5v3M10.200 10.500l.4 6M13.800 10.500l-.4 6'/>";
    case Glyph::Uninstall:
        return "<path d='M4 8.500l8-4.500l8 4.500v8L12 20.500L4 16.500zM9 10l6 5.500M15 10l-6 5.500'/>";
    case Glyph::LockClosed:
        return "<rect x='5' y='11' width='14' height='9.500' rx='1.500'/><path d='M8 11V8a4 4 0 0 1 8 0v3'/>";
    case Glyph::LockOpen:
        return "<rect x='5' y='11' width='14' height='9.500' rx='1.500'/><path d='M8 11V7a4 4 0 0 1 7.700-1.500'/>";
    case Glyph::Warning:
        return "<path d='M12 4.500l9 15.500h-18zM12 10.500v4M12 17.200v.100'/>";
    }
    return "";
}

/// Draws anew for each palette and state: nothing drawn is kept.
class GlyphEngine final : public QIconEngine {
  public:
    explicit GlyphEngine(Glyph which) : m_which(which) {}

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State) override {
        const auto palette = QGuiApplication::palette();
        const QColor colour =
            mode == QIcon::Selected
                ? palette.color(QPalette::HighlightedText)
                : palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText);
        const QString svg = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 24 24' fill='none' "
                                           "stroke='%1' stroke-opacity='%2' stroke-width='1.9' stroke-linecap='round' "
                                           "stroke-linejoin='round'>%3</svg>")
                                .arg(colour.name())
                                .arg(colour.alphaF())
                                .arg(QLatin1String(shapesOf(m_which)));
        QSvgRenderer(svg.toUtf8()).render(painter, place);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect({}, size), mode, state);
        return picture;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new GlyphEngine(m_which); }

  private:
    const Glyph m_which;
};

} // namespace

QIcon glyph(Glyph which) { return QIcon(new GlyphEngine(which)); }

} // namespace sweeply
