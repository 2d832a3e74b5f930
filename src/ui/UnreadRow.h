#pragma once

#include "platform/Error.h"
#include "platform/NotificationCenter.h"

#include <QWidget>
#include <atomic>
#include <memory>
#include <vector>

class QLabel;

namespace sweeply {

class Application;

/// The line below the results that says how much of the target could not be read, and opens the list of it. Without
/// such problems it is not there. Main thread.
class UnreadRow final : public QWidget {
  public:
    /// `application` outlives this.
    explicit UnreadRow(Application& application);

    /// Takes over what was met, once nothing is being looked for any more.
    void refresh();

  private:
    void showList();

    Application& m_application;
    QLabel* m_count;
    std::vector<Error> m_problems;
    /// Was there something new? Set on the thread that meets it, which may outlive this.
    std::shared_ptr<std::atomic<bool>> m_isStale = std::make_shared<std::atomic<bool>>(true);
    NotificationCenter::Subscription m_subscription;
};

} // namespace sweeply
