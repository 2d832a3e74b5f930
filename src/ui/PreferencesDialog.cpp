#include "ui/PreferencesDialog.h"

#include "app/ModuleCatalog.h"
#include "engine/CoordinatorPreferences.h"
#include "modules/ignorelist/IgnoreListPreferences.h"
#include "platform/Localization.h"
#include "ui/RemovalSheet.h"
#include "ui/Text.h"
#include "ui/UncheckedItemsPage.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace sweeply {

namespace {

QLabel* explanation(const QString& text) {
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    return label;
}

QCheckBox* addCheckBox(QVBoxLayout& column, const QString& text, bool isChecked, std::function<void(bool)> change) {
    auto* box = new QCheckBox(text);
    box->setChecked(isChecked);
    QObject::connect(box, &QCheckBox::toggled, box, std::move(change));
    column.addWidget(box);
    return box;
}

} // namespace

PreferencesDialog::PreferencesDialog(TargetSession& session, QWidget* parent) : QDialog(parent), m_session(session) {
    setWindowTitle(localized("Preferences"));
    setWindowModality(Qt::WindowModal);
    auto* tabs = new QTabWidget;
    tabs->setAccessibleName(localized("Preferences"));
    tabs->addTab(languagesPage(), localized("General"));
    tabs->addTab(modulesPage(), localized("Modules"));
    tabs->addTab(ignoredPage(), localized("Ignore List"));
    tabs->addTab(new UncheckedItemsPage(m_session.application().ignoreList().uncheckedItems()), localized("Unchecked"));
    tabs->addTab(advancedPage(), localized("Advanced"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setText(localizedTitle("Close"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* all = new QVBoxLayout(this);
    all->addWidget(tabs);
    all->addWidget(buttons);
    resize(520, 460);
    connect(this, &QDialog::finished, this, [this] {
        (void)m_session.application().defaults().synchronize(); // a failure is logged by the preferences themselves
        m_session.application().scanController().preferencesChanged();
    });
}

QWidget* PreferencesDialog::languagesPage() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->addWidget(explanation(localized("Localizations in these languages stay. English always stays.")));
    auto* list = new QListWidget;
    list->setAccessibleName(localized("Languages to keep"));
    auto& keepList = m_session.application().languageKeepList();
    for (const auto& row : keepList.rows()) {
        auto* item = new QListWidgetItem(QString::fromStdString(row.displayLanguageName), list);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(row.enabled ? Qt::Checked : Qt::Unchecked);
    }
    connect(list, &QListWidget::itemChanged, list, [list, &keepList](QListWidgetItem* item) {
        const auto row = static_cast<std::size_t>(list->row(item));
        if (keepList.rows()[row].enabled != (item->checkState() == Qt::Checked))
            keepList.toggle(row);
    });
    column->addWidget(list);
    return page;
}

QWidget* PreferencesDialog::modulesPage() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->addWidget(explanation(localized("These take part in a scan.")));
    auto& defaults = m_session.application().defaults();
    for (const auto& row : scanModules()) {
        for (const auto& part : row.switches) {
            QString name = localized(row.title);
            if (row.switches.size() > 1)
                name += QStringLiteral(" (") +
                        QString::fromLatin1(part.name.data(), static_cast<qsizetype>(part.name.size())) +
                        QLatin1Char(')');
            addCheckBox(*column, name, defaults.boolForKey(part.defaultsName),
                        [&defaults, key = part.defaultsName](bool isOn) { defaults.setBool(key, isOn); });
        }
    }
    column->addStretch(1);
    return page;
}

QWidget* PreferencesDialog::ignoredPage() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->addWidget(explanation(localized("These applications are left alone by every scan.")));
    m_ignored = new QListWidget;
    m_ignored->setAccessibleName(localized("Applications to leave alone"));
    column->addWidget(m_ignored);
    auto* buttons = new QHBoxLayout;
    auto* add = new QPushButton(localized("Add…"));
    auto* remove = new QPushButton(localized("Remove"));
    buttons->addWidget(add);
    buttons->addWidget(remove);
    buttons->addStretch(1);
    column->addLayout(buttons);
    auto& list = m_session.application().ignoreList().applicationList();
    connect(add, &QPushButton::clicked, this, [this, &list] {
        const auto& files = *m_session.application().target().files;
        const auto root = QString::fromStdString(files.rootPath());
        const auto chosen = QFileDialog::getExistingDirectory(this, localized("An Application to Leave Alone"), root);
        if (!chosen.startsWith(root))
            return;
        const auto path = utf8(root == QLatin1String("/") ? chosen : chosen.mid(root.size()));
        for (const auto& identifier : list.identifiersAt(path))
            list.addBundleToList(identifier);
        fillIgnored();
    });
    connect(remove, &QPushButton::clicked, this, [this, &list] {
        if (const auto* item = m_ignored->currentItem())
            list.removeBundleFromList(utf8(item->text()));
        fillIgnored();
    });
    fillIgnored();
    return page;
}

void PreferencesDialog::fillIgnored() {
    m_ignored->clear();
    for (const auto& identifier : m_session.application().ignoreList().applicationList().ignoreAppsArray())
        m_ignored->addItem(shown(identifier));
}

QWidget* PreferencesDialog::advancedPage() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    auto& application = m_session.application();
    addCheckBox(*column, localized("Overwrite files before they are erased"),
                application.defaults().boolForKey(coordinator::kUseSecureErase), [&application](bool isOn) {
                    application.defaults().setBool(coordinator::kUseSecureErase, isOn);
                    application.scanController().setUseSecureErase(isOn);
                });
    column->addWidget(
        explanation(localized("Disks with flash memory, snapshots and file systems that copy on writing may keep "
                              "old contents elsewhere.")));
    column->addSpacing(12);
    addCheckBox(*column, localized("Rest after each item, from the next start on, so that others can work meanwhile"),
                QSettings().value(QLatin1String(kRestsBetweenItems)).toBool(),
                [](bool isOn) { QSettings().setValue(QLatin1String(kRestsBetweenItems), isOn); });
    addCheckBox(*column, localized("Ask before caches and logs are removed, too"),
                !QSettings().value(QLatin1String(kRemovesCachesAndLogsUnasked)).toBool(),
                [](bool isOn) { QSettings().setValue(QLatin1String(kRemovesCachesAndLogsUnasked), !isOn); });
    const auto addSwitch = [&](const char* text, const char* key) {
        addCheckBox(*column, localized(text), application.defaults().boolForKey(key),
                    [&application, key](bool isOn) { application.defaults().setBool(key, isOn); });
    };
    addSwitch(translatable("Look for a newer shared ignore list at start"), ignorelist::kAutoUpdate);
    addSwitch(translatable("Share the ignore list with its maker"), ignorelist::kSharingPermission);
    column->addSpacing(12);
    auto* agents = m_session.watcherAgents();
    const auto reasonAgainstWatchers =
        localized("Watchers work on the Mac that the program runs on, and this is another one's volume.");
    const auto addWatcher = [&](const char* text, bool isOn, std::function<void(bool)> change) {
        auto* box = addCheckBox(*column, localized(text), isOn, std::move(change));
        box->setEnabled(agents != nullptr);
        if (!agents) {
            box->setToolTip(reasonAgainstWatchers);
            box->setAccessibleDescription(reasonAgainstWatchers);
        }
    };
    addWatcher(translatable("Offer to uninstall applications that are moved to the Trash"),
               agents && agents->trashWatcherInstalled(),
               [agents](bool isOn) { agents->setTrashWatcherInstalled(isOn); });
    const auto addCleaner = [&](const char* text, const char* cleaner) {
        addWatcher(text, agents && agents->volumeCleanerInstalled(cleaner),
                   [agents, cleaner](bool isOn) { agents->setVolumeCleanerInstalled(cleaner, isOn); });
    };
    addCleaner(translatable("Empty the Trash of volumes that are mounted"), WatcherAgents::kCleanTrashes);
    addCleaner(translatable("Remove the Finder's files from volumes that are mounted"), WatcherAgents::kCleanMacOSJunk);
    addCleaner(translatable("Remove Windows' files from volumes that are mounted"), WatcherAgents::kCleanWinJunk);
    if (!agents)
        column->addWidget(explanation(reasonAgainstWatchers));
    column->addStretch(1);
    return page;
}

} // namespace sweeply
