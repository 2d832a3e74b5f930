#include "ui/UserMenu.h"

#include "ui/Text.h"

#include <QActionGroup>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kLastUsers = "lastUsers";

QString titleOf(const TargetUser& user) {
    const auto name = shown(user.name);
    return user.obstacle ? name + QStringLiteral(" – ") + shown(user.obstacle->message()) : name;
}

std::optional<std::string> askForUser(const std::vector<TargetUser>& users, const std::string& lastChosen,
                                      QWidget* parent) {
    QDialog dialog(parent);
    dialog.setWindowTitle(localized("Several Users"));
    auto* question =
        new QLabel(localized("Whose files are meant? Another user can be chosen later, in the menu User."));
    question->setWordWrap(true);
    auto* list = new QListWidget;
    list->setAccessibleName(localized("Users"));
    for (const auto& user : users) {
        auto* item = new QListWidgetItem(titleOf(user), list);
        if (user.obstacle)
            item->setFlags(Qt::NoItemFlags);
        else if (user.name == lastChosen || !list->currentItem())
            list->setCurrentItem(item);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Open)->setText(localized("Open"));
    buttons->button(QDialogButtonBox::Open)->setEnabled(list->currentItem());
    buttons->button(QDialogButtonBox::Cancel)->setText(localizedTitle("Cancel"));
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    QObject::connect(list, &QListWidget::itemActivated, &dialog, &QDialog::accept);
    auto* all = new QVBoxLayout(&dialog);
    all->addWidget(question);
    all->addWidget(list);
    all->addWidget(buttons);
    dialog.resize(360, 260);
    if (dialog.exec() != QDialog::Accepted || !list->currentItem())
        return std::nullopt;
    return users[static_cast<std::size_t>(list->currentRow())].name;
}

} // namespace

std::optional<TargetOptions> withChosenUser(const TargetOptions& options, QWidget* parent) {
    const auto files = options.root && !namesUser(options) ? FileManager::open(*options.root) : Failure(Error{});
    if (!files || (*files)->isHostRoot())
        return options;
    const auto users = usersOf(**files);
    if (!users || users->size() < 2)
        return options;
    QSettings settings;
    settings.beginGroup(QLatin1String(kLastUsers));
    const auto key = QString::fromLatin1(QByteArray::fromStdString((*files)->rootPath()).toHex());
    const auto user = askForUser(*users, utf8(settings.value(key).toString()), parent);
    if (!user)
        return std::nullopt;
    settings.setValue(key, QString::fromStdString(*user));
    return forUser(options, *user);
}

UserMenu::UserMenu(QWidget* window, std::function<void(const std::string&)> choose)
    : QMenu(localized("&User"), window), m_choose(std::move(choose)) {
    hideUsers();
}

void UserMenu::showUsers(const std::vector<TargetUser>& users, const std::string& current) {
    delete std::exchange(m_group, nullptr);
    clear();
    menuAction()->setVisible(users.size() > 1);
    m_group = new QActionGroup(this);
    QAction* chosen = nullptr;
    for (const auto& user : users) {
        auto* action = addAction(titleOf(user).replace(QLatin1Char('&'), QStringLiteral("&&")));
        action->setData(QByteArray::fromStdString(user.name));
        action->setCheckable(true);
        action->setActionGroup(m_group);
        action->setChecked(user.name == current);
        action->setEnabled(!user.obstacle);
        if (action->isChecked())
            chosen = action;
    }
    connect(m_group, &QActionGroup::triggered, this, [this, chosen](QAction* action) {
        if (action == chosen)
            return;
        // The mark follows once the other user's files are open.
        if (chosen)
            chosen->setChecked(true);
        QMetaObject::invokeMethod(
            this, [this, name = action->data().toByteArray().toStdString()] { m_choose(name); }, Qt::QueuedConnection);
    });
}

} // namespace sweeply
