#pragma once

#include "app/Application.h"

#include <QWidget>
#include <vector>

class QLabel;

namespace sweeply {

/// The target at a glance: which system it is, how full its disk is, what each module could free. Main thread.
class OverviewPage final : public QWidget {
  public:
    /// `application` outlives this.
    explicit OverviewPage(Application& application);

    /// Takes over the figures.
    void refresh();

  private:
    class DiskChart;
    class FindingsChart;

    Application& m_application;
    QLabel* m_lastScan;
    QLabel* m_freed;
    DiskChart* m_disk;
    QLabel* m_volume; ///< which one the ring shows
    QLabel* m_readOnly;
    FindingsChart* m_findings;
};

} // namespace sweeply
