#include "appcore/ApplicationFilter.h"

#include "platform/TestFolder.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

TEST(ApplicationFilterTest, SystemNestedAndForeignApplicationsAreExcluded) {
    const auto filter = ApplicationFilter::compile("/Users/j.doe/Library");
    ASSERT_TRUE(filter);
    for (const auto& path :
         words("/Applications/Utilities/Foo.app/Contents/Support/Bar.app /Volumes/Disk/Foo.app /Volume "
               "/network/Foo.app /System/Library/CoreServices/Finder.app /Users/j.doe/Library/Foo.app "
               "/Developer/Applications/Xcode.app /Users/j.doe/src/build/Release/Foo.app "
               "/Users/j.doe/Documents/Windows.pvm/Foo.app /Users/j.doe/Documents/Windows.vmwarevm"))
        EXPECT_TRUE(filter->matches(path)) << path;
    // Before "/build/" stands something.
    for (const auto& path : words("/Applications/Foo.app /Applications/Foo.app2/Bar.app /Applications/Fooxapp/Bar.app "
                                  "/Network/Foo.app /System/Foo.app /Users/jxdoe/Library/Foo.app /Users/j.doe/Foo.app "
                                  "/Users/j.doe/Developer/Foo.app /build/Foo.app /Users/j.doe/builds/Foo.app"))
        EXPECT_FALSE(filter->matches(path)) << path;
    EXPECT_FALSE(filter->matches("") || filter->matches("/Applications/\xff\n/Foo.app"));
}

TEST(ApplicationFilterTest, AHomeFullOfPatternLettersIsTakenLiterally) {
    const std::string home = R"(/Users/a+(b[c\E{2})*|$^?)";
    const auto filter = ApplicationFilter::compile(home + "/Library");
    ASSERT_TRUE(filter);
    EXPECT_TRUE(filter->matches(home + "/Library/Foo.app"));
    EXPECT_FALSE(filter->matches(home + "/Foo.app"));
}

TEST(ApplicationFilterTest, AnEndlessPathIsJudgedInFiniteWork) {
    std::string path = "/Applications";
    while (path.size() < 100000)
        path += "/build.app.pvm.vmwarevm";
    EXPECT_TRUE(ApplicationFilter::compile("/Users/ann/Library").value().matches(path));
}

} // namespace
} // namespace sweeply
