#pragma once

#include "app/Target.h"

#include <QMenu>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QActionGroup;

namespace sweeply {

/// The options for one of the target's users: as they are where they name one or there is no choice, else for the one
/// whom the person chooses. Nothing when he would rather not.
[[nodiscard]] std::optional<TargetOptions> withChosenUser(const TargetOptions& options, QWidget* parent);

/// The menu with the users of the open Mac, hidden where there is no choice among them. Main thread.
class UserMenu final : public QMenu {
  public:
    /// `choose` is told of another user than the current one, later, when the menu may be filled anew. The window owns
    /// the menu.
    UserMenu(QWidget* window, std::function<void(const std::string&)> choose);

    void showUsers(const std::vector<TargetUser>& users, const std::string& current);
    void hideUsers() { showUsers({}, {}); }

  private:
    const std::function<void(const std::string&)> m_choose;
    QActionGroup* m_group = nullptr;
};

} // namespace sweeply
