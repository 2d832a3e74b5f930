#pragma once

#include "ui/BackgroundJobs.h"
#include "ui/MapLayout.h"

#include <QColor>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

namespace sweeply {

/// What a map shows of an item.
struct MapLook {
    QString name;
    QString size;
    QColor colour;
    std::optional<Qt::CheckState> mark; ///< none for what cannot be checked
};

/// What the things on a map are, by their places in MapItems. Asked on the main thread, about what is drawn.
class MapSource {
  public:
    virtual ~MapSource() = default;
    [[nodiscard]] virtual MapLook lookOf(std::size_t item) const = 0;
    /// Name, place and size, in lines.
    [[nodiscard]] virtual QString toolTipOf(std::size_t item) const = 0;
    /// The person made it the current one,
    virtual void select(std::size_t item) = 0;
    /// clicked its box or pressed Space,
    virtual void toggle(std::size_t item) = 0;
    /// double-clicked it or pressed Enter; shows it alone where that is possible,
    virtual void enter(std::size_t item) = 0;
    /// or pressed Backspace.
    virtual void leave() = 0;
};

/// Draws what takes space as rectangles. Arrow keys go from one to the next, Space checks, Enter goes into a group and
/// Backspace out of it. Main thread; the layout is made on another one.
class MapView final : public QWidget {
  public:
    /// `source` outlives this.
    MapView(MapSource& source, const QString& name);

    /// Shows what is in one item of these. The current item is kept where its place stays the same.
    void setItems(std::shared_ptr<const MapItems> items, std::size_t whole);
    /// The item that has the keyboard; none, or one that is not drawn by itself, is fine.
    void setCurrent(std::optional<std::size_t> item);
    [[nodiscard]] std::optional<std::size_t> current() const { return m_current; }
    [[nodiscard]] const std::vector<MapBox>& boxes() const { return m_boxes; }
    [[nodiscard]] QSize sizeHint() const override { return {320, 240}; }

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

  private:
    void layOutLater();
    void paintBox(QPainter& painter, const MapBox& box) const;
    void goBeside(int dx, int dy);
    void choose(std::size_t box);
    [[nodiscard]] QRect markOf(const MapBox& box) const;
    [[nodiscard]] std::optional<std::size_t> currentBox() const;

    MapSource& m_source;
    MapMeasures m_measures;
    std::shared_ptr<const MapItems> m_items = std::make_shared<MapItems>();
    std::size_t m_whole = 0;
    std::vector<MapBox> m_boxes;
    std::shared_ptr<const MapItems> m_drawn = m_items; ///< that m_boxes are of
    std::optional<std::size_t> m_current;
    BackgroundJobs m_layouts;
};

} // namespace sweeply
