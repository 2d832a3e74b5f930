#pragma once

#include <QString>
#include <QWidget>
#include <functional>

class QLabel;
class QListWidget;

namespace sweeply {

/// Where a person says which Mac is meant: volumes found among the mounts, the last ones, a folder, or the sample to
/// try things on. Main thread.
class StartPage final : public QWidget {
  public:
    /// `choose` gets the folder on this machine that holds the system.
    explicit StartPage(std::function<void(const QString&)> choose);

    /// Shows why the last choice could not be opened.
    void showProblem(const QString& text);
    /// Remembers a target that was opened.
    static void remember(const QString& folder);

  private:
    void fill();
    void chooseFolder();
    void makeSample();

    const std::function<void(const QString&)> m_choose;
    QListWidget* m_places;
    QLabel* m_problem;
};

} // namespace sweeply
