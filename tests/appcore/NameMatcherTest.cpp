#include "appcore/NameMatcher.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

TEST(NameMatcherTest, TextsAreFoundLiterallyWhereTheyMayStand) {
    const NameMatcher matcher({"a.b", "x\n(y", "\xFF", ""}, {"com.foo", ""});
    for (const char* name : {"a.b", "za.bz", "x\n(y", "-\xFF-", "com.foo", "com.foobar"})
        EXPECT_TRUE(matcher.matches(name)) << name;
    for (const char* name : {"aXb", "", "net.com.foo", "\nnet\ncom.foo", "x\ny"})
        EXPECT_FALSE(matcher.matches(name)) << name;
    EXPECT_FALSE(NameMatcher({}, {""}).matches("anything"));
}

TEST(NameMatcherTest, ManyTextsAreFoundToo) {
    std::vector<std::string> names;
    for (int i = 0; i < 20000; ++i)
        names.push_back("Application number " + std::to_string(i) + ".");
    const NameMatcher matcher(names);
    EXPECT_TRUE(matcher.matches("of Application number 19999.plist"));
    EXPECT_FALSE(matcher.matches("of Application number 20000.plist"));
}

} // namespace
} // namespace sweeply
