#pragma once

#include <QLabel>

namespace sweeply {

/// Plain text that is broken within words too, as paths and file names need: it never asks for more width than it is
/// given. Main thread.
class WrappedLabel final : public QLabel {
  public:
    WrappedLabel();

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace sweeply
