#include "cli/CliWorld.h"
#include "cli/Person.h"

namespace sweeply {

TEST_F(CliTest, PersonIsAskedAndObeyed) {
    write(cache("item\x1B[31m"), "1");
    const auto before = everything();
    Person doubtful({"--root", m_folder + "/root", "clean"});
    ASSERT_TRUE(doubtful.sees("[y/N]"));
    doubtful.types("n\n");
    EXPECT_EQ(doubtful.endsWith(), 1);
    EXPECT_EQ(doubtful.seen().find("item\x1B[31m"), std::string::npos) << "a name must not command the terminal";
    EXPECT_EQ(everything(), before);

    Person sure({"--root", m_folder + "/root", "clean"});
    ASSERT_TRUE(sure.sees("[y/N]"));
    sure.types("y\n");
    EXPECT_EQ(sure.endsWith(), 0);
    EXPECT_NE(sure.seen().find("Sweeply has cleaned 4.00 KB from your Mac!"), std::string::npos) << sure.seen();
    EXPECT_FALSE(exists(cache("item\x1B[31m")));
}

TEST_F(CliTest, InterruptedScanShowsWhatWasFound) {
    for (int i = 0; i < 2000; ++i) // at 0.2 seconds each the scan would take minutes
        write(cache("item" + std::to_string(i)), "1");
    Person hurried({"--root", m_folder + "/root", "--pace", "gentle", "clean", "--yes"});
    ASSERT_TRUE(hurried.sees("Scanning"));
    ASSERT_TRUE(hurried.sees("KB (")) << "something is found";
    hurried.interrupts();
    EXPECT_EQ(hurried.endsWith(), 130);
    EXPECT_NE(hurried.seen().find("[x] item"), std::string::npos);
    EXPECT_TRUE(exists(cache("item0")));
    EXPECT_TRUE(exists(cache("item1999")));
}

} // namespace sweeply
