#include "engine/tree/Node.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <random>

namespace sweeply {
namespace {

/// The rules of Node written down one by one, with nothing remembered: every question walks the children. What Node
/// remembers must give the same answers.
struct NaiveNode {
    using Pointer = std::shared_ptr<NaiveNode>;
    using List = std::vector<Pointer>;

    List visible;
    List invisible;
    std::string name;
    std::string path;
    std::uint32_t storedCount = 0;
    std::uint64_t size = 0;
    bool enabled = false;
    NaiveNode* parent = nullptr;

    NaiveNode* parentNode() const { return parent; }
    void setPath(const std::string& to) { path = to; }
    void setSize(std::uint64_t to) { size = to; }
    void setEnabledWithoutRecalc(bool flag) { enabled = flag; }
    bool isLeaf() const { return visible.empty() && invisible.empty(); }
    List all() const {
        List both = visible;
        both.insert(both.end(), invisible.begin(), invisible.end());
        return both;
    }
    bool isEqual(const NaiveNode& other) const { return this == &other || (!path.empty() && path == other.path); }

    std::uint64_t childrenSize() const {
        if (isLeaf())
            return size;
        std::uint64_t sum = 0;
        for (const auto& child : all())
            sum += child->size;
        return sum;
    }
    std::uint32_t count() const { return isLeaf() ? storedCount : static_cast<std::uint32_t>(all().size()); }
    std::uint32_t numberOfEnabledObjects() const {
        if (isLeaf())
            return enabled ? 1 : 0;
        const auto children = all();
        return static_cast<std::uint32_t>(std::ranges::count(children, true, &NaiveNode::enabled));
    }
    int stateFromChildrenStates() const {
        if (numberOfEnabledObjects() == visible.size())
            return 1;
        return numberOfEnabledObjects() > 0 ? -1 : 0;
    }
    int state() const { return visible.empty() ? (enabled ? 1 : 0) : stateFromChildrenStates(); }
    bool ifAnyEnabled() const {
        const auto children = all();
        return isLeaf() ? enabled : std::ranges::any_of(children, [](const auto& c) { return c->ifAnyEnabled(); });
    }
    /// What an absent parent answers is 0.
    int parentState() const { return parent ? parent->stateFromChildrenStates() : 0; }

    void recalcSize() {
        if (!isLeaf()) {
            const bool anyEnabled = ifAnyEnabled();
            std::uint64_t sum = 0;
            for (const auto& child : all())
                sum += !anyEnabled || child->ifAnyEnabled() ? child->size : 0;
            size = sum;
        }
        if (parent)
            parent->recalcSize();
    }
    void changeSize(std::uint64_t delta, int direction) {
        if (delta == 0)
            return;
        const auto sum = static_cast<std::int64_t>(size + delta * static_cast<std::uint64_t>(direction));
        size = sum < 0 ? 0 : static_cast<std::uint64_t>(sum);
        if (parent)
            parent->changeSize(delta, direction);
    }
    void zeroParentSizes() {
        if (!parent)
            return;
        parent->size = 0;
        parent->zeroParentSizes();
    }

    void setEnabled(bool flag) { setEnabled(flag, flag ? 1 : -1); }
    void setEnabled(bool flag, int direction) {
        if (!parent) {
            enabled = flag;
            return;
        }
        if (parent->stateFromChildrenStates() == 0)
            parent->changeSize(parent->size, -1);
        enabled = flag;
        std::uint64_t delta = childrenSize();
        if (!visible.empty()) {
            size = delta;
            if (parent->stateFromChildrenStates() != -1) {
                delta = 0;
                parent->size = parent->childrenSize();
            }
        }
        parent->changeSize(delta, direction);
    }
    void becomeEnabled(bool flag) {
        if (!invisible.empty())
            setEveryChildEnabled(flag);
        if (visible.empty()) {
            if (enabled == flag)
                return;
            if (parentState() == 0) {
                zeroParentSizes();
                setEnabled(flag);
                return;
            }
            setEnabled(flag);
            if (parentState() == 0)
                parent->changeSize(parent->childrenSize(), 1);
        } else {
            setEveryChildEnabled(flag);
        }
    }
    void setEveryChildEnabled(bool flag) {
        setEnabled(flag);
        for (const auto& child : all())
            child->silentSetEveryChildEnabled(flag);
    }
    void silentSetEveryChildEnabled(bool flag) {
        enabled = flag;
        for (const auto& child : all())
            child->silentSetEveryChildEnabled(flag);
    }

    void add(List NaiveNode::*list, const Pointer& child) {
        if (child->parent)
            return;
        child->parent = this;
        (this->*list).push_back(child);
        changeSize(child->size, 1);
    }
    void addChild(const Pointer& child) { add(&NaiveNode::visible, child); }
    void addInvisibleChild(const Pointer& child) { add(&NaiveNode::invisible, child); }
    void addUniqueChild(const Pointer& child) {
        for (const auto& present : visible) {
            if (!present->path.empty() && (child->path + "/").find(present->path + "/") != std::string::npos)
                return;
        }
        add(&NaiveNode::visible, child);
    }
    void addUniqueChildWithParentSearch(const Pointer& child) {
        if (!path.empty() && child->path.find(path) != std::string::npos)
            return;
        for (const auto& present : visible) {
            if (!present->path.empty() && child->path.find(present->path) != std::string::npos)
                return;
        }
        add(&NaiveNode::visible, child);
    }
    void take(List NaiveNode::*list, const auto& isTaken) {
        for (const auto& child : std::exchange(this->*list, {})) {
            if (isTaken(*child))
                child->parent = nullptr;
            else
                (this->*list).push_back(child);
        }
        recalcSize();
    }
    void takeAt(List NaiveNode::*list, std::size_t index) {
        if (index >= (this->*list).size())
            return;
        if ((this->*list).size() == 1 && (list == &NaiveNode::visible || visible.empty()))
            size = 0;
        const auto* const taken = (this->*list)[index].get();
        take(list, [&](const NaiveNode& child) { return &child == taken; });
    }
    void removeChild(const NaiveNode& child) {
        if (child.parent && child.parent->visible.size() == 1)
            child.parent->size = 0;
        take(&NaiveNode::visible, [&](const NaiveNode& present) { return present.isEqual(child); });
    }
    void removeChildAtIndex(std::size_t index) { takeAt(&NaiveNode::visible, index); }
    void removeInvisibleChild(const NaiveNode& child) {
        if (invisible.size() == 1 && visible.empty())
            size = 0;
        take(&NaiveNode::invisible, [&](const NaiveNode& present) { return present.isEqual(child); });
    }
    void removeInvisibleChildAtIndex(std::size_t index) { takeAt(&NaiveNode::invisible, index); }
    void killChildren() {
        take(&NaiveNode::visible, [](const NaiveNode&) { return true; });
        size = 0;
    }
    void killInvisibleChildren() {
        take(&NaiveNode::invisible, [](const NaiveNode&) { return true; });
        size = visible.empty() ? 0 : size;
    }
    void sort(const auto& less) {
        std::ranges::stable_sort(visible, less);
        for (const auto& child : visible)
            child->sort(less);
    }
};

/// The same tree twice, as Node and as the naive model, and the same random operations on both.
class Twins {
  public:
    explicit Twins(unsigned seed) : m_random(seed) { m_pairs.push_back(makePair(false)); }

    /// Does one operation and returns what it was.
    std::string step() {
        const auto [node, naive] = anyPair();
        const auto [other, naiveOther] = anyPair();
        const bool flag = upTo(1) == 1;
        const std::uint64_t size = anySize();
        const std::string path = anyPath();
        const std::size_t index = upTo(naive->visible.size() + 1);
        const std::size_t hidden = upTo(naive->invisible.size() + 1);
        const auto both = [&](const auto& operation) {
            operation(*node, *other); // mostly not its child
            operation(*naive, *naiveOther);
        };
        const auto add = [&](const auto& operation) {
            const auto [added, naiveAdded] = makeGroup();
            operation(*node, added);
            operation(*naive, naiveAdded);
        };
        const std::pair<const char*, std::function<void()>> steps[]{
            {"becomeEnabled", [&] { both([&](auto& n, auto&) { n.becomeEnabled(flag); }); }},
            {"setEnabled", [&] { both([&](auto& n, auto&) { n.setEnabled(flag); }); }},
            {"setEveryChildEnabled", [&] { both([&](auto& n, auto&) { n.setEveryChildEnabled(flag); }); }},
            {"silentSetEveryChild", [&] { both([&](auto& n, auto&) { n.silentSetEveryChildEnabled(flag); }); }},
            {"setEnabledWithoutRecalc", [&] { both([&](auto& n, auto&) { n.setEnabledWithoutRecalc(flag); }); }},
            {"setSize", [&] { both([&](auto& n, auto&) { n.setSize(size); }); }},
            {"setPath", [&] { both([&](auto& n, auto&) { n.setPath(path); }); }},
            {"recalcSize", [&] { both([&](auto& n, auto&) { n.recalcSize(); }); }},
            {"changeSize", [&] { both([&](auto& n, auto&) { n.changeSize(size, flag ? 1 : -1); }); }},
            {"zeroParentSizes", [&] { both([&](auto& n, auto&) { n.zeroParentSizes(); }); }},
            {"removeChild",
             [&] { both([&](auto& n, auto&) { n.parentNode() ? n.parentNode()->removeChild(n) : void(); }); }},
            {"removeChild of another", [&] { both([&](auto& n, auto& o) { n.removeChild(o); }); }},
            {"removeChildAtIndex", [&] { both([&](auto& n, auto&) { n.removeChildAtIndex(index); }); }},
            {"removeInvisibleChild",
             [&] { both([&](auto& n, auto&) { n.parentNode() ? n.parentNode()->removeInvisibleChild(n) : void(); }); }},
            {"removeInvisibleAtIndex", [&] { both([&](auto& n, auto&) { n.removeInvisibleChildAtIndex(hidden); }); }},
            {"killChildren", [&] { upTo(20) == 0 ? both([&](auto& n, auto&) { n.killChildren(); }) : void(); }},
            {"killInvisible",
             [&] { upTo(5) == 0 ? both([&](auto& n, auto&) { n.killInvisibleChildren(); }) : void(); }},
            {"sort", [&] { sort(*node, *naive); }},
            {"addInvisibleChild", [&] { add([&](auto& n, auto& child) { n.addInvisibleChild(child); }); }},
            {"addUniqueChild", [&] { add([&](auto& n, auto& child) { n.addUniqueChild(child); }); }},
            {"addUniqueWithParent",
             [&] { add([&](auto& n, auto& child) { n.addUniqueChildWithParentSearch(child); }); }},
            {"addChild", [&] { add([&](auto& n, auto& child) { n.addChild(child); }); }},
        };
        constexpr std::size_t kMostlyAdding = 24;
        const auto& [name, step] =
            steps[std::min(upTo(m_pairs.size() < m_limit ? kMostlyAdding : 18), std::size(steps) - 1)];
        step();
        return name;
    }

    /// Everything in both trees is the same.
    void compare() {
        m_pairs.resize(1);
        const Pair root = m_pairs.front();
        compare(root.first, root.second);
    }

  private:
    using Pair = std::pair<Node::Pointer, NaiveNode::Pointer>;

    std::size_t upTo(std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(m_random); }
    std::uint64_t anySize() {
        static constexpr std::uint64_t kOdd[] = {0, 0, 1, 4096, 1ULL << 40U, (1ULL << 62U) + 7};
        return upTo(3) == 0 ? kOdd[upTo(std::size(kOdd) - 1)] : upTo(100) * 1000;
    }
    std::string anyPath() {
        std::string path;
        for (std::size_t depth = upTo(3); depth > 0; --depth)
            path += "/" + std::to_string(upTo(6));
        return path;
    }
    /// Any node, the root more often, so that it gets many children.
    Pair anyPair() { return upTo(2) == 0 ? m_pairs.front() : m_pairs[upTo(m_pairs.size() - 1)]; }

    Pair makePair(bool isEnabled) {
        auto naive = std::make_shared<NaiveNode>();
        naive->name = "n" + std::to_string(upTo(9));
        naive->path = anyPath();
        naive->storedCount = static_cast<std::uint32_t>(upTo(9));
        naive->size = anySize();
        naive->enabled = isEnabled;
        return {Node::nodeWithName(naive->name, Icon::None, naive->storedCount, naive->size, naive->path, isEnabled),
                naive};
    }

    /// Now and then with something below.
    Pair makeGroup() {
        const Pair pair = makePair(upTo(1) == 1);
        for (std::size_t more = upTo(2) == 0 ? upTo(3) : 0; more > 0; --more) {
            const auto [below, naiveBelow] = makePair(upTo(1) == 1);
            const bool isShown = upTo(2) > 0;
            isShown ? pair.first->addChild(below) : pair.first->addInvisibleChild(below);
            isShown ? pair.second->addChild(naiveBelow) : pair.second->addInvisibleChild(naiveBelow);
        }
        return pair;
    }

    void sort(Node& node, NaiveNode& naive) {
        const bool ascending = upTo(1) == 1;
        const auto sorted = [&](const char* key, const auto& value, bool upwards) {
            node.sortArrayUsingDescriptors({{key, ascending}, {"Name", true}});
            naive.sort(
                [&](const auto& a, const auto& b) { return upwards ? value(*a) < value(*b) : value(*b) < value(*a); });
        };
        const std::size_t key = upTo(2);
        if (key == 0)
            sorted(
                "Name", [](const NaiveNode& one) { return one.name; }, !ascending);
        else if (key == 1)
            sorted(
                "Size", [](const NaiveNode& one) { return one.size; }, ascending);
        else
            sorted(
                "Number", [](const NaiveNode& one) { return one.count(); }, ascending);
    }

    void compare(const Node::Pointer& node, const NaiveNode::Pointer& naive) {
        ASSERT_EQ(node->childrenCount(), naive->visible.size());
        ASSERT_EQ(node->invisibleChildrenCount(), naive->invisible.size());
        EXPECT_EQ(std::tuple(node->name(), node->path(), node->longSize(), node->count(), node->ifEnabled(),
                             node->childrenSize(), node->numberOfEnabledObjects(), static_cast<int>(node->state()),
                             static_cast<int>(node->stateFromChildrenStates()), node->ifAnyEnabled()),
                  std::tuple(naive->name, naive->path, naive->size, naive->count(), naive->enabled,
                             naive->childrenSize(), naive->numberOfEnabledObjects(), naive->state(),
                             naive->stateFromChildrenStates(), naive->ifAnyEnabled()));
        for (std::size_t i = 0; i < naive->visible.size(); ++i)
            compareChild(*node, node->childAtIndex(i), naive->visible[i]);
        for (std::size_t i = 0; i < naive->invisible.size(); ++i)
            compareChild(*node, node->invisibleChildAtIndex(i), naive->invisible[i]);
    }
    void compareChild(const Node& parent, const Node::Pointer& child, const NaiveNode::Pointer& naive) {
        ASSERT_EQ(child->parentNode(), &parent);
        m_pairs.emplace_back(child, naive);
        compare(child, naive);
    }

    std::mt19937 m_random;
    const std::size_t m_limit = 90;
    std::vector<Pair> m_pairs; ///< every node of the tree, the root first
};

class NodeModelTest : public testing::TestWithParam<unsigned> {};

TEST_P(NodeModelTest, AnySequenceOfOperationsGivesWhatTheRulesSay) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    Twins twins(GetParam());
    std::string last;
    for (int step = 0; step < 3000; ++step) {
        last = twins.step();
        twins.compare();
        ASSERT_FALSE(HasFailure()) << "step " << step << ": " << last;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, NodeModelTest, testing::Range(1U, 9U));

/// A long list of siblings, some with equal paths and some without any, taken out in random order: by then the list
/// looks paths up and leaves gaps.
TEST(ChildListTest, ManySiblingsTakenOutInAnyOrderLeaveTheOthersInOrder) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        Node root;
        NaiveNode naive;
        std::vector<std::pair<Node::Pointer, NaiveNode::Pointer>> children;
        for (unsigned i = 0; i < 500; ++i) {
            const std::string path = i % 7 == 0 ? "" : "/" + std::to_string(random() % 300);
            auto twin = std::make_shared<NaiveNode>();
            twin->path = path;
            twin->size = i;
            twin->enabled = i % 3 == 0;
            children.emplace_back(Node::nodeWithName("n", Icon::None, 0, i, path, i % 3 == 0), twin);
            root.addChild(children.back().first);
            naive.addChild(twin);
        }
        std::ranges::shuffle(children, random);
        for (std::size_t i = 0; i < children.size(); ++i) {
            const auto& [child, twin] = children[i];
            if (i % 50 == 25 && !naive.visible.empty()) {
                const auto path = "/" + std::to_string(300 + i);
                root.childAtIndex(0)->setPath(path);
                naive.visible.front()->path = path;
            }
            root.removeChild(*child);
            naive.removeChild(*twin);
            ASSERT_EQ(child->parentNode(), nullptr);
            ASSERT_EQ(root.childrenCount(), naive.visible.size());
            ASSERT_EQ(root.longSize(), naive.size);
            if (i % 20 == 0) {
                for (std::size_t at = 0; at < naive.visible.size(); ++at)
                    ASSERT_EQ(root.childAtIndex(at)->longSize(), naive.visible[at]->size);
            }
        }
        EXPECT_EQ(root.longSize(), 0U);
    }
}

} // namespace
} // namespace sweeply
