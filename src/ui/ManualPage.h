#pragma once

#include <QWidget>
#include <functional>

class QLineEdit;
class QTextBrowser;

namespace sweeply {

/// The manual as a page of the window: the same text as the manual pages, to read without a network, with a field to
/// find something in it. Main thread.
class ManualPage final : public QWidget {
  public:
    /// `close` is called when the person has read enough.
    explicit ManualPage(std::function<void()> close);

  private:
    void find(bool isBackward);

    QTextBrowser* m_text;
    QLineEdit* m_find;
};

} // namespace sweeply
