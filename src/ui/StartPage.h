#pragma once

#include "ui/BackgroundJobs.h"
#include "ui/MacPlaces.h"

#include <QString>
#include <QWidget>
#include <functional>

class QLabel;
class QListWidget;

namespace sweeply {

/// Where a person says which Mac is meant: volumes found among the mounts, the last ones, a folder, or the sample to
/// try things on. Mounted volumes of a Mac's kind that cannot be chosen are listed with the reason. Main thread.
class StartPage final : public QWidget {
  public:
    /// Both get the folder on this machine that holds the system.
    struct Choices {
        std::function<void(const QString&)> choose;
        std::function<void(const QString&)> tour; ///< of a sample
    };
    explicit StartPage(Choices choices);

    /// Shows why the last choice could not be opened.
    void showProblem(const QString& text);
    /// Remembers a target that was opened.
    static void remember(const QString& folder);

  protected:
    /// Looks again: volumes come and go.
    void showEvent(QShowEvent* event) override;

  private:
    void lookForPlaces();
    void showPlaces(const QList<MacPlace>& places);
    void chooseFolder();

    const Choices m_choices;
    QListWidget* m_places;
    QLabel* m_problem;
    BackgroundJobs m_search;
};

} // namespace sweeply
