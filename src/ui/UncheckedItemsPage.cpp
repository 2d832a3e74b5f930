#include "ui/UncheckedItemsPage.h"

#include "app/ModuleCatalog.h"
#include "modules/ignorelist/UncheckedItems.h"
#include "platform/Localization.h"
#include "ui/Text.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace sweeply {

namespace {

/// Of an item: the key that its module is stored by, and its own, as the bytes that they are.
enum Role { ModuleKey = Qt::UserRole, ItemKey };

QString titleOf(const std::string& moduleKey) {
    for (const auto& row : scanModules()) {
        if (std::ranges::find(row.switches, moduleKey, &ModuleSwitch::defaultsName) != row.switches.end())
            return localized(row.title);
    }
    return shown(moduleKey);
}

QByteArray bytes(const std::string& text) { return QByteArray::fromStdString(text); }

} // namespace

UncheckedItemsPage::UncheckedItemsPage(UncheckedItems& items)
    : m_items(items), m_list(new QTreeWidget), m_remove(new QPushButton(localized("Remove"))) {
    auto* explanation = new QLabel(localized("These items were unchecked once, and stay so in every scan. What is "
                                             "removed here is checked again in the next one."));
    explanation->setWordWrap(true);
    m_list->setAccessibleName(localized("Unchecked items"));
    m_list->setHeaderLabels({localized("Name"), localized("Module")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_remove);
    buttons->addStretch(1);
    auto* column = new QVBoxLayout(this);
    column->addWidget(explanation);
    column->addWidget(m_list, 1);
    column->addLayout(buttons);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this,
            [this] { m_remove->setEnabled(!m_list->selectedItems().isEmpty()); });
    connect(m_remove, &QPushButton::clicked, this, [this] { forgetSelected(); });
    fill();
}

void UncheckedItemsPage::fill() {
    m_list->clear();
    QList<QTreeWidgetItem*> rows;
    for (const auto& module : m_items.moduleKeys()) {
        const auto keys = m_items.ignoreListForController(module);
        for (const auto& key : std::set<std::string>(keys.begin(), keys.end())) { // each may be there several times
            rows << new QTreeWidgetItem({shown(key), titleOf(module)});
            rows.back()->setToolTip(0, shown(key));
            rows.back()->setData(0, ModuleKey, bytes(module));
            rows.back()->setData(0, ItemKey, bytes(key));
        }
    }
    m_list->addTopLevelItems(rows);
    m_list->resizeColumnToContents(1);
    m_remove->setEnabled(false);
}

void UncheckedItemsPage::forgetSelected() {
    std::map<std::string, std::vector<std::string>> keys;
    for (const auto* item : m_list->selectedItems())
        keys[item->data(0, ModuleKey).toByteArray().toStdString()].push_back(
            item->data(0, ItemKey).toByteArray().toStdString());
    for (const auto& [module, itemKeys] : keys)
        m_items.removeKeys(itemKeys, module);
    fill();
}

} // namespace sweeply
