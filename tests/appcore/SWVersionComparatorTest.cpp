#include "appcore/SWVersionComparator.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

TEST(SWVersionComparatorTest, VersionsAreSplitIntoNumbersTextsAndSinglePeriods) {
    EXPECT_THAT(SWVersionComparator::splitVersionString("1.2.10b3"),
                testing::ElementsAre("1", ".", "2", ".", "10", "b", "3"));
    EXPECT_THAT(SWVersionComparator::splitVersionString("1..beta 2"),
                testing::ElementsAre("1", ".", ".", "beta ", "2"));
    EXPECT_THAT(SWVersionComparator::splitVersionString(""), testing::IsEmpty());
}

TEST(SWVersionComparatorTest, OlderVersionsComeFirstWhicheverSideTheyAreOn) {
    const std::pair<const char*, const char*> olderAndNewer[] = {
        {"1.9", "1.10"},       {"1.0b1", "1.0"},     {"1.0", "1.0.1"}, {"1.0", "1.0."},
        {"1.0a", "1.0b"},      {"1.0B", "1.0a"},     {"1.a", "1.1"},   {"b", "1"},
        {"1..2", "1.2"},       {"1.0b", "1.0"},      {"", "1"},        {"a", ""},
        {"1.2.9", "1.2.10b3"}, {"5", "99999999999"},
    };
    for (const auto& [older, newer] : olderAndNewer) {
        EXPECT_EQ(SWVersionComparator::compareVersion(older, newer), -1) << older << " " << newer;
        EXPECT_EQ(SWVersionComparator::compareVersion(newer, older), 1) << older << " " << newer;
    }
}

TEST(SWVersionComparatorTest, LeadingZerosDoNotCount) {
    EXPECT_EQ(SWVersionComparator::compareVersion("1.02", "1.2"), 0);
    EXPECT_EQ(SWVersionComparator::compareVersion("", ""), 0);
}

} // namespace
} // namespace sweeply
