#pragma once

#include <QCheckBox>

namespace sweeply {

class Application;

/// Has the uninstaller check what matches an application weakly, too: a preference, which also counts for what is
/// listed already. Main thread.
class WeakMatchesBox final : public QCheckBox {
  public:
    /// `application` outlives this.
    explicit WeakMatchesBox(Application& application);

    /// Cannot be changed while something runs over the list.
    void refresh();

  private:
    Application& m_application;
};

} // namespace sweeply
