#include "ui/TargetChooser.h"

#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"
#include "platform/TypedPath.h"
#include "ui/Drawings.h"
#include "ui/Text.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace sweeply {

class TargetChooser::Entries final : public QAbstractListModel {
  public:
    using QAbstractListModel::QAbstractListModel;

    void set(std::vector<TargetEntry> entries) {
        beginResetModel();
        m_entries = std::move(entries);
        endResetModel();
    }
    [[nodiscard]] const TargetEntry& at(int row) const { return m_entries[static_cast<std::size_t>(row)]; }
    [[nodiscard]] QModelIndex indexOf(const std::string& name) const {
        const auto found = std::ranges::find(m_entries, name, &TargetEntry::name);
        return found == m_entries.end() ? QModelIndex() : index(static_cast<int>(found - m_entries.begin()));
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
    }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid())
            return {};
        const auto& entry = at(index.row());
        if (role == Qt::DisplayRole)
            return shown(entry.name);
        if (role == Qt::DecorationRole)
            return entry.isBundle   ? drawings::bundle()
                   : entry.isFolder ? drawings::iconFor(Icon::GenericFolder)
                                    : drawings::document();
        return {};
    }

  private:
    std::vector<TargetEntry> m_entries;
};

TargetChooser::TargetChooser(const FileManager& files, const QString& title, const std::string& folder, QWidget* parent)
    : QDialog(parent), m_files(files), m_entries(new Entries(this)), m_path(new QLineEdit), m_list(new QListView),
      m_problem(new QLabel), m_up(new QPushButton(localized("Enclosing Folder"))),
      m_add(new QPushButton(localizedTitle("Add"))) {
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    m_path->setAccessibleName(localized("Folder on the Mac"));
    m_up->setShortcut(QKeySequence(QStringLiteral("Alt+Up")));
    m_up->setAutoDefault(false);
    auto* top = new QHBoxLayout;
    top->addWidget(m_path, 1);
    top->addWidget(m_up);
    m_list->setAccessibleName(localized("Files and Folders"));
    m_list->setModel(m_entries);
    m_list->setUniformItemSizes(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setIconSize({20, 20});
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    m_add->setDefault(true);
    m_add->setEnabled(false);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(m_add, QDialogButtonBox::AcceptRole);
    buttons->addButton(localizedTitle("Cancel"), QDialogButtonBox::RejectRole);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(m_list, 1);
    all->addWidget(m_problem);
    all->addWidget(buttons);
    resize(480, 420);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { chooseSelected(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_up, &QPushButton::clicked, this, [this] {
        open(std::string(pathWithoutLastComponent(m_folder)), std::string(lastPathComponent(m_folder)));
    });
    connect(m_path, &QLineEdit::returnPressed, this, [this] { goTo(m_path->text()); });
    connect(m_list, &QListView::activated, this, [this](const QModelIndex& index) { activate(index); });
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { m_add->setEnabled(m_list->selectionModel()->hasSelection()); });
    open(folder);
    m_list->setFocus();
}

TargetChooser::~TargetChooser() = default;

void TargetChooser::open(const std::string& folder, const std::string& selected) {
    m_folder = folder;
    m_path->setText(shown(folder));
    m_up->setEnabled(folder != "/");
    m_entries->set({});
    m_add->setEnabled(false);
    complain({});
    m_reading = {}; // ends the one before
    m_reading = std::jthread([this, folder, selected](const std::stop_token& stop) {
        auto entries = entriesOfTargetFolder(m_files, folder, stop);
        if (stop.stop_requested())
            return;
        QMetaObject::invokeMethod(this, [this, folder, selected, found = std::move(entries)] {
            if (folder == m_folder)
                showEntries(found, selected);
        });
    });
}

void TargetChooser::showEntries(const Result<std::vector<TargetEntry>>& entries, const std::string& selected) {
    if (!entries)
        return complain(shown(entries.error().message()));
    m_entries->set(*entries);
    const auto place = selected.empty() ? m_entries->index(0) : m_entries->indexOf(selected);
    if (selected.empty()) // only to begin with: nothing is chosen yet
        m_list->selectionModel()->setCurrentIndex(place, QItemSelectionModel::NoUpdate);
    else
        m_list->setCurrentIndex(place);
}

void TargetChooser::goTo(const QString& typed) {
    if (typed.isEmpty())
        return;
    const auto path = typedPath(m_files.root(), utf8(typed));
    if (!path)
        return complain(shown(path.error().message()));
    const auto& item = path->path;
    if (m_files.directoryExistsAtPath(item))
        return open(item);
    if (!m_files.attributesOfItemAtPath(item, Links::DontFollow))
        return complain(QString::fromStdString(localizedFormat("%@: there is no such file", {utf8(shown(item))})));
    open(std::string(pathWithoutLastComponent(item)), std::string(lastPathComponent(item)));
}

void TargetChooser::activate(const QModelIndex& index) {
    const auto& entry = m_entries->at(index.row());
    if (entry.isFolder && !entry.isBundle)
        open(joinedPath(m_folder, entry.name));
    else
        chooseSelected();
}

void TargetChooser::chooseSelected() {
    if (m_path->hasFocus() && m_path->isModified())
        return; // Return was meant for the path
    for (const auto& index : m_list->selectionModel()->selectedRows())
        m_chosen.push_back(joinedPath(m_folder, m_entries->at(index.row()).name));
    if (!m_chosen.empty())
        accept();
}

void TargetChooser::complain(const QString& problem) {
    m_problem->setText(problem);
    m_problem->setVisible(!problem.isEmpty());
}

} // namespace sweeply
