#include "cli/CliWorld.h"

#include "formats/PropertyList.h"

namespace sweeply {

namespace {

using Keys = std::vector<std::string>;

Keys keysOf(const nlohmann::ordered_json& object) {
    Keys keys;
    for (const auto& [key, value] : object.items())
        keys.push_back(key);
    return keys;
}

plist::Value preferencesOf(const std::string& bytes) { return plist::parse(bytes).value(); }

constexpr const char* kPreferences = "/Users/sam/Library/Preferences/com.brindle.Sweeply.plist";

} // namespace

TEST_F(CliTest, ScanChargesWholeBlocksInBothUnitSystems) {
    write(cache("file"), "1");
    write(cache("folder/a"), std::string(4000, 'a'));
    write(cache("folder/deep/b"), std::string(4097, 'b'));
    write(cache("folder/empty"), "");
    write(cache(".DS_Store"), "not listed");
    struct Row {
        const char *version, *units, *total;
        std::uint64_t file, folder;
    };
    for (const Row& row :
         {Row{"10.6.8", "decimal", "16.00 KB", 4000, 12000}, Row{"10.5.8", "binary", "16.00 KB", 4096, 12288}}) {
        setVersion(row.version);
        const auto scan = json({"scan", "--json"});
        const auto items = itemsOf(scan, 0);
        ASSERT_EQ(items.size(), 2u);
        EXPECT_EQ(items.at("file")["size"], row.file);
        EXPECT_EQ(items.at("folder")["size"], row.folder);
        EXPECT_EQ(scan["target"]["units"], row.units);
        EXPECT_EQ(scan["totals"]["foundSize"], row.file + row.folder);
        EXPECT_EQ(scan["modules"][0]["totalSizeText"], row.total);
        EXPECT_EQ(scan["modules"][0]["statusText"], std::string("Found: ") + row.total);
    }
    EXPECT_EQ(itemsOf(json({"--os", "10.4", "scan", "--json"}), 0).at("file")["size"], 4096);
}

TEST_F(CliTest, JsonKeepsItsKeysAndTheirOrder) {
    write(cache("file"), "1");
    const auto scan = json({"scan", "--json"});
    EXPECT_EQ(keysOf(scan), (Keys{"target", "modules", "totals", "incomplete", "problems"}));
    EXPECT_EQ(keysOf(scan["target"]), (Keys{"root", "home", "user", "version", "units"}));
    EXPECT_EQ(keysOf(scan["modules"][0]), (Keys{"module", "viewCode", "checked", "totalSize", "totalSizeText",
                                                "filesFound", "statusText", "tree"}));
    EXPECT_EQ(keysOf(scan["modules"][0]["tree"]), (Keys{"name", "path", "size", "sizeText", "count", "state", "enabled",
                                                        "type", "why", "children", "invisibleChildren"}));
    EXPECT_EQ(keysOf(scan["totals"]), (Keys{"totalSize", "foundSize", "filesFound", "filesFoundInEnabled"}));
    const auto clean = json({"clean", "--yes", "--json"});
    EXPECT_EQ(keysOf(clean), (Keys{"target", "run", "removed", "freed", "freedText", "kept", "items", "failed",
                                   "stopped", "couldntRemoveSomething", "incomplete", "alerts", "modules"}));
}

TEST_F(CliTest, CleanRemovesWhatIsCheckedAndNothingElse) {
    const std::vector<std::string> awkward{"plain",     "\"quoted\"", "new\nline",  "$(touch x)",
                                           "`touch x`", "-rf",        "no\xffutf8", "*"};
    auto expected = everything();
    for (const auto& name : awkward)
        write(cache(name), "1");
    write(cache("kept/file"), "keep me");
    link(cache("absolute"), m_folder + "/victim");
    link(cache("upwards"), "../../../../../../../victim");
    link(cache("documents"), "/Users/sam/Documents");
    write("/Users/sam/Documents/thesis", "precious");
    write("/Library/Caches/machine", "1");
    for (const char* path : {"/root/Users/sam/Library/Caches/kept", "/root/Users/sam/Documents"})
        expected[path] = "folder";
    expected["/root/Users/sam/Library/Caches/kept/file"] = "keep me";
    expected["/root/Users/sam/Documents/thesis"] = "precious";
    expected["/root/Library/Caches/machine"] = "1";
    ASSERT_EQ(runOnVolume({"ignore", "add", "~/Library/Caches/kept"}).exitStatus, 0);
    EXPECT_EQ(itemsOf(json({"scan", "--json"}), 0).at("kept")["enabled"], false);

    const auto clean = json({"clean", "--yes", "--json"});

    EXPECT_EQ(clean["removed"], awkward.size() + 3);
    EXPECT_EQ(clean["freed"], awkward.size() * 4000);
    EXPECT_TRUE(clean["failed"].empty());
    EXPECT_TRUE(clean["alerts"].empty());
    EXPECT_EQ(itemsOf(clean, 0).size(), 1u);
    EXPECT_EQ(everything(), expected);

    ASSERT_EQ(runOnVolume({"ignore", "remove", "/Users/sam/Library/Caches/kept"}).exitStatus, 0);
    EXPECT_EQ(json({"clean", "--yes", "--json"})["removed"], 1);
    EXPECT_EQ(json({"clean", "--yes", "--json"})["alerts"][0]["title"], "Your System is clean!");
}

TEST_F(CliTest, NamedModulesTakePartWhateverTheSwitchesSay) {
    write(cache("user"), "1");
    write("/Library/Caches/machine", "1");
    EXPECT_EQ(json({"scan", "system-caches", "--json"})["totals"]["filesFound"], 1);
    EXPECT_EQ(json({"scan", "--all", "--json"})["totals"]["filesFound"], 2);
    ASSERT_EQ(runOnVolume({"modules", "--enable", "system-caches", "--disable", "user-caches"}).exitStatus, 0);
    EXPECT_EQ(itemsOf(json({"scan", "--json"}), 2).count("machine"), 1u);
    EXPECT_TRUE(itemsOf(json({"scan", "--json"}), 0).empty());
    ASSERT_EQ(runOnVolume({"modules", "--disable", "caches"}).exitStatus, 0);
    ASSERT_EQ(runOnVolume({"modules", "--enable", "caches"}).exitStatus, 0);
    EXPECT_TRUE(itemsOf(json({"scan", "--json"}), 2).empty()) << "a group must not switch the machine-wide part on";
    EXPECT_EQ(json({"clean", "system-caches", "--yes", "--json"})["removed"], 1);
    EXPECT_FALSE(exists("/Library/Caches/machine"));
    EXPECT_TRUE(exists(cache("user")));
}

TEST_F(CliTest, SavedSpaceAddsUpAndOtherSettingsStay) {
    plist::Dictionary settings;
    settings.set("FavouriteColour", "green");
    settings.set("When", plist::Date{1000});
    settings.set("totalSizeSaved", 1000);
    write(kPreferences, plist::writeXml(settings));
    for (int run = 0; run < 2; ++run) {
        write(cache("file"), "1");
        ASSERT_EQ(json({"clean", "--yes", "--json"})["freed"], 4000);
    }
    const auto saved = preferencesOf(read(kPreferences));
    EXPECT_EQ(saved.find("totalSizeSaved")->asUnsigned(), 9000u);
    EXPECT_EQ(*saved.findString("FavouriteColour"), "green");
    EXPECT_EQ(saved.find("When")->asDate()->seconds, 1000);
    EXPECT_EQ(saved.find("CleanSystemCaches")->asBool(), false);
    EXPECT_TRUE(saved.findString("lastScannedOn"));
}

TEST_F(CliTest, DamagedSettingsAreSetAside) {
    write(kPreferences, "bplist00 torn");
    EXPECT_EQ(runOnVolume({"scan"}).exitStatus, 0);
    EXPECT_TRUE(preferencesOf(read(kPreferences)).find("CleanCaches"));
    bool isKept = false;
    for (const auto& entry : std::filesystem::directory_iterator(host("/Users/sam/Library/Preferences")))
        isKept |= entry.path().string().find(".damaged-") != std::string::npos;
    EXPECT_TRUE(isKept);
}

TEST_F(CliTest, CachesFolderThatIsALinkIsCleanedWhereItLeads) {
    std::filesystem::remove(host(kCaches));
    write("/Volumes/Data/caches/file", "1");
    link(kCaches, "/Volumes/Data/caches");
    EXPECT_EQ(json({"clean", "--yes", "--json"})["removed"], 1);
    EXPECT_FALSE(exists("/Volumes/Data/caches/file"));
    EXPECT_TRUE(exists(kCaches));
    EXPECT_TRUE(exists("/Volumes/Data/caches"));
}

TEST_F(CliTest, RedirectedFolderIsNoWayToTheSystemsOwn) {
    makeFolder("/Users/Shared");
    const auto before = everything();
    const auto clean = json({"-c", "/", "clean", "user-caches", "--yes", "--json"}, 1);
    EXPECT_EQ(clean["removed"], 0);
    EXPECT_FALSE(clean["failed"].empty());
    EXPECT_EQ(clean["alerts"][0]["title"], "Sweeply could not remove some files");
    EXPECT_EQ(everything(), before);
}

TEST_F(CliTest, ItemThatCannotBeRemovedStaysAndIsNamed) {
    write(cache("stuck/file"), "1");
    write(cache("loose"), "1");
    std::filesystem::permissions(host(cache("stuck")),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    ASSERT_NE(::access(host(cache("stuck")).c_str(), W_OK), 0) << "only outside script/confined is nothing protected";
    const auto clean = json({"clean", "--yes", "--json"}, 1);
    std::filesystem::permissions(host(cache("stuck")), std::filesystem::perms::owner_all);
    EXPECT_EQ(clean["failed"], nlohmann::ordered_json({cache("stuck")}));
    EXPECT_EQ(clean["removed"], 1);
    EXPECT_EQ(clean["couldntRemoveSomething"], true);
    EXPECT_EQ(itemsOf(clean, 0).count("stuck"), 1u);
    EXPECT_TRUE(exists(cache("stuck/file")));
    EXPECT_FALSE(exists(cache("loose")));
}

} // namespace sweeply
