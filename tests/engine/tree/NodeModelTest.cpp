#include "engine/tree/NaiveNode.h"
#include "engine/tree/Node.h"

#include <gtest/gtest.h>
#include <random>

namespace sweeply {
namespace {

/// The same tree twice, as Node and as the naive model, and the same random operations on both.
class Twins {
  public:
    explicit Twins(unsigned seed) : m_random(seed) { m_pairs.push_back(makePair(false)); }

    /// Does one operation and returns what it was.
    std::string step() {
        const auto [node, naive] = anyPair();
        const auto [other, naiveOther] = anyPair();
        const bool flag = upTo(1) == 1;
        const std::size_t index = upTo(naive->visible.size() + 1);
        switch (upTo(m_pairs.size() < m_limit ? 24 : 18)) {
        case 0:
            node->becomeEnabled(flag);
            naive->becomeEnabled(flag);
            return "becomeEnabled";
        case 1:
            node->setEnabled(flag);
            naive->setEnabled(flag);
            return "setEnabled";
        case 2:
            node->setEveryChildEnabled(flag);
            naive->setEveryChildEnabled(flag);
            return "setEveryChildEnabled";
        case 3:
            node->silentSetEveryChildEnabled(flag);
            naive->silentSetEveryChildEnabled(flag);
            return "silentSetEveryChildEnabled";
        case 4:
            node->setEnabledWithoutRecalc(flag);
            naive->enabled = flag;
            return "setEnabledWithoutRecalc";
        case 5: {
            const std::uint64_t size = anySize();
            node->setSize(size);
            naive->size = size;
            return "setSize";
        }
        case 6: {
            const std::string path = anyPath();
            node->setPath(path);
            naive->path = path;
            return "setPath " + path;
        }
        case 7:
            node->recalcSize();
            naive->recalcSize();
            return "recalcSize";
        case 8: {
            const std::uint64_t delta = anySize();
            node->changeSize(delta, flag ? 1 : -1);
            naive->changeSize(delta, flag ? 1 : -1);
            return "changeSize";
        }
        case 9:
            node->zeroParentSizes();
            naive->zeroParentSizes();
            return "zeroParentSizes";
        case 10:
            if (node->parentNode()) {
                const NaiveNode::Pointer kept = naive;
                NaiveNode* const parent = naive->parent;
                node->parentNode()->removeChild(*node);
                parent->removeChild(kept);
            }
            return "removeChild";
        case 11:
            node->removeChild(*other); // mostly not its child
            naive->removeChild(naiveOther);
            return "removeChild of another";
        case 12:
            node->removeChildAtIndex(index);
            naive->removeChildAtIndex(index);
            return "removeChildAtIndex";
        case 13:
            if (node->parentNode()) {
                const NaiveNode::Pointer kept = naive;
                NaiveNode* const parent = naive->parent;
                node->parentNode()->removeInvisibleChild(*node);
                parent->removeInvisibleChild(kept);
            }
            return "removeInvisibleChild";
        case 14: {
            const std::size_t hidden = upTo(naive->invisible.size() + 1);
            node->removeInvisibleChildAtIndex(hidden);
            naive->removeInvisibleChildAtIndex(hidden);
            return "removeInvisibleChildAtIndex";
        }
        case 15:
            if (upTo(20) == 0) {
                node->killChildren();
                naive->kill(&NaiveNode::visible);
            }
            return "killChildren";
        case 16:
            if (upTo(5) == 0) {
                node->killInvisibleChildren();
                naive->kill(&NaiveNode::invisible);
            }
            return "killInvisibleChildren";
        case 17:
            sort(*node, *naive);
            return "sort";
        case 18:
            add(*node, *naive, &Node::addInvisibleChild,
                [&](const auto& child) { naive->add(&NaiveNode::invisible, child); });
            return "addInvisibleChild";
        case 19:
            add(*node, *naive, &Node::addUniqueChild, [&](const auto& child) { naive->addUniqueChild(child); });
            return "addUniqueChild";
        case 20:
            add(*node, *naive, &Node::addUniqueChildWithParentSearch,
                [&](const auto& child) { naive->addUniqueChildWithParentSearch(child); });
            return "addUniqueChildWithParentSearch";
        default:
            add(*node, *naive, &Node::addChild, [&](const auto& child) { naive->add(&NaiveNode::visible, child); });
            return "addChild";
        }
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
        const std::string name = "n" + std::to_string(upTo(9));
        const auto count = static_cast<std::uint32_t>(upTo(9));
        const std::uint64_t size = anySize();
        const std::string path = anyPath();
        auto naive = std::make_shared<NaiveNode>();
        naive->name = name;
        naive->path = path;
        naive->storedCount = count;
        naive->size = size;
        naive->enabled = isEnabled;
        return {Node::nodeWithName(name, Icon::None, count, size, path, isEnabled), naive};
    }

    template<typename Add, typename NaiveAdd>
    void add(Node& node, NaiveNode&, Add addTo, NaiveAdd naiveAdd) {
        const Pair pair = makePair(upTo(1) == 1);
        if (upTo(2) == 0) { // a whole group at once
            for (std::size_t more = upTo(3); more > 0; --more) {
                const Pair below = makePair(upTo(1) == 1);
                const bool isShown = upTo(2) > 0;
                isShown ? pair.first->addChild(below.first) : pair.first->addInvisibleChild(below.first);
                pair.second->add(isShown ? &NaiveNode::visible : &NaiveNode::invisible, below.second);
            }
        }
        (node.*addTo)(pair.first);
        naiveAdd(pair.second);
    }

    void sort(Node& node, NaiveNode& naive) {
        const bool ascending = upTo(1) == 1;
        const auto sorted = [&](const char* key, const auto& value, bool upwards) {
            node.sortArrayUsingDescriptors({{key, ascending}, {"Name", true}});
            naive.sort(
                [&](const auto& a, const auto& b) { return upwards ? value(*a) < value(*b) : value(*b) < value(*a); });
        };
        switch (upTo(2)) {
        case 0:
            return sorted(
                "Name", [](const NaiveNode& one) { return one.name; }, !ascending);
        case 1:
            return sorted(
                "Size", [](const NaiveNode& one) { return one.size; }, ascending);
        default:
            return sorted(
                "Number", [](const NaiveNode& one) { return one.count(); }, ascending);
        }
    }

    void compare(const Node::Pointer& node, const NaiveNode::Pointer& naive) {
        ASSERT_EQ(node->childrenCount(), naive->visible.size());
        ASSERT_EQ(node->invisibleChildrenCount(), naive->invisible.size());
        EXPECT_EQ(node->name(), naive->name);
        EXPECT_EQ(node->path(), naive->path);
        EXPECT_EQ(node->longSize(), naive->size);
        EXPECT_EQ(node->count(), naive->count());
        EXPECT_EQ(node->ifEnabled(), naive->enabled);
        EXPECT_EQ(node->childrenSize(), naive->childrenSize());
        EXPECT_EQ(node->numberOfEnabledObjects(), naive->numberOfEnabledObjects());
        EXPECT_EQ(static_cast<int>(node->state()), naive->state());
        EXPECT_EQ(static_cast<int>(node->stateFromChildrenStates()), naive->stateFromChildrenStates());
        EXPECT_EQ(node->ifAnyEnabled(), naive->ifAnyEnabled());
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
            naive.add(&NaiveNode::visible, twin);
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
            naive.removeChild(twin);
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
