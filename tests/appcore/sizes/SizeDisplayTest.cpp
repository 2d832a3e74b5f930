#include "appcore/sizes/SizeDisplay.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

TEST(SizeDisplayTest, UnitsChangeOnlyAboveTheirThreshold) {
    struct Row {
        std::uint64_t size;
        std::string decimal;
        std::string binary;
    };
    const Row rows[] = {
        {0, "Zero KB", "Zero KB"},
        {1, "0.00 KB", "0.00 KB"},
        {999, "1.00 KB", "0.98 KB"},
        {4096, "4.10 KB", "4.00 KB"},
        {1000000, "1000.00 KB", "976.56 KB"},
        {1000001, "1.00 MB", "976.56 KB"},
        {1048576, "1.05 MB", "1024.00 KB"},
        {1048577, "1.05 MB", "1.00 MB"},
        {1000000000, "1000.00 MB", "953.67 MB"},
        {1000000001, "1.00 GB", "953.67 MB"},
        {1073741824, "1.07 GB", "1024.00 MB"},
        {1073741825, "1.07 GB", "1.00 GB"},
        {UINT64_MAX, "18446744073.71 GB", "17179869184.00 GB"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(stringSizeFromLong(row.size, SizeUnits::Decimal), row.decimal) << row.size;
        EXPECT_EQ(stringSizeFromLong(row.size, SizeUnits::Binary), row.binary) << row.size;
    }
}

TEST(SizeDisplayTest, SnowLeopardCountsInDecimal) {
    EXPECT_EQ(sizeUnitsOf(*SystemVersion::fromProductVersion("10.4.11")), SizeUnits::Binary);
    EXPECT_EQ(sizeUnitsOf(*SystemVersion::fromProductVersion("10.5.8")), SizeUnits::Binary);
    EXPECT_EQ(sizeUnitsOf(*SystemVersion::fromProductVersion("10.6")), SizeUnits::Decimal);
}

} // namespace
} // namespace sweeply
