#include "ui/ResultPage.h"

#include "app/ModuleCatalog.h"
#include "engine/ScanObject.h"
#include "modules/draggedfiles/DropTargets.h"
#include "ui/Drawings.h"
#include "ui/ListAndMap.h"
#include "ui/ResultMap.h"
#include "ui/Text.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QStackedLayout>
#include <QStyle>
#include <QToolButton>
#include <QTreeView>
#include <QUrl>
#include <QVBoxLayout>

namespace sweeply {

namespace {

/// Expanding more than this by itself would hide what else there is.
constexpr int kManyRows = 200;

QColor colourOf(const ADScanControllerView& module) {
    return drawings::moduleColour(module.scanObject() ? module.scanObject()->viewName() : kExtensionsView);
}

} // namespace

ResultPage::ResultPage(ADScanControllerView& module, Services services, const QString& title, const QString& hint)
    : m_services(std::move(services)), m_model(module, m_services.treeLock, m_services.units, m_services.pictures),
      m_filter(new QLineEdit), m_outline(new QTreeView), m_hint(new QLabel(hint)), m_contents(new QStackedLayout),
      m_anchor(*m_outline),
      m_map(new ResultMap(*m_outline, m_model, m_services.treeLock, m_services.units, colourOf(module))) {
    auto* heading = new QLabel(title);
    auto font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    heading->setFont(font);
    m_filter->setPlaceholderText(localized("Filter"));
    m_filter->setAccessibleName(localized("Filter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->setMaximumWidth(240);
    auto* top = new QHBoxLayout;
    top->addWidget(heading, 1);
    top->addWidget(m_filter);

    m_outline->setAccessibleName(title);
    m_outline->setModel(&m_model);
    m_anchor.watchModel();
    m_outline->setUniformRowHeights(true);
    m_outline->setAlternatingRowColors(true);
    m_outline->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_outline->setIconSize({20, 20});
    m_outline->setContextMenuPolicy(Qt::CustomContextMenu);
    m_outline->setFrameShape(QFrame::NoFrame);
    m_outline->header()->setStretchLastSection(false);
    m_outline->header()->setSectionResizeMode(NodeModel::Name, QHeaderView::Stretch);
    // What is beside the names takes no more than it needs: the map may stand there too.
    const auto padding = 2 * (m_outline->style()->pixelMetric(QStyle::PM_HeaderMargin) + 6);
    m_outline->header()->resizeSection(
        NodeModel::Size, m_outline->fontMetrics().horizontalAdvance(QStringLiteral("8,888.88 MB")) + padding);
    m_outline->header()->resizeSection(NodeModel::Count,
                                       m_outline->header()->sectionSizeHint(NodeModel::Count) + padding);
    m_outline->header()->setSectionsClickable(true);
    m_outline->header()->setSortIndicatorShown(true);
    m_outline->header()->setSortIndicator(NodeModel::Size, Qt::DescendingOrder);
    m_outline->header()->setSortIndicatorClearable(false);
    m_filtered.setRecursiveFilteringEnabled(true);
    m_filtered.setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_filtered.setAutoAcceptChildRows(true);

    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    m_hint->setMargin(40);
    m_hint->setTextFormat(Qt::PlainText);
    m_contents->addWidget(m_hint);
    auto* listAndMap = new ListAndMap(m_outline, m_map);
    top->addWidget(listAndMap->makeButton());
    m_contents->addWidget(listAndMap);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addLayout(m_contents, 1);

    showColumns();
    if (module.shouldRespondToDragEvents()) {
        auto* add = new QPushButton(localized("Add…"));
        add->setToolTip(localized("Choose files and folders of the Mac (Ctrl+O)"));
        connect(add, &QPushButton::clicked, this, [this] { addFiles(); });
        top->addWidget(add);
        m_dropTarget = std::make_unique<ADDropImageView>(module, m_services.log);
        m_dropTarget->setNeedsDisplay([this] {
            m_hint->setStyleSheet(m_dropTarget->showsFullImage()
                                      ? QStringLiteral("border: 2px dashed palette(highlight); border-radius: 12px;")
                                      : QStringLiteral("border: 2px dashed palette(mid); border-radius: 12px;"));
        });
        m_dropTarget->draggingEnded();
        setAcceptDrops(true);
    }
    m_model.setSelection([this] { return selection(); });
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString& text) { filter(text); });
    connect(m_outline->header(), &QHeaderView::sortIndicatorChanged, this,
            [this](int column, Qt::SortOrder order) { m_model.sort(column, order); });
    connect(m_outline, &QWidget::customContextMenuRequested, this, [this](const QPoint& place) { showMenu(place); });
    connect(&m_model, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex& parent, int first, int last) { expandNew(parent, first, last); });
    connect(&m_model, &QAbstractItemModel::rowsRemoved, this, [this] { showContents(); });
    connect(m_outline->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { showCurrent(); });
    expandNew({}, 0, m_model.rowCount() - 1);
}

ResultPage::~ResultPage() = default;

void ResultPage::setPurpose(const QString& sentence) {
    auto* purpose = new QLabel(sentence);
    purpose->setWordWrap(true);
    purpose->setTextFormat(Qt::PlainText);
    static_cast<QVBoxLayout*>(layout())->insertWidget(1, purpose);
}

void ResultPage::addBelow(QWidget* row) { layout()->addWidget(row); }

void ResultPage::showReasons() {
    m_showsReasons = true;
    m_hint->setMargin(8);                         // there is less room beside a list
    m_outline->setTextElideMode(Qt::ElideMiddle); // paths, which differ at their ends
    m_outline->header()->resizeSection(NodeModel::Why, 260);
    showColumns();
}

void ResultPage::showColumns() {
    m_outline->setColumnHidden(NodeModel::Count, m_showsReasons);
    m_outline->setColumnHidden(NodeModel::Why, !m_showsReasons);
}

void ResultPage::addFiles() {
    const auto isFree = [this] {
        if (!module().validateDrop())
            m_services.say(localized("Something is running. Add files when that has ended."));
        return module().validateDrop();
    };
    if (!takesFiles() || !isFree())
        return;
    const auto paths = m_services.chooseFiles(QString::fromStdString(module().scanObject()->name()));
    if (!paths.empty() && isFree())
        module().receiveDragData(paths);
}

void ResultPage::showContents() { m_contents->setCurrentIndex(m_model.rowCount() > 0 ? 1 : 0); }

void ResultPage::expandNew(const QModelIndex& parent, int first, int last) {
    showContents();
    if (m_outline->model() != &m_model || last - first >= kManyRows)
        return;
    // Groups at the top show what is in them, as it comes in; further down only what asks for it does.
    if (parent.isValid() && !parent.parent().isValid() && first == 0)
        m_outline->expand(parent);
    for (int row = first; row <= last; ++row) {
        const auto index = m_model.index(row, 0, parent);
        const int children = parent.isValid() && !m_model.hasChildren(index) ? 0 : m_model.rowCount(index);
        if (children == 0 || children >= kManyRows)
            continue;
        m_outline->expand(index);
        expandNew(index, 0, children - 1);
    }
}

void ResultPage::filter(const QString& text) {
    m_map->setFilter(text);
    // Unfiltered, the view works on the model itself: a filter costs a look at every item.
    QAbstractItemModel* wanted = &m_model;
    if (!text.isEmpty()) {
        if (!m_filtered.sourceModel())
            m_filtered.setSourceModel(&m_model);
        m_filtered.setFilterFixedString(text);
        wanted = &m_filtered;
    }
    if (m_outline->model() != wanted) {
        m_outline->setModel(wanted);
        m_anchor.watchModel();
        showColumns();
        connect(m_outline->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { showCurrent(); });
    }
    if (text.isEmpty()) {
        m_filtered.setSourceModel(nullptr);
        expandNew({}, 0, m_model.rowCount() - 1);
    } else {
        m_outline->expandAll();
    }
}

Node::Pointer ResultPage::nodeAt(const QModelIndex& index) const {
    if (!index.isValid())
        return nullptr;
    return m_model.nodeAt(index.model() == &m_filtered ? m_filtered.mapToSource(index) : index);
}

std::vector<Node::Pointer> ResultPage::selection() const {
    std::vector<Node::Pointer> nodes;
    for (const auto& index : m_outline->selectionModel()->selectedRows())
        nodes.push_back(nodeAt(index));
    return nodes;
}

void ResultPage::showCurrent() {
    m_services.showInformation(module(), nodeAt(m_outline->currentIndex()));
    m_map->showCurrent();
}

void ResultPage::showMenu(const QPoint& place) {
    const auto nodes = selection();
    if (nodes.empty())
        return;
    std::string path;
    bool isRemembered = false;
    {
        const std::lock_guard lock(m_services.treeLock);
        path = nodes.front()->path();
        isRemembered = nodes.front()->storeState() && nodes.front()->ifEnabled();
    }
    QMenu menu(this);
    const QString host = path.empty() ? QString() : m_services.hostPath(path);
    menu.addAction(localized("Show in File Manager"),
                   [host] { QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(host).absolutePath())); })
        ->setEnabled(!host.isEmpty());
    menu.addAction(localized("Copy Path"), [path] { QApplication::clipboard()->setText(shown(path)); })
        ->setEnabled(!path.empty());
    menu.addSeparator();
    menu.addAction(localized("Check or Uncheck"), [this, nodes] {
        module().checkSelectedItems(nodes);
        m_model.update();
    });
    menu.addAction(localized("Add to Ignore List"),
                   [this, nodes] {
                       module().checkSelectedItems(nodes); // what is unchecked is remembered
                       m_model.update();
                   })
        ->setEnabled(isRemembered);
    menu.addAction(localized("Remove from List"), [this, nodes] {
        module().removeSelectedItems(nodes);
        m_model.update();
    });
    menu.exec(m_outline->viewport()->mapToGlobal(place));
}

Drag ResultPage::dragOf(const QDropEvent& event, bool isDropped) const {
    Drag drag;
    drag.allowsGenericOperation = event.possibleActions() != Qt::LinkAction;
    std::vector<std::string> paths;
    for (const auto& url : event.mimeData()->urls()) {
        if (!url.isLocalFile())
            continue;
        drag.offersFileNames = true;
        if (const auto path = isDropped ? m_services.targetPath(url.toLocalFile()) : std::nullopt)
            paths.push_back(*path);
    }
    if (!paths.empty())
        drag.fileNames = std::move(paths);
    return drag;
}

void ResultPage::dragEnterEvent(QDragEnterEvent* event) {
    if (!m_dropTarget)
        return;
    const auto drag = dragOf(*event, false);
    if (!drag.offersFileNames)
        m_services.say(localized("Only files and folders can be dropped here."));
    else if (!module().validateDrop())
        m_services.say(localized("Something is running. Drop it again when that has ended."));
    else if (m_dropTarget->draggingEntered(drag))
        event->acceptProposedAction();
}

void ResultPage::dragLeaveEvent(QDragLeaveEvent*) {
    if (m_dropTarget)
        m_dropTarget->draggingExited();
}

void ResultPage::dropEvent(QDropEvent* event) {
    if (m_dropTarget && module().validateDrop() && m_dropTarget->performDragOperation(dragOf(*event, true)))
        event->acceptProposedAction();
    if (m_dropTarget)
        m_dropTarget->draggingEnded();
}

} // namespace sweeply
