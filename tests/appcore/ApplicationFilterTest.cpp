#include "appcore/ApplicationFilter.h"

#include <gtest/gtest.h>
#include <string>

namespace sweeply {
namespace {

TEST(ApplicationFilterTest, SystemNestedAndForeignApplicationsAreExcluded) {
    const auto filter = ApplicationFilter::compile("/Users/j.doe/Library");
    ASSERT_TRUE(filter);
    const struct {
        std::string path;
        bool excluded;
    } table[] = {
        {"/Applications/Foo.app", false},
        {"/Applications/Utilities/Foo.app/Contents/Support/Bar.app", true},
        {"/Applications/Foo.app2/Bar.app", false},
        {"/Applications/Fooxapp/Bar.app", false},
        {"/Volumes/Disk/Foo.app", true},
        {"/Volume", true},
        {"/network/Foo.app", true},
        {"/Network/Foo.app", false},
        {"/System/Library/CoreServices/Finder.app", true},
        {"/System/Foo.app", false},
        {"/Users/j.doe/Library/Foo.app", true},
        {"/Users/jxdoe/Library/Foo.app", false},
        {"/Users/j.doe/Foo.app", false},
        {"/Users/j.doe/Developer/Foo.app", false},
        {"/Developer/Applications/Xcode.app", true},
        {"/Users/j.doe/src/build/Release/Foo.app", true},
        {"/build/Foo.app", false}, // nothing stands before it
        {"/Users/j.doe/builds/Foo.app", false},
        {"/Users/j.doe/Documents/Windows.pvm/Foo.app", true},
        {"/Users/j.doe/Documents/Windows.vmwarevm", true},
        {"/Applications/\xff\n/Foo.app", false},
        {"", false},
    };
    for (const auto& row : table)
        EXPECT_EQ(filter->matches(row.path), row.excluded) << row.path;
}

TEST(ApplicationFilterTest, AHomeFullOfPatternLettersIsTakenLiterally) {
    const std::string home = R"(/Users/a+(b[c\E{2})*|$^?)";
    const auto filter = ApplicationFilter::compile(home + "/Library");
    ASSERT_TRUE(filter);
    EXPECT_TRUE(filter->matches(home + "/Library/Foo.app"));
    EXPECT_FALSE(filter->matches(home + "/Foo.app"));
}

TEST(ApplicationFilterTest, AnEndlessPathIsJudgedInFiniteWork) {
    const auto filter = ApplicationFilter::compile("/Users/ann/Library");
    ASSERT_TRUE(filter);
    std::string path = "/Applications";
    while (path.size() < 100000)
        path += "/build.app.pvm.vmwarevm";
    EXPECT_TRUE(filter->matches(path));
}

} // namespace
} // namespace sweeply
