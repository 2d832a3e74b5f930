#pragma once

#include <QWidget>

namespace sweeply {

class LaunchDatabase;

/// A line with the button that has the system's list of applications made anew. Main thread.
class RebuildRow final : public QWidget {
  public:
    /// `database` outlives this; a rebuilding under way may outlast it.
    explicit RebuildRow(LaunchDatabase& database);
};

} // namespace sweeply
