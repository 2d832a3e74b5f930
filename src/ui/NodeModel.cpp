#include "ui/NodeModel.h"

#include "appcore/sizes/SizeDisplay.h"
#include "engine/tree/EvidenceText.h"
#include "ui/Pictures.h"
#include "ui/Text.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <mutex>

namespace sweeply {

namespace {

constexpr int kUpdateInterval = 100; // milliseconds
/// From more places than this rows go faster once they stand together.
constexpr std::size_t kManyRuns = 20;

std::vector<const Node*> addressesOf(const std::vector<Node::Pointer>& nodes) {
    std::vector<const Node*> addresses;
    addresses.reserve(nodes.size());
    for (const auto& node : nodes)
        addresses.push_back(node.get());
    return addresses;
}

} // namespace

NodeModel::NodeModel(ADScanControllerView& module, TreeLock& treeLock, SizeUnits units, Pictures& pictures)
    : m_module(module), m_treeLock(treeLock), m_units(units), m_pictures(pictures) {
    m_root.node = module.rootNode();
    fill(m_root);
    m_updating.setSingleShot(true);
    m_updating.setInterval(kUpdateInterval);
    connect(&m_updating, &QTimer::timeout, this, [this] { update(); });
    module.setContentOutline(this);
}

NodeModel::~NodeModel() { m_module.setContentOutline(nullptr); }

std::pair<std::vector<Node::Pointer>, SortKeys> NodeModel::lookAt(Branch& branch) const {
    const std::lock_guard lock(m_treeLock);
    const auto& children = branch.node->children();
    branch.groups.clear();
    for (const auto& child : children) {
        if (child->hasChildren())
            branch.groups.insert(child.get());
    }
    return {children, SortKeys(children, m_order)};
}

void NodeModel::fill(Branch& branch) const {
    auto [children, keys] = lookAt(branch);
    branch.inTree = addressesOf(children);
    keys.sort(children);
    branch.children = std::move(children);
}

NodeModel::Branch& NodeModel::branchOf(const QModelIndex& index) const {
    if (!index.isValid())
        return m_root;
    auto& parent = *static_cast<Branch*>(index.internalPointer());
    const auto& node = parent.children[static_cast<std::size_t>(index.row())];
    auto& branch = parent.open[node.get()];
    if (!branch) {
        branch = std::make_unique<Branch>();
        branch->node = node;
        branch->parent = &parent;
        branch->row = index.row();
        fill(*branch);
    }
    return *branch;
}

QModelIndex NodeModel::indexOf(const Branch& branch) const {
    return branch.parent ? createIndex(branch.row, 0, branch.parent) : QModelIndex();
}

Node::Pointer NodeModel::nodeAt(const QModelIndex& index) const {
    if (!index.isValid())
        return m_root.node;
    return static_cast<const Branch*>(index.internalPointer())->children[static_cast<std::size_t>(index.row())];
}

QModelIndex NodeModel::indexOf(const Node& node) const {
    std::vector<const Node*> way;
    {
        const std::lock_guard lock(m_treeLock);
        for (const Node* step = &node; step && step != m_root.node.get(); step = step->parentNode())
            way.push_back(step);
    }
    QModelIndex place;
    for (auto step = way.rbegin(); step != way.rend(); ++step) {
        auto& branch = branchOf(place);
        const auto found = std::ranges::find(branch.children, *step, &Node::Pointer::get);
        if (found == branch.children.end())
            return {};
        place = createIndex(static_cast<int>(found - branch.children.begin()), Name, &branch);
    }
    return place;
}

// Changes

void NodeModel::reloadData() {
    if (!m_updating.isActive())
        m_updating.start();
}

std::vector<Node::Pointer> NodeModel::selectedItems() const {
    return m_selection ? m_selection() : std::vector<Node::Pointer>();
}

void NodeModel::update() {
    const bool isRunning = m_module.ifScanRunning() || m_module.ifCleanRunning();
    update(m_root, isRunning || !m_isArranged);
    m_isArranged = !isRunning;
    if (isRunning)
        reloadData(); // once more when it has ended
}

void NodeModel::renumber(Branch& branch) {
    if (branch.open.empty())
        return;
    int row = 0;
    for (const auto& child : branch.children) {
        if (const auto found = branch.open.find(child.get()); found != branch.open.end())
            found->second->row = row;
        ++row;
    }
}

void NodeModel::takeOver(Branch& branch, const std::vector<Node::Pointer>& now) {
    // Mostly some are gone and others were appended, so what is not in step with the old list is little to compare.
    std::unordered_set<const Node*> gone;
    auto next = now.begin();
    for (const Node* node : branch.inTree) {
        if (next != now.end() && next->get() == node)
            ++next;
        else
            gone.insert(node);
    }
    std::vector<Node::Pointer> added;
    std::copy_if(next, now.end(), std::back_inserter(added),
                 [&gone](const auto& node) { return gone.erase(node.get()) == 0; });
    branch.inTree = addressesOf(now);
    removeRows(branch, gone);
    appendRows(branch, std::move(added));
}

void NodeModel::removeRows(Branch& branch, const std::unordered_set<const Node*>& gone) {
    if (gone.empty())
        return;
    const auto isGone = [&gone](const Node::Pointer& node) { return gone.contains(node.get()); };
    // Runs of rows that are gone, the last one first, so that the earlier ones keep their numbers.
    std::vector<std::pair<int, int>> runs;
    for (int row = static_cast<int>(branch.children.size()) - 1; row >= 0; --row) {
        if (!isGone(branch.children[static_cast<std::size_t>(row)]))
            continue;
        if (!runs.empty() && runs.back().first == row + 1)
            runs.back().first = row;
        else
            runs.emplace_back(row, row);
    }
    if (runs.size() > kManyRuns) {
        auto rows = branch.children;
        const auto tail = std::ranges::stable_partition(rows, std::not_fn(isGone));
        runs = {{static_cast<int>(tail.begin() - rows.begin()), static_cast<int>(rows.size()) - 1}};
        arrange(branch, std::move(rows));
    }
    for (const auto& [first, last] : runs) {
        beginRemoveRows(indexOf(branch), first, last);
        const auto from = branch.children.begin() + first;
        const auto to = branch.children.begin() + last + 1;
        for (auto child = from; child != to; ++child)
            branch.open.erase(child->get());
        branch.children.erase(from, to);
        renumber(branch);
        endRemoveRows();
    }
}

void NodeModel::appendRows(Branch& branch, std::vector<Node::Pointer> added) {
    if (added.empty())
        return;
    const int first = static_cast<int>(branch.children.size());
    beginInsertRows(indexOf(branch), first, first + static_cast<int>(added.size()) - 1);
    std::ranges::move(added, std::back_inserter(branch.children));
    endInsertRows();
}

void NodeModel::arrange(Branch& branch, std::vector<Node::Pointer> rows) {
    if (rows == branch.children)
        return;
    const QList<QPersistentModelIndex> parents{indexOf(branch)};
    emit layoutAboutToBeChanged(parents, VerticalSortHint);
    // Few rows are held on to by somebody.
    QModelIndexList before;
    std::vector<const Node*> held;
    std::unordered_map<const Node*, int> rowOf;
    for (const auto& index : persistentIndexList()) {
        if (index.internalPointer() != &branch)
            continue;
        before.push_back(index);
        held.push_back(nodeAt(index).get());
        rowOf[held.back()] = 0;
    }
    branch.children = std::move(rows);
    int row = 0;
    for (const auto& node : branch.children) {
        if (const auto found = rowOf.find(node.get()); found != rowOf.end())
            found->second = row;
        ++row;
    }
    renumber(branch);
    QModelIndexList after;
    for (std::size_t i = 0; i < held.size(); ++i)
        after.push_back(createIndex(rowOf[held[i]], before[static_cast<qsizetype>(i)].column(), &branch));
    changePersistentIndexList(before, after);
    emit layoutChanged(parents, VerticalSortHint);
}

void NodeModel::update(Branch& branch, bool rearranges) {
    auto [now, keys] = lookAt(branch);
    const bool isChanged = !std::ranges::equal(now, branch.inTree, {}, &Node::Pointer::get);
    if (isChanged)
        takeOver(branch, now);
    if (isChanged || rearranges) {
        keys.sort(now);
        arrange(branch, std::move(now));
    }
    if (!branch.children.empty()) {
        const auto parent = indexOf(branch);
        emit dataChanged(index(0, 0, parent),
                         index(static_cast<int>(branch.children.size()) - 1, ColumnCount - 1, parent));
    }
    std::vector<Branch*> open;
    for (const auto& [node, child] : branch.open)
        open.push_back(child.get());
    for (auto* child : open)
        update(*child, rearranges);
}

QString NodeModel::reasonFor(const Node& node) {
    const auto* evidence = node.evidence();
    if (!evidence)
        return {};
    const auto against = node.ifEnabled() ? claimsBeside(*evidence) : reasonAgainstChecking(*evidence);
    return shown(wordFor(evidence->strength) + ": " + sentenceFor(*evidence) + (against.empty() ? "" : " " + against));
}

// Qt's questions

QModelIndex NodeModel::index(int row, int column, const QModelIndex& parent) const {
    if (column < 0 || column >= ColumnCount || row < 0 || parent.column() > 0)
        return {};
    auto& branch = branchOf(parent);
    return static_cast<std::size_t>(row) < branch.children.size() ? createIndex(row, column, &branch) : QModelIndex();
}

QModelIndex NodeModel::parent(const QModelIndex& index) const {
    return index.isValid() ? indexOf(*static_cast<const Branch*>(index.internalPointer())) : QModelIndex();
}

int NodeModel::rowCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : static_cast<int>(branchOf(parent).children.size());
}

int NodeModel::columnCount(const QModelIndex&) const { return ColumnCount; }

bool NodeModel::hasChildren(const QModelIndex& parent) const {
    if (!parent.isValid())
        return !m_root.children.empty();
    if (parent.column() > 0)
        return false;
    const auto& above = *static_cast<const Branch*>(parent.internalPointer());
    const Node* node = above.children[static_cast<std::size_t>(parent.row())].get();
    if (above.open.empty() && above.groups.empty())
        return false;
    const auto known = above.open.find(node);
    return known != above.open.end() ? !known->second->children.empty() : above.groups.contains(node);
}

Qt::CheckState NodeModel::markOf(const Node& node) {
    if (!node.hasChildren())
        return node.ifEnabled() ? Qt::Checked : Qt::Unchecked;
    switch (node.state()) {
    case CheckState::Checked:
        return Qt::Checked;
    case CheckState::Mixed:
        return Qt::PartiallyChecked;
    case CheckState::Unchecked:
        break;
    }
    return Qt::Unchecked;
}

QVariant NodeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const auto node = nodeAt(index);
    if (role == Qt::TextAlignmentRole && index.column() != Name && index.column() != Why)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    std::string path;
    Icon icon = Icon::None;
    {
        const std::lock_guard lock(m_treeLock);
        if (role == Qt::DisplayRole && index.column() == Name)
            return shown(node->name());
        if (role == Qt::DisplayRole && index.column() == Size)
            return QString::fromStdString(stringSizeFromLong(node->longSize(), m_units));
        if (index.column() == Why && (role == Qt::DisplayRole || role == Qt::ToolTipRole))
            return reasonFor(*node);
        if (role == Qt::DisplayRole)
            return QString::fromStdString(node->stringCount());
        if (role == Qt::CheckStateRole && index.column() == Name)
            return markOf(*node);
        path = node->path();
        icon = node->icon();
    }
    if (role == Qt::ToolTipRole || role == PathRole || role == Qt::AccessibleDescriptionRole)
        return shown(path);
    if (role == Qt::DecorationRole && index.column() == Name)
        return m_pictures.iconFor(icon, path);
    return {};
}

QVariant NodeModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return localized("Name");
    case Size:
        return localized("Size");
    case Count:
        return localized("Items");
    default:
        return localized("Why it is listed");
    }
}

Qt::ItemFlags NodeModel::flags(const QModelIndex& index) const {
    auto flags = QAbstractItemModel::flags(index);
    return index.column() == Name ? flags | Qt::ItemIsUserCheckable : flags;
}

bool NodeModel::setData(const QModelIndex& index, const QVariant&, int role) {
    if (role != Qt::CheckStateRole || m_module.ifScanRunning() || m_module.ifCleanRunning())
        return false;
    m_module.toggleOutlineItem(*nodeAt(index));
    emit dataChanged(index, index);
    reloadData(); // for what is above and below it
    return true;
}

void NodeModel::sort(int column, Qt::SortOrder order) {
    if (column == Why)
        return; // nobody knows an order of reasons
    constexpr NodeKey kKeys[] = {NodeKey::Name, NodeKey::Size, NodeKey::Number};
    m_order = {kKeys[column], order == Qt::DescendingOrder};
    // The tree as well: what is equal keeps the order of the sorting before. The engine's arrows point the other way
    // for names.
    constexpr const char* kColumns[] = {"Name", "Size", "Number"};
    m_module.sortDescriptorsDidChange({{kColumns[column], m_order.descending == (column == Name)}});
    m_isArranged = false;
    update();
}

} // namespace sweeply
