#include "ui/NodeModel.h"

#include "appcore/sizes/SizeDisplay.h"
#include "ui/Pictures.h"
#include "ui/Text.h"

#include <algorithm>
#include <mutex>
#include <unordered_set>

namespace sweeply {

namespace {

constexpr int kUpdateInterval = 100; // milliseconds
/// More places than this are shown faster by starting over.
constexpr std::size_t kManyRuns = 200;

} // namespace

NodeModel::NodeModel(ADScanControllerView& module, TreeLock& treeLock, SizeUnits units, Pictures& pictures)
    : m_module(module), m_treeLock(treeLock), m_units(units), m_pictures(pictures) {
    m_root.node = module.rootNode();
    m_root.children = childrenOf(*m_root.node);
    m_updating.setSingleShot(true);
    m_updating.setInterval(kUpdateInterval);
    connect(&m_updating, &QTimer::timeout, this, [this] { update(); });
    module.setContentOutline(this);
}

NodeModel::~NodeModel() { m_module.setContentOutline(nullptr); }

std::vector<Node::Pointer> NodeModel::childrenOf(const Node& node) const {
    const std::lock_guard lock(m_treeLock);
    return node.children();
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
        branch->children = childrenOf(*node);
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

// Changes

void NodeModel::reloadData() {
    if (!m_updating.isActive())
        m_updating.start();
}

std::vector<Node::Pointer> NodeModel::selectedItems() const {
    return m_selection ? m_selection() : std::vector<Node::Pointer>();
}

void NodeModel::update() { update(m_root); }

void NodeModel::restart() {
    beginResetModel();
    m_root.open.clear();
    m_root.children = childrenOf(*m_root.node);
    endResetModel();
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

bool NodeModel::removeMissing(Branch& branch, const std::vector<Node::Pointer>& now) {
    std::unordered_set<const Node*> present;
    present.reserve(now.size());
    for (const auto& node : now)
        present.insert(node.get());
    // Runs of rows that are gone, the last one first, so that the earlier ones keep their numbers.
    std::vector<std::pair<int, int>> runs;
    for (int row = static_cast<int>(branch.children.size()) - 1; row >= 0; --row) {
        if (present.contains(branch.children[static_cast<std::size_t>(row)].get()))
            continue;
        if (!runs.empty() && runs.back().first == row + 1)
            runs.back().first = row;
        else
            runs.emplace_back(row, row);
    }
    if (runs.size() > kManyRuns)
        return false;
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
    return true;
}

bool NodeModel::update(Branch& branch) {
    auto now = childrenOf(*branch.node);
    if (now != branch.children) {
        if (!removeMissing(branch, now) || branch.children.size() > now.size() ||
            !std::equal(branch.children.begin(), branch.children.end(), now.begin())) {
            restart();
            return false;
        }
        if (now.size() > branch.children.size()) {
            beginInsertRows(indexOf(branch), static_cast<int>(branch.children.size()),
                            static_cast<int>(now.size()) - 1);
            branch.children = std::move(now);
            endInsertRows();
        }
    }
    if (!branch.children.empty()) {
        const auto parent = indexOf(branch);
        emit dataChanged(index(0, 0, parent),
                         index(static_cast<int>(branch.children.size()) - 1, ColumnCount - 1, parent));
    }
    std::vector<Branch*> open;
    for (const auto& [node, child] : branch.open)
        open.push_back(child.get());
    // One that starts the whole model over takes these with it.
    return std::ranges::all_of(open, [this](Branch* child) { return update(*child); });
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
    const auto node = nodeAt(parent);
    if (const auto known = above.open.find(node.get()); known != above.open.end())
        return !known->second->children.empty();
    const std::lock_guard lock(m_treeLock);
    return node->hasChildren();
}

QVariant NodeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const auto node = nodeAt(index);
    if (role == Qt::TextAlignmentRole && index.column() != Name)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    std::string path;
    Icon icon = Icon::None;
    {
        const std::lock_guard lock(m_treeLock);
        if (role == Qt::DisplayRole && index.column() == Name)
            return shown(node->name());
        if (role == Qt::DisplayRole && index.column() == Size)
            return QString::fromStdString(stringSizeFromLong(node->longSize(), m_units));
        if (role == Qt::DisplayRole)
            return QString::fromStdString(node->stringCount());
        if (role == Qt::CheckStateRole && index.column() == Name) {
            const auto state =
                node->hasChildren() ? node->state() : (node->ifEnabled() ? CheckState::Checked : CheckState::Unchecked);
            return state == CheckState::Checked ? Qt::Checked
                   : state == CheckState::Mixed ? Qt::PartiallyChecked
                                                : Qt::Unchecked;
        }
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
    return section == Name ? localized("Name") : section == Size ? localized("Size") : localized("Items");
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
    constexpr const char* kKeys[] = {"Name", "Size", "Number"};
    // The engine's arrows point the other way for names.
    const bool ascending = (order == Qt::AscendingOrder) != (column == Name);
    m_module.sortDescriptorsDidChange({{kKeys[column], ascending}});
    update();
}

} // namespace sweeply
