#include "engine/plan/Plan.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace sweeply {
namespace {

using testing::HasSubstr;
using Json = nlohmann::ordered_json;

Plan examplePlan() {
    Plan plan{"2026-11-24T05:00:00Z", "1", {"/mnt/a\xff", "sam", "10.6.8", "intel"}, "scan", {"user-caches", "/b\xfe"}};
    PlannedItem item{"/Users/sam/\xff\n\"'\x1b[2J\\ \u202e", "user-caches", ChangedKind::Folder, 4096, true};
    item.why = Evidence{EvidenceRule::Identifier, EvidenceStrength::Weak, "com.\"x\"", {"/Applications/A.app"}};
    item.seen = {4096, {1'764'000'000'123'456'789, 12, 65535, ItemKind::Folder}};
    plan.items = {item, {"com.x.pkg", "uninstaller", ChangedKind::Receipt}};
    return plan;
}

TEST(PlanTest, PlansComeBackAsTheyWere) {
    auto plan = examplePlan();
    for (const std::int64_t time : {INT64_MIN, std::int64_t{-1'000'000'000}, std::int64_t{-1}, std::int64_t{0},
                                    std::int64_t{1'000'000'001}, INT64_MAX}) {
        plan.items.front().seen.identity.newestChange = time;
        const auto text = planText(plan).value();
        const auto read = parsePlan(text);
        ASSERT_TRUE(read) << read.error().message();
        EXPECT_EQ(planText(*read), text);
        const auto& item = read->items.front();
        EXPECT_EQ(item.path, plan.items.front().path);
        EXPECT_EQ(item.why, plan.items.front().why);
        EXPECT_EQ(item.seen, plan.items.front().seen);
        EXPECT_TRUE(item.isChecked && !read->items.back().isChecked);
        EXPECT_EQ(read->arguments, plan.arguments);
        EXPECT_EQ(read->target.root, plan.target.root);
    }
}

TEST(PlanTest, TracesAreTheSameOnEveryMachine) {
    ItemIdentity identity;
    identity.addEntry("a name of more than eight bytes \xff", 5000, {1'764'000'000, 7});
    EXPECT_EQ(identity.trace, 21600);
}

TEST(PlanTest, WhatIsNoPlanIsRefusedWithThePlaceAndTheReason) {
    const std::string good = planText(examplePlan()).value();
    const auto edited = [&](const char* pointer, const Json& value) {
        auto json = Json::parse(good);
        json[Json::json_pointer(pointer)] = value;
        return json.dump();
    };
    const auto without = [&](const char* parent, const char* name) {
        auto json = Json::parse(good);
        json[Json::json_pointer(parent)].erase(name);
        return json.dump();
    };
    const auto twice = [&](std::string text, const std::string& what) {
        return text.insert(text.find(what), what + ", ");
    };
    const std::string deep = std::string(100'000, '[');
    std::string manyFields = "{";
    for (int i = 0; i < 200'000; ++i)
        manyFields += "\"" + std::to_string(i) + "\": 1, ";
    struct Case {
        std::string bytes;
        std::string reason;
    };
    const std::vector<Case> cases{
        {"", "byte 1 is no JSON"},
        {good.substr(0, good.size() / 2), "cut short"},
        {good + "x", "is no JSON"},
        {std::string(1, '\xff') + good, "is no JSON"},
        {std::string(100, '\0'), "is no JSON"},
        {deep, "nested too deeply"},
        {edited("/target/extra", Json::parse("[[[[[[[[[[]]]]]]]]]]")), "nested too deeply"},
        {manyFields, "too many fields"},
        {"[]", "\"format\""},
        {"{}", "\"format\""},
        {edited("/format", 1), "\"format\""},
        {edited("/format", "sweeply-run-1"), "\"format\""},
        {edited("/format", "sweeply-plan-2"), "another version (sweeply-plan-2)"},
        {without("", "items"), "\"items\": is missing"},
        {edited("/items", Json::object()), "\"items\": is no list"},
        {edited("/target", "sam"), "\"target\": is no object"},
        {edited("/target/user", ""), "\"user\": is empty"},
        {edited("/command", "erase"), "\"command\": is neither"},
        {edited("/arguments/0", 5), "\"arguments\": neither a text"},
        {edited("/items/1", 5), "item 2: \"items\": is no object"},
        {edited("/items/1/path", Json{{"hex", "2f6"}}), "item 2: \"path\": \"hex\" has half a byte"},
        {edited("/items/1/path", Json{{"hex", "+f"}}), "something else than digits"},
        {edited("/items/1/path", Json{{"hex", "2f00"}}), "a zero byte"},
        {edited("/items/1/path", Json{{"hex", "2f"}, {"b", 1}}), "neither a text nor"},
        {edited("/items/1/path", std::string("/a\0b", 4)), "a zero byte"},
        {edited("/items/1/path", nullptr), "neither a text nor"},
        {edited("/items/1/checked", "yes"), "\"checked\": is neither true nor false"},
        {edited("/items/1/checked", 1), "\"checked\": is neither true nor false"},
        {without("/items/1", "checked"), "\"checked\": is missing"},
        {twice(good, "\"checked\": true"), "\"checked\": is said twice"},
        {edited("/items/1/kind", "volume"), "\"kind\": is none of the words"},
        {edited("/items/1/size", -1), "\"size\": is no whole number"},
        {edited("/items/1/size", 1.5), "\"size\": is no whole number"},
        {edited("/items/0/seen/entries", std::uint64_t{1} << 32U), "\"entries\": is no whole number, or too large"},
        {edited("/items/0/seen/trace", 65536), "\"trace\": is no whole number, or too large"},
        {edited("/items/0/seen/kind", "none of ours"), "\"kind\""},
        {edited("/items/0/seen/newestChange", "yesterday"), "\"newestChange\": is no time"},
        {edited("/items/0/seen/newestChange", "9999-11-24T05:00:00.123456789Z"), "\"newestChange\": is no time"},
        {edited("/items/0/seen/newestChange", "2026-11-24T05:00:00.12345678+Z"), "\"newestChange\": is no time"},
        {edited("/items/0/why", 5), "\"why\": is no object"},
        {edited("/items/0/why/strength", "sure"), "\"strength\": is none of the words"},
        {edited("/items/0/why/alsoClaimedBy/0", 5), "\"alsoClaimedBy\""},
        {edited("/items/2", Json::parse(good)["items"][0]), "item 3: is item 1 once more"},
        {R"({"format": "sweeply-plan-1", "made": 1e999})", "out of range"},
        {std::string(kLargestPlan + 1, ' '), "too large"},
    };
    for (const auto& [bytes, reason] : cases) {
        const auto read = parsePlan(bytes);
        ASSERT_FALSE(read) << reason;
        EXPECT_THAT(read.error().message(), HasSubstr(reason));
    }
    EXPECT_TRUE(parsePlan(edited("/items/0/note", "keep this?"))) << "what says nothing to us is somebody's own";
}

} // namespace
} // namespace sweeply
