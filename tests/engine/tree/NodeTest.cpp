#include "engine/tree/Node.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

Node::Pointer leaf(std::uint64_t size, bool enabled, std::string path = {}) {
    return Node::nodeWithName("leaf", Icon::None, 0, size, std::move(path), enabled);
}

Node::Pointer group(const std::vector<Node::Pointer>& children, const std::vector<Node::Pointer>& invisible = {}) {
    auto node = Node::nodeWithName("group", Icon::None, 0, 0);
    for (const auto& child : children)
        node->addChild(child);
    for (const auto& child : invisible)
        node->addInvisibleChild(child);
    return node;
}

std::string names(const Node& node) {
    std::string text;
    for (const auto& child : node.children())
        text += std::string(child->name()) + " ";
    return text;
}

TEST(NodeTest, ANewNodeWaitsAndRemembersNothing) {
    const Node node;
    EXPECT_TRUE(node.shouldWait());
    EXPECT_FALSE(node.storeState() || node.needExpand() || node.ifEnabled() || node.isRootNode());
    EXPECT_EQ(node.stringCount(), "");
    EXPECT_EQ(node.state(), CheckState::Unchecked);
}

TEST(NodeTest, InvisibleChildrenCountInTheStateOfTheirParent) {
    const auto yes = [] { return leaf(1, true); };
    const auto no = [] { return leaf(1, false); };
    struct Row {
        const char* what;
        Node::Pointer node;
        CheckState state;
    };
    const Row rows[]{
        {"all visible checked", group({yes(), yes()}), CheckState::Checked},
        {"one of two", group({yes(), no()}), CheckState::Mixed},
        {"none", group({no(), no()}), CheckState::Unchecked},
        {"all visible and an invisible one", group({yes(), yes()}, {yes()}), CheckState::Mixed},
        {"as many invisible ones as there are visible", group({no()}, {yes()}), CheckState::Checked},
        {"invisible alone are not looked at", group({}, {yes()}), CheckState::Unchecked},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.node->state(), row.state) << row.what;
}

TEST(NodeTest, GroupWithNothingCheckedShowsItsFullSize) {
    const auto a = leaf(10, true);
    const auto b = leaf(20, true);
    const auto inner = group({a, b});
    const auto root = group({inner});

    a->becomeEnabled(false);
    EXPECT_EQ(inner->longSize(), 20U);
    b->becomeEnabled(false);
    EXPECT_EQ(inner->longSize(), 30U);
    EXPECT_EQ(inner->state(), CheckState::Unchecked);
    b->becomeEnabled(true);
    EXPECT_EQ(inner->longSize(), 20U);
    b->becomeEnabled(true); // again: nothing happens
    EXPECT_EQ(inner->longSize(), 20U);
    inner->becomeEnabled(true);
    EXPECT_EQ(root->longSize(), 30U);
}

TEST(NodeTest, UncheckingAGroupWithInvisibleChildrenReachesThem) {
    const auto shown = leaf(10, true);
    const auto hidden = leaf(5, true);
    const auto node = group({shown}, {hidden});
    const auto root = group({node, leaf(1, true)});

    node->becomeEnabled(false);
    root->recalcSize();

    EXPECT_FALSE(node->ifEnabled() || shown->ifEnabled() || hidden->ifEnabled());
    EXPECT_EQ(node->longSize(), 15U);
    EXPECT_EQ(root->longSize(), 1U);
}

TEST(NodeTest, SizesStopAtZeroEachByItself) {
    const auto small = leaf(10, true);
    const auto inner = group({small});
    const auto root = group({inner, leaf(100, true)});

    small->changeSize(0, -1);
    EXPECT_EQ(root->longSize(), 110U);
    small->changeSize(50, -1);
    EXPECT_EQ(small->longSize(), 0U);
    EXPECT_EQ(inner->longSize(), 0U);
    EXPECT_EQ(root->longSize(), 60U);
}

TEST(NodeTest, KillingChildrenLeavesTheSizeOfTheParentAsItWas) {
    const auto inner = group({leaf(10, true)}, {leaf(5, true)});
    const auto root = group({inner});

    inner->killChildren();
    EXPECT_EQ(inner->longSize(), 0U);
    EXPECT_EQ(root->longSize(), 5U); // recalculated before the 0
    inner->killInvisibleChildren();
    EXPECT_EQ(inner->longSize(), 0U);
    EXPECT_EQ(root->longSize(), 0U);
}

TEST(NodeTest, RemovingFromOrAddingToTheWrongPlaceChangesNothing) {
    const auto child = leaf(10, true, "/a");
    const auto root = group({child});
    const auto other = group({});

    root->removeChildAtIndex(1);
    root->removeInvisibleChildAtIndex(0);
    root->removeInvisibleChild(*child);
    root->addChild(nullptr);
    root->addUniqueChild(nullptr);
    other->addChild(child); // stands in a tree already

    EXPECT_EQ(root->childrenCount(), 1U);
    EXPECT_EQ(root->longSize(), 10U);
    EXPECT_EQ(child->parentNode(), root.get());
    EXPECT_FALSE(other->hasChildren());
}

TEST(NodeTest, RemovingAChildTakesEveryOneWithItsPathAndNoneWithout) {
    const auto root = group({leaf(1, true, "/a"), leaf(2, true), leaf(4, true, "/a"), leaf(8, true)});

    root->removeChild(*root->childAtIndex(0));
    EXPECT_EQ(root->longSize(), 10U);
    root->removeChild(*root->childAtIndex(0)); // one without a path equals only itself
    EXPECT_EQ(root->longSize(), 8U);
    root->removeChild(*leaf(0, false, "/elsewhere"));
    root->removeChild(*root->childAtIndex(0));
    EXPECT_EQ(root->longSize(), 0U);
}

TEST(NodeTest, ShownChildOfADestroyedTreeHasNoParent) {
    const auto child = leaf(1, true);
    group({child});
    EXPECT_EQ(child->parentNode(), nullptr);
}

TEST(NodeTest, UniqueChildrenAreToldByTheirPaths) {
    struct Row {
        const char* path;
        bool unique;       ///< beside "/a/b"
        bool parentSearch; ///< beside "/a/b", below "/p"
    };
    const Row rows[]{
        {"/a/b", false, false}, {"/a/b/c", false, false}, {"/x/a/b/y", false, false},
        {"/a/bc", true, false}, {"/a", true, true},       {"", true, true},
        {"/p/q", true, false},  {"/x/p", true, false},    {"/a/bc/a/b", false, false},
    };
    for (const auto& row : rows) {
        const auto parent = Node::nodeWithName("p", Icon::None, 0, 0, "/p", false);
        parent->addChild(leaf(1, false, "/a/b"));
        parent->addChild(leaf(1, false)); // no path, in nobody's way
        parent->addUniqueChild(leaf(1, false, row.path));
        EXPECT_EQ(parent->childrenCount(), row.unique ? 3U : 2U) << row.path;
        parent->killChildren();
        parent->addChild(leaf(1, false, "/a/b"));
        parent->addUniqueChildWithParentSearch(leaf(1, false, row.path));
        EXPECT_EQ(parent->childrenCount(), row.parentSearch ? 2U : 1U) << row.path;
    }
}

TEST(NodeTest, SortingGoesBySizeAndNumberUpwardsAndByNameDownwards) {
    const auto make = [](const char* name, std::uint64_t size, std::uint32_t count) {
        return Node::nodeWithName(name, Icon::None, count, size);
    };
    const auto root = group({make("b", 3, 1), make("c", 1, 1), make("a", 2, 3)});
    root->childAtIndex(0)->addChild(make("x", 0, 0));
    root->childAtIndex(0)->addChild(make("y", 0, 0));
    const std::tuple<const char*, bool, const char*> rows[]{
        {"Name", true, "c b a "},  {"Name", false, "a b c "},  {"Size", true, "c a b "},    {"Size", false, "b a c "},
        {"Other", true, "b a c "}, {"Number", true, "c b a "}, {"Number", false, "a b c "},
    };
    for (const auto& [key, ascending, expected] : rows) {
        root->sortArrayUsingDescriptors({{key, ascending}, {"Name", true}});
        EXPECT_EQ(names(*root), expected) << key << ascending;
    }
    root->sortArrayUsingDescriptors({{"Name", true}});
    EXPECT_EQ(names(*root->childWithEqualName("b")), "y x ");
    root->sortArrayUsingDescriptors({});
    EXPECT_EQ(names(*root), "c b a ");
}

TEST(NodeTest, DescendingComparisonsNeverSayEqual) {
    const auto a = Node::nodeWithName("a", Icon::None, 1, 1);
    const auto b = Node::nodeWithName("b", Icon::None, 2, 2);
    EXPECT_EQ(compareNamesDescending(*a, *b), 1);
    EXPECT_EQ(compareSizesDescending(*b, *a), -1);
    EXPECT_EQ(compareNumbersDescending(*a, *a), -1);
    EXPECT_EQ(compareSizesAscending(*a, *a), 0);
}

TEST(NodeTest, NameKeepsWhenThePathChanges) {
    const auto node = Node::nodeWithName("b", Icon::None, 0, 0, "/a/b", false);
    EXPECT_EQ(node->name(), "b");
    node->setPath("/a/c");
    EXPECT_EQ(node->name(), "b");
    node->setPath("/z/b/");
    EXPECT_EQ(node->name(), "b");
    node->setPath("");
    EXPECT_EQ(node->name(), "b");
}

} // namespace
} // namespace sweeply
