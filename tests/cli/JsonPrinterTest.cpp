#include "cli/JsonPrinter.h"

#include "engine/tree/Node.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

namespace sweeply {
namespace {

std::string written(const Json& json, JsonLayout layout) {
    std::ostringstream text;
    writeJson(text, json, layout);
    return text.str();
}

TEST(JsonPrinterTest, TreesAreWrittenAsIfTheyWerePartOfTheObject) {
    const auto root = Node::nodeWithName("root \" \\ \n\t\x01\x7f \xff", Icon::None, 3, 4096, {}, true);
    for (const char* name : {"a", "b"}) {
        auto child = Node::nodeWithName(name, Icon::None, 1, 17, std::string("/Library/") + name, false);
        child->setEvidence(SharedEvidence(EvidenceRule::Name, "term"));
        child->addInvisibleChild(Node::nodeWithName("", Icon::None, 0, 1, "/x", true));
        root->addChild(std::move(child));
    }
    const Json object{{"none", Json::object()},
                      {"list", {1, -2.5, nullptr, true, "\xc3\xa9", Json::array()}},
                      {"tree", treeReference(*root, SizeUnits::Decimal)},
                      {"last", Json::array({Json::array({Json::object()})})}};
    const auto whole = withTrees(object);
    EXPECT_EQ(written(object, JsonLayout::Indented), whole.dump(2));
    EXPECT_EQ(written(object, JsonLayout::OneLine), whole.dump());
    const auto& tree = whole["tree"];
    EXPECT_EQ(tree["name"], "root \" \\ \n\t\x01\x7f \xef\xbf\xbd");
    EXPECT_EQ(tree["path"], nullptr);
    EXPECT_EQ(tree["why"], nullptr);
    const auto& child = tree["children"][1];
    EXPECT_EQ(child["path"], "/Library/b");
    EXPECT_EQ(child["size"], 18);
    EXPECT_EQ(child["enabled"], false);
    EXPECT_EQ(child["why"]["term"], "term");
    EXPECT_EQ(child["invisibleChildren"][0]["path"], "/x");
}

} // namespace
} // namespace sweeply
