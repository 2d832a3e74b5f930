#include "cli/CliWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kMail = "/Applications/Harbor Mail.app";

/// On the sample volume, as people try it.
class CliKeepTest : public CliTest {
  protected:
    CliKeepTest() {
        std::filesystem::remove_all(m_folder + "/root");
        EXPECT_EQ(run({"sample", m_folder + "/root"}).exitStatus, 0);
    }
    /// The sizes of the items that a run says it freed.
    static std::uint64_t sizesOf(const nlohmann::ordered_json& items) {
        std::uint64_t sum = 0;
        for (const auto& item : items) {
            for (const char* outcome : {"removed", "emptied", "slimmed", "erased"})
                sum += item["outcome"] == outcome ? item["size"].get<std::uint64_t>() : 0;
        }
        return sum;
    }
    std::uint64_t totalSaved() const {
        const auto text = runOnVolume({"prefs", "totalSizeSaved"}).output;
        return text.empty() ? 0 : std::stoull(text);
    }
};

TEST_F(CliKeepTest, WhatWasUninstalledComesBackAndHistoryTellsAllOfIt) {
    const auto before = everything();
    const auto removed = json({"uninstall", "--keep", "--yes", "--json", kMail});
    EXPECT_EQ(removed["freed"], 0);
    EXPECT_EQ(removed["removed"], 0);
    // One is listed under both names of its folder, and gone when the second is looked at.
    EXPECT_EQ(removed["kept"], removed["items"].size() - 1);
    EXPECT_GT(removed["items"].size(), 5U);
    EXPECT_FALSE(exists(kMail));
    const std::string run = removed["run"];

    const auto kept = json({"kept", "--json"});
    EXPECT_EQ(kept["kept"].size(), removed["kept"]);
    EXPECT_EQ(kept["kept"][0]["run"], run);
    const auto history = json({"history", "--json"})["runs"];
    ASSERT_EQ(history.size(), 1U);
    EXPECT_EQ(history[0]["command"], "uninstall");
    EXPECT_EQ(history[0]["kept"], removed["kept"]);
    EXPECT_EQ(history[0]["state"], "done");
    EXPECT_EQ(json({"history", run, "--json"})["items"], removed["items"]);
    EXPECT_THAT(runOnVolume({"history"}).output, StartsWith(run + "\tuninstall\t"));

    const auto undone = json({"undo", "--json"});
    EXPECT_EQ(undone["run"], run);
    EXPECT_EQ(undone["restored"], removed["kept"]);
    EXPECT_TRUE(everything() == before);
    EXPECT_EQ(json({"history", "--json"})["runs"][1]["state"], "undone");
    const auto again = runOnVolume({"undo"});
    EXPECT_EQ(again.exitStatus, 1);
    EXPECT_THAT(again.errors, HasSubstr("nothing to undo"));
}

TEST_F(CliKeepTest, SettingKeepsUnlessNoKeepIsSaidAndPurgingFrees) {
    EXPECT_EQ(runOnVolume({"prefs", "KeepRemovedDays", "7"}).exitStatus, 0);
    const auto kept = json({"uninstall", "--yes", "--json", kMail});
    EXPECT_GT(kept["kept"], 0);
    EXPECT_EQ(totalSaved(), 0U);
    const auto gone = json({"uninstall", "--yes", "--no-keep", "--json", "/Applications/Ledger.app"});
    EXPECT_EQ(gone["kept"], 0);
    EXPECT_EQ(gone["freed"], sizesOf(gone["items"]));
    EXPECT_EQ(totalSaved(), gone["freed"]);

    EXPECT_EQ(runOnVolume({"purge"}).exitStatus, 2);
    EXPECT_EQ(json({"purge", "--expired", "--json"})["freed"], 0);
    const auto total = json({"kept", "--json"})["total"].get<std::uint64_t>();
    const auto purged = json({"purge", kept["run"], "--json"});
    EXPECT_EQ(purged["freed"], total);
    EXPECT_EQ(sizesOf(purged["items"]), total);
    EXPECT_EQ(totalSaved(), gone["freed"].get<std::uint64_t>() + total);
    EXPECT_EQ(json({"kept", "--json"})["total"], 0);
}

TEST_F(CliKeepTest, CachesAreNeverKeptAndScansDoNotSeeWhatIs) {
    const auto before = json({"scan", "--json", "--all"});
    EXPECT_EQ(runOnVolume({"uninstall", "--keep", "--yes", kMail}).exitStatus, 0);
    const auto cleaned = json({"clean", "user-caches", "--keep", "--yes", "--json"});
    EXPECT_EQ(cleaned["kept"], 0);
    EXPECT_EQ(cleaned["freed"], sizesOf(cleaned["items"]));
    const std::string support = "/Users/sam/Library/Application Support";
    EXPECT_EQ(runOnVolume({"scan", "dev-junk", support, "--json"}).output.find("/Kept/"), std::string::npos);
    const auto refused = runOnVolume({"erase", "--yes", support + "/Sweeply/Kept"});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_EQ(runOnVolume({"undo"}).exitStatus, 0);
    EXPECT_TRUE(exists(kMail));
}

TEST_F(CliKeepTest, BadNamesOfRunsAreRefused) {
    for (const std::string run : {"nonsense", "20200101T000000Z-abcd", "../Runs"}) {
        EXPECT_EQ(runOnVolume({"history", run}).exitStatus, 2) << run;
        EXPECT_EQ(runOnVolume({"purge", run}).exitStatus, 2) << run;
    }
    EXPECT_THAT(runOnVolume({"undo", "nonsense"}).errors, HasSubstr("nonsense: no such run"));
    EXPECT_EQ(runOnVolume({"undo", "nonsense"}).exitStatus, 2);
}

} // namespace
} // namespace sweeply
